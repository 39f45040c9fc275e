// Well- and ill-formed UTF-8, against the table of well-formed sequences.

#include "decoded_text.h"
#include "memory_file.h"
#include "plain_decoder.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace arvmui_test
{
namespace
{

using namespace std::string_view_literals;

// Bytes that stand for all continuation bytes in UTF-8. What the well-formed sequences ask of a second
// byte changes at 80, 90, A0 and C0 only, of a third and fourth at 80 and C0; each of these borders is
// here with its neighbours. The others are bytes with a meaning of their own: ASCII that a decoder
// might swallow, and the borders of the classes of lead bytes.
constexpr unsigned char kContinuationClasses[] = {0x00, 0x0A, 0x22, 0x3D, 0x41, 0x7F, 0x80, 0x81, 0x8F, 0x90, 0x9F,
    0xA0, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE, 0xEF, 0xF0, 0xF4, 0xF5, 0xFF};

void ExpectUtf8ByTable(const std::string& bytes)
{
    const std::wstring expected = DecodeUtf8ByTable(bytes);
    MemoryFile file(bytes);
    ASSERT_TRUE(Equal(expected, ReadOneByOne(file, CP_UTF8)));
    for (const size_t capacity : {size_t{1}, size_t{3}, size_t{256}, size_t{100000}})
    {
        ASSERT_TRUE(Equal(expected, ReadInRuns(file, CP_UTF8, capacity))) << "in runs of " << capacity;
    }
}

TEST(Utf8Decoding, ThreeBytesOfEveryKind)
{
    for (unsigned first = 0x80; first < 0x100; ++first)
    {
        SCOPED_TRACE(first);
        std::string alone;
        std::string dense;
        for (unsigned second = 0; second < 256; ++second)
        {
            for (const unsigned char third : kContinuationClasses)
            {
                const std::string sequence{Byte(first), Byte(second), Byte(third)};
                alone += sequence + "\n\n\n\n";
                dense += sequence;
            }
        }
        ExpectUtf8ByTable(alone);
        ExpectUtf8ByTable(dense);
    }
}

TEST(Utf8Decoding, FourBytesOfEveryKind)
{
    for (unsigned first = 0x80; first < 0x100; ++first)
    {
        SCOPED_TRACE(first);
        std::string alone;
        std::string dense;
        for (const unsigned char second : kContinuationClasses)
        {
            for (const unsigned char third : kContinuationClasses)
            {
                for (const unsigned char fourth : kContinuationClasses)
                {
                    const std::string sequence{Byte(first), Byte(second), Byte(third), Byte(fourth)};
                    alone += sequence + "\n\n\n\n";
                    dense += sequence;
                }
            }
        }
        ExpectUtf8ByTable(alone);
        ExpectUtf8ByTable(dense);
    }
}

// Characters of three bytes, which are decoded two at a time where they can be, beside what only looks
// like one: each kind before and behind each two others.
TEST(Utf8Decoding, CharactersStandBesideEachOther)
{
    constexpr std::string_view kPieces[] = {"\xE3\x81\x82"sv, "\xE1\x80\x80"sv, "\xEC\xBF\xBF"sv, "\xE0\xA0\x80"sv,
        "\xE0\x9F\xBF"sv, "\xE0\xBF\xBF"sv, "\xED\x9F\xBF"sv, "\xED\xA0\x80"sv, "\xED\xBF\xBF"sv, "\xEE\x80\x80"sv,
        "\xEF\xBF\xBF"sv, "\xEF\xBF\xBD"sv, "\xE4\x41\x80"sv, "\xE4\x80\x41"sv, "\xE4\x80\xC0"sv, "\xE4\xC0\x80"sv,
        "\xE4\x00\x00"sv, "\xF0\x80\x80"sv, "\xD3\x81\x82"sv, "\x63\x81\x82"sv, "\xC3\xA4"sv, "\xE4\xB8"sv, "\x80"sv,
        "\xFF"sv, "a"sv, "\n"sv, "ascii text"sv};
    for (const std::string_view first : kPieces)
    {
        std::string bytes;
        for (const std::string_view second : kPieces)
        {
            for (const std::string_view third : kPieces) bytes.append(first).append(second).append(third);
        }
        ExpectUtf8ByTable(bytes);
    }
}

// Surrogates included, which are ill-formed here.
TEST(Utf8Decoding, EveryCodePointOfThreeBytesOrLess)
{
    std::string bytes;
    for (unsigned point = 0; point < 0x10000; ++point)
    {
        if (point < 0x80)
            bytes += Byte(point);
        else if (point < 0x800)
            bytes += {Byte(0xC0 | point >> 6), Byte(0x80 | (point & 0x3F))};
        else
            bytes += {Byte(0xE0 | point >> 12), Byte(0x80 | (point >> 6 & 0x3F)), Byte(0x80 | (point & 0x3F))};
    }
    ExpectUtf8ByTable(bytes);
}

TEST(Utf8Decoding, EveryCodePointOfFourBytes)
{
    std::string bytes;
    for (unsigned point = 0x10000; point < 0x110000; ++point)
    {
        bytes += {Byte(0xF0 | point >> 18), Byte(0x80 | (point >> 12 & 0x3F)), Byte(0x80 | (point >> 6 & 0x3F)),
            Byte(0x80 | (point & 0x3F))};
    }
    const std::wstring expected(bytes.size(), L'\xFFFD');
    MemoryFile file(bytes);
    EXPECT_TRUE(Equal(expected, ReadInRuns(file, CP_UTF8, 4096)));
}

TEST(Utf8Decoding, TheTwoPlainDecodersAgree)
{
    for (unsigned first = 0x80; first < 0x100; ++first)
    {
        std::string bytes;
        for (unsigned second = 0; second < 256; ++second)
        {
            for (const unsigned third : {0x0Au, 0x41u, 0x80u, 0xBFu, 0xC3u, 0xE2u, 0xF0u})
            {
                bytes += {Byte(first), Byte(second), Byte(third), '\n', Byte(first), Byte(second), Byte(third)};
            }
        }
        ASSERT_TRUE(Equal(DecodeUtf8ByTable(bytes), DecodePlainly(bytes, CP_UTF8))) << std::hex << first;
    }
}

}  // namespace
}  // namespace arvmui_test
