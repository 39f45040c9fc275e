// Every sequence of bytes that matters, read through the library's reader, unit by unit and in runs,
// against the plain decoder.

#include "memory_file.h"
#include "plain_decoder.h"

#include "text/text_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace arvmui_test
{
namespace
{

using arvmui::TextReader;

struct CodePageCase
{
    const char* name;
    UINT codePage;
};

std::ostream& operator<<(std::ostream& stream, const CodePageCase& row)
{
    return stream << row.name;
}

constexpr CodePageCase kCodePages[] = {
    {"Western", 1252},
    {"Cyrillic", 1251},
    {"Greek", 1253},
    {"Thai", 874},
    {"Japanese", 932},
    {"SimplifiedChinese", 936},
    {"Korean", 949},
    {"TraditionalChinese", 950},
    {"JapaneseEuc", 20932},
    {"Latin1", 28591},
    {"Utf8", CP_UTF8},
    {"Ansi", CP_ACP},
    {"Utf7RefusesTheFlags", 65000},
    {"SymbolRefusesTheFlags", 42},
};

std::wstring ReadOneByOne(MemoryFile&, UINT codePage)
{
    TextReader reader;
    std::wstring text;
    if (!reader.Open(MemoryFile::kName, codePage)) return L"<not opened>";
    for (std::uint32_t unit = reader.NextCharacter(); unit != TextReader::kEnd; unit = reader.NextCharacter())
    {
        text.push_back(static_cast<wchar_t>(unit));
    }
    return text;
}

std::wstring ReadInRuns(MemoryFile&, UINT codePage, size_t capacity)
{
    TextReader reader;
    std::wstring text;
    std::vector<wchar_t> units(capacity);
    if (!reader.Open(MemoryFile::kName, codePage)) return L"<not opened>";
    for (;;)
    {
        const size_t count = reader.NextCharacters(units.data(), capacity);
        if (count == 0) return text;
        if (count > capacity) return L"<more than asked for>";
        text.append(units.data(), count);
    }
}

std::string Hex(std::wstring_view text, size_t from, size_t to)
{
    std::string hex;
    for (size_t i = from; i < std::min(to, text.size()); ++i)
    {
        char unit[8] = {};
        std::snprintf(unit, sizeof(unit), " %04X", static_cast<unsigned>(text[i]));
        hex += unit;
    }
    return hex;
}

// The texts are too long to be printed whole.
testing::AssertionResult Equal(std::wstring_view expected, std::wstring_view got)
{
    if (expected == got) return testing::AssertionSuccess();
    const auto place = std::mismatch(expected.begin(), expected.end(), got.begin(), got.end()).first;
    const size_t index = static_cast<size_t>(place - expected.begin());
    const size_t from = index < 6 ? 0 : index - 6;
    return testing::AssertionFailure() << expected.size() << " units expected, " << got.size()
                                       << " read, different from unit " << index << " on:\nexpected"
                                       << Hex(expected, from, index + 6) << "\nread    " << Hex(got, from, index + 6);
}

constexpr size_t kRunCapacities[] = {1, 2, 3, 7, 256, 1023, 1024, 1025, 100000};

void ExpectDecoded(std::string bytes, UINT codePage, std::wstring_view expected)
{
    MemoryFile file(std::move(bytes));
    EXPECT_TRUE(Equal(expected, ReadOneByOne(file, codePage)));
    for (const size_t capacity : kRunCapacities)
    {
        EXPECT_TRUE(Equal(expected, ReadInRuns(file, codePage, capacity))) << "in runs of " << capacity;
    }
}

void ExpectDecodedPlainly(const std::string& bytes, UINT codePage)
{
    ExpectDecoded(bytes, codePage, DecodePlainly(bytes, codePage));
}

char Byte(unsigned value)
{
    return static_cast<char>(static_cast<unsigned char>(value));
}

class DecodingTest : public testing::TestWithParam<CodePageCase>
{
};

std::string CaseName(const testing::TestParamInfo<CodePageCase>& information)
{
    return information.param.name;
}

INSTANTIATE_TEST_SUITE_P(CodePages, DecodingTest, testing::ValuesIn(kCodePages), CaseName);

TEST_P(DecodingTest, SingleByteIsAWholeFile)
{
    for (unsigned first = 0; first < 256; ++first)
    {
        SCOPED_TRACE(first);
        ExpectDecodedPlainly(std::string(1, Byte(first)), GetParam().codePage);
    }
}

TEST_P(DecodingTest, TwoBytesAreAWholeFile)
{
    const UINT codePage = GetParam().codePage;
    const unsigned step = codePage == 42 ? 61 : 1;  // the system is slow to find out about this one
    for (unsigned pair = 0x8000; pair < 0x10000; pair += step)
    {
        const std::string bytes{Byte(pair >> 8), Byte(pair & 0xFF)};
        const std::wstring expected = DecodePlainly(bytes, codePage);
        MemoryFile file(bytes);
        ASSERT_TRUE(Equal(expected, ReadOneByOne(file, codePage))) << std::hex << pair;
        ASSERT_TRUE(Equal(expected, ReadInRuns(file, codePage, 256))) << std::hex << pair;
    }
}

TEST_P(DecodingTest, TwoBytesStandAlone)
{
    std::string bytes;
    for (unsigned pair = 0; pair < 0x10000; ++pair)
    {
        bytes += {Byte(pair >> 8), Byte(pair & 0xFF), '\n', '\n', '\n', '\n'};
    }
    ExpectDecodedPlainly(bytes, GetParam().codePage);
}

TEST_P(DecodingTest, TwoBytesAreDenselyPacked)
{
    std::string bytes;
    for (unsigned pair = 0; pair < 0x10000; ++pair) bytes += {Byte(pair >> 8), Byte(pair & 0xFF)};
    ExpectDecodedPlainly(bytes, GetParam().codePage);
}

// Leads and trails in every order, so that a wrong start of one character shows in the next.
TEST_P(DecodingTest, HighBytesFollowOneAnotherInEveryPhase)
{
    std::string bytes;
    for (unsigned step = 1; step < 128; step += 2)
    {
        for (unsigned i = 0; i < 128; ++i) bytes += Byte(0x80 + i * step % 128);
        if (step % 3 == 0) bytes += 'A';
    }
    ExpectDecodedPlainly(bytes, GetParam().codePage);
}

TEST_P(DecodingTest, TwoBytesLieAcrossTheEndOfTheBuffer)
{
    const UINT codePage = GetParam().codePage;
    for (unsigned first = 0x80; first < 0x100; ++first)
    {
        std::string bytes;
        // Each pair begins one byte before a multiple of the buffer's size.
        for (unsigned second = 0; second < 256; second += 3)
        {
            bytes.append(TextReader::kBufferBytes - 1 - bytes.size() % TextReader::kBufferBytes, '.');
            bytes += {Byte(first), Byte(second), '\n', '\n', '\n', '\n'};
        }
        const std::wstring expected = DecodePlainly(bytes, codePage);
        MemoryFile file(bytes);
        ASSERT_TRUE(Equal(expected, ReadOneByOne(file, codePage))) << std::hex << first;
        ASSERT_TRUE(Equal(expected, ReadInRuns(file, codePage, 256))) << std::hex << first;
        ASSERT_TRUE(Equal(expected, ReadInRuns(file, codePage, 4096))) << std::hex << first;
    }
}

// A text of every kind of sequence, moved byte by byte through the buffer.
TEST_P(DecodingTest, SequencesAreSplitAtEveryPlaceOfTheBuffer)
{
    const UINT codePage = GetParam().codePage;
    const std::string piece =
        "x\x81\x40\x93\xFA\xE9\n\xE6\x97\xA5\xF0\x9F\x98\x80\xC3\xA4\xFF\xEF\xBF\xBD\x8E\xA1\x8F\xB0\xA1\xC3";
    std::string text;
    while (text.size() < 2200) text += piece;
    for (size_t lead = 0; lead < TextReader::kBufferBytes + 4; ++lead)
    {
        const std::string bytes = std::string(lead, '.') + text;
        const std::wstring expected = DecodePlainly(bytes, codePage);
        MemoryFile file(bytes);
        ASSERT_TRUE(Equal(expected, ReadOneByOne(file, codePage))) << lead;
        ASSERT_TRUE(Equal(expected, ReadInRuns(file, codePage, 256))) << lead;
        ASSERT_TRUE(Equal(expected, ReadInRuns(file, codePage, 1))) << lead;
    }
}

TEST_P(DecodingTest, FileEndsAnywhereInASequence)
{
    const UINT codePage = GetParam().codePage;
    const std::string piece = "x\x93\xFA\xE6\x97\xA5\xF0\x9F\x98\x80\xC3\xA4\x81";
    for (const size_t lead : {size_t{0}, size_t{1}, TextReader::kBufferBytes - 6, TextReader::kBufferBytes * 2 - 3})
    {
        for (size_t length = 0; length <= piece.size(); ++length)
        {
            SCOPED_TRACE(length);
            ExpectDecodedPlainly(std::string(lead, '.') + piece.substr(0, length), codePage);
        }
    }
}

TEST_P(DecodingTest, ShortReadsChangeNothing)
{
    const UINT codePage = GetParam().codePage;
    std::string bytes;
    for (int i = 0; i < 80; ++i) bytes += "ab\x93\xFA\xE6\x97\xA5\xF0\x9F\x98\x80\xC3\xA4\x81\n";
    const std::wstring expected = DecodePlainly(bytes, codePage);
    for (size_t portion = 1; portion < 20; ++portion)
    {
        MemoryFile file(bytes);
        for (size_t end = portion; end < bytes.size(); end += portion) file.portionEnds.push_back(end);
        EXPECT_TRUE(Equal(expected, ReadOneByOne(file, codePage))) << "portions of " << portion;
        EXPECT_TRUE(Equal(expected, ReadInRuns(file, codePage, 256))) << "portions of " << portion;
    }
}

TEST_P(DecodingTest, ReadErrorEndsTheTextAsTheEndOfTheFileWould)
{
    const UINT codePage = GetParam().codePage;
    std::string bytes(1015, '.');
    for (int i = 0; i < 10; ++i) bytes += "\x93\xFA\xE6\x97\xA5\xF0\x9F\x98\x80\xC3\xA4\x81";
    for (size_t errorAt = 1014; errorAt < 1040; ++errorAt)
    {
        const std::wstring expected = DecodePlainly(std::string_view(bytes).substr(0, errorAt), codePage);
        MemoryFile file(bytes);
        file.errorAt = errorAt;
        EXPECT_TRUE(Equal(expected, ReadOneByOne(file, codePage))) << errorAt;
        EXPECT_TRUE(Equal(expected, ReadInRuns(file, codePage, 256))) << errorAt;
    }
}

// A system that does not know a code page takes its time to say so, for each character anew: few bytes.
TEST(Decoding, CodePageThatTheSystemDoesNotKnowStillEndsTheRead)
{
    for (const UINT codePage : {54321u, 65535u, 1201u})
    {
        SCOPED_TRACE(codePage);
        const std::string bytes = std::string(1022, '.') + "a\x93\xFA\n\xC3";
        const std::wstring expected = std::wstring(1022, L'.') + L"a\xFFFD\xFFFD\n\xFFFD";
        MemoryFile file(bytes);
        EXPECT_TRUE(Equal(expected, ReadOneByOne(file, codePage)));
        EXPECT_TRUE(Equal(expected, ReadInRuns(file, codePage, 256)));
    }
}

// Known to some systems only; either way the decoding is that of the system's converter.
TEST(Decoding, CodePageThatTheSystemMayNotKnow)
{
    for (const UINT codePage : {51932u, 54936u})
    {
        SCOPED_TRACE(codePage);
        const std::string bytes = std::string(1022, '.') + "a\xB0\xA1\n\xC4\xE3";
        const std::wstring expected = DecodePlainly(bytes, codePage);
        MemoryFile file(bytes);
        EXPECT_TRUE(Equal(expected, ReadOneByOne(file, codePage)));
        EXPECT_TRUE(Equal(expected, ReadInRuns(file, codePage, 256)));
    }
}

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

// Deterministic, the same with every library.
class Numbers
{
public:
    explicit Numbers(std::uint64_t seed) : state_(seed) {}
    unsigned Below(unsigned limit)
    {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<unsigned>((state_ >> 33) % limit);
    }

private:
    std::uint64_t state_;
};

UINT AnyCodePage(Numbers& numbers)
{
    return kCodePages[numbers.Below(std::size(kCodePages))].codePage;
}

TEST(Decoding, CodePageChangesBetweenTwoReads)
{
    Numbers numbers(20240611);
    for (int round = 0; round < 200; ++round)
    {
        std::string bytes;
        const unsigned length = 500 + numbers.Below(2500);
        while (bytes.size() < length)
        {
            if (numbers.Below(4) == 0) bytes.append(numbers.Below(40), 'a');
            bytes += Byte(numbers.Below(3) == 0 ? numbers.Below(256) : 0x80 + numbers.Below(128));
        }
        MemoryFile file(bytes);
        PlainDecoder plain(bytes);
        TextReader reader;
        UINT codePage = AnyCodePage(numbers);
        ASSERT_TRUE(reader.Open(MemoryFile::kName, codePage));
        bool ended = false;
        while (!ended)
        {
            std::wstring expected;
            std::wstring got;
            if (numbers.Below(2) == 0)
            {
                const std::uint32_t unit = reader.NextCharacter();
                ASSERT_EQ(plain.Next(codePage), unit) << "round " << round << ", byte " << plain.Position();
                ended = unit == TextReader::kEnd;
            }
            else
            {
                wchar_t units[300];
                const size_t count = reader.NextCharacters(units, 1 + numbers.Below(300));
                for (size_t i = 0; i < count; ++i)
                {
                    ASSERT_EQ(plain.Next(codePage), units[i]) << "round " << round << ", byte " << plain.Position();
                }
                ended = count == 0;
                if (ended)
                {
                    ASSERT_EQ(PlainDecoder::kEnd, plain.Next(codePage));
                }
            }
            codePage = AnyCodePage(numbers);
            reader.SetCodePage(codePage);
        }
    }
}

// Files of the bytes that a code page's own texts have, so that runs get long.
TEST(Decoding, GeneratedTextsOfEveryCodePage)
{
    Numbers numbers(7);
    for (int round = 0; round < 1500; ++round)
    {
        const UINT codePage = AnyCodePage(numbers);
        const unsigned asciiShare = numbers.Below(8);
        const unsigned low = numbers.Below(2) == 0 ? 0x80 : 0xA1;
        std::string bytes;
        const unsigned length = numbers.Below(6000);
        while (bytes.size() < length)
        {
            if (numbers.Below(8) < asciiShare)
                bytes += Byte(numbers.Below(128));
            else
                bytes += {Byte(low + numbers.Below(0x100 - low)), Byte(low + numbers.Below(0x100 - low))};
        }
        const std::wstring expected = DecodePlainly(bytes, codePage);
        MemoryFile file(bytes);
        ASSERT_TRUE(Equal(expected, ReadOneByOne(file, codePage))) << "code page " << codePage << ", round " << round;
        ASSERT_TRUE(Equal(expected, ReadInRuns(file, codePage, 1 + numbers.Below(3000))))
            << "code page " << codePage << ", round " << round;
    }
}

}  // namespace
}  // namespace arvmui_test
