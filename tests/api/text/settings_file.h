// A settings file of given bytes, and questions to it in both text widths.
#pragma once

#include "support/temporary_folder.h"

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace arvmui_test
{

inline const wchar_t* const kAnySection = reinterpret_cast<const wchar_t*>(~ULONG_PTR{0});
inline const char* const kAnySectionA = reinterpret_cast<const char*>(~ULONG_PTR{0});

// The result of a call and the whole buffer, which was full of '#' before it.
template <typename Char>
struct SettingsAnswer
{
    DWORD result = 0;
    std::basic_string<Char> buffer;

    bool operator==(const SettingsAnswer&) const = default;
};

using Wide = SettingsAnswer<wchar_t>;
using Narrow = SettingsAnswer<char>;

// The answer that stores this text in a buffer of a size: text, then NULs.
template <typename Char>
SettingsAnswer<Char> Filled(DWORD result, std::basic_string_view<Char> text, DWORD size)
{
    SettingsAnswer<Char> answer{result, std::basic_string<Char>(text)};
    answer.buffer.resize(size);
    return answer;
}

class SettingsFile
{
public:
    explicit SettingsFile(std::string_view bytes);

    std::wstring Path() const { return path_.wstring(); }
    std::string PathA() const { return path_.string(); }

    Wide Ask(const wchar_t* section, const wchar_t* key, const wchar_t* defaultValue, DWORD size) const;
    Narrow Ask(const char* section, const char* key, const char* defaultValue, DWORD size) const;

    // The value, or "<none>", with room for all of it.
    std::wstring Value(const wchar_t* section, const wchar_t* key) const;
    std::string Value(const char* section, const char* key) const;

    std::vector<std::wstring> Sections() const;
    std::vector<std::wstring> Keys(const wchar_t* section) const;

private:
    TemporaryFolder folder_;
    std::filesystem::path path_;
};

}  // namespace arvmui_test
