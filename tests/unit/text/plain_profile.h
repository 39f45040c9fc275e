// The reading of settings files once more, as plainly as it can be put: one pass over the tokens of a
// file in memory, decoded by PlainDecoder. What the library answers is measured against this.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace arvmui_test
{

template <typename Char>
struct ProfileQuery
{
    using Text = std::basic_string<Char>;

    std::optional<Text> section;
    bool anySection = false;  // in place of a section
    std::optional<Text> key;
    std::optional<Text> defaultValue;
    DWORD size = 0;
};

template <typename Char>
struct ProfileAnswer
{
    DWORD result = 0;
    std::vector<Char> buffer;

    bool operator==(const ProfileAnswer&) const = default;
};

// A file that cannot be opened has no content.
ProfileAnswer<wchar_t> AnswerPlainly(std::optional<std::string_view> file, const ProfileQuery<wchar_t>& query);
ProfileAnswer<char> AnswerPlainly(std::optional<std::string_view> file, const ProfileQuery<char>& query);

// The code page of an encoding's name; 0 when it is not understood.
UINT CodePageOfEncoding(const std::wstring& name);

}  // namespace arvmui_test
