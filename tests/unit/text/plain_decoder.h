// The decoding of text files once more, as plainly as it can be put: the whole file in memory, the
// system's converter asked for every character, no buffer, no shortcut. What the library does faster
// is measured against this.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace arvmui_test
{

class PlainDecoder
{
public:
    static constexpr std::uint32_t kEnd = 0xFFFFFFFF;
    static constexpr std::uint32_t kUndecodable = 0xFFFD;

    explicit PlainDecoder(std::string_view bytes) : bytes_(bytes) {}

    // The next unit in this code page, or kEnd.
    std::uint32_t Next(UINT codePage);

    // Bytes decoded so far.
    size_t Position() const { return position_; }

private:
    std::string_view bytes_;
    size_t position_ = 0;
};

std::wstring DecodePlainly(std::string_view bytes, UINT codePage);

// UTF-8 from the table of well-formed sequences in the Unicode standard, without the system.
std::wstring DecodeUtf8ByTable(std::string_view bytes);

}  // namespace arvmui_test
