// Every sequence of bytes that matters, read through the library's reader, unit by unit and in runs,
// against the plain decoder.

#include "decoded_text.h"
#include "memory_file.h"
#include "plain_decoder.h"

#include "text/text_reader.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

namespace arvmui_test
{
namespace
{

using arvmui::TextReader;

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

// Bytes are looked at eight and sixteen at a time where they can be.
TEST_P(DecodingTest, BytesStandAtEveryPlaceAmongAscii)
{
    std::string bytes;
    for (unsigned value = 0x80; value < 0x100; ++value)
    {
        for (size_t place = 0; place < 17; ++place)
        {
            bytes += std::string(place, 'a') + Byte(value) + std::string(17 - place, 'b') + '\n';
        }
    }
    ExpectDecodedPlainly(bytes, GetParam().codePage);
}

TEST_P(DecodingTest, AsciiOfEveryLengthStandsBetweenCharacters)
{
    std::string bytes;
    for (const char* character : {"\xE4", "\x93\xFA", "\xC3\xA4", "\xE6\x97\xA5\xE6\x9C\xAC", "\xF0\x9F\x98\x80"})
    {
        for (size_t length = 0; length < 40; ++length) bytes += character + std::string(length, 'a');
        bytes += '\n';
    }
    ExpectDecodedPlainly(bytes, GetParam().codePage);
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

std::vector<UINT> g_systemCodePages;

BOOL CALLBACK TakeCodePage(LPWSTR number)
{
    g_systemCodePages.push_back(static_cast<UINT>(std::wcstoul(number, nullptr, 10)));
    return TRUE;
}

// Single- and double-byte ones, whatever the system has.
TEST(Decoding, EveryCodePageOfTheSystem)
{
    std::string bytes;
    for (unsigned pair = 0x8000; pair < 0x10000; ++pair)
    {
        bytes += {Byte(pair >> 8), Byte(pair & 0xFF), '\n', '\n', '\n', '\n'};
    }
    for (unsigned pair = 0x8000; pair < 0x10000; ++pair) bytes += {Byte(pair >> 8), Byte(pair & 0xFF)};

    g_systemCodePages.clear();
    ASSERT_TRUE(::EnumSystemCodePagesW(&TakeCodePage, CP_INSTALLED));
    size_t doubleBytePages = 0;
    for (const UINT codePage : g_systemCodePages)
    {
        CPINFO information = {};
        if (!::GetCPInfo(codePage, &information) || information.MaxCharSize > 2) continue;
        if (information.MaxCharSize == 2) ++doubleBytePages;
        const std::wstring expected = DecodePlainly(bytes, codePage);
        MemoryFile file(bytes);
        EXPECT_TRUE(Equal(expected, ReadOneByOne(file, codePage))) << "code page " << codePage;
        EXPECT_TRUE(Equal(expected, ReadInRuns(file, codePage, 256))) << "code page " << codePage;
    }
    EXPECT_GE(doubleBytePages, 4u) << "this system lacks the languages of East Asia";
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

class ThreadLocale
{
public:
    explicit ThreadLocale(LCID locale) : before_(::GetThreadLocale()) { ::SetThreadLocale(locale); }
    ~ThreadLocale() { ::SetThreadLocale(before_); }
    ThreadLocale(const ThreadLocale&) = delete;
    ThreadLocale& operator=(const ThreadLocale&) = delete;

private:
    LCID before_;
};

// The number stands for whatever the thread has.
TEST(Decoding, CodePageOfTheThreadFollowsItsLocale)
{
    const std::string bytes = "a\x93\xFA\xB1z\x93";
    const ThreadLocale japanese(MAKELCID(MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT), SORT_DEFAULT));
    ExpectDecoded(bytes, CP_THREAD_ACP, L"a\x65E5\xFF71z\xFFFD");
    const ThreadLocale russian(MAKELCID(MAKELANGID(LANG_RUSSIAN, SUBLANG_DEFAULT), SORT_DEFAULT));
    ExpectDecoded(bytes, CP_THREAD_ACP, L"a\x201C\x044A\x00B1z\x201C");
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

}  // namespace
}  // namespace arvmui_test
