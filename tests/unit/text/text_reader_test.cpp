// The reader's own operations: opening, reading through the buffer, errors, closing.

#include "memory_file.h"

#include "text/text_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace arvmui_test
{
namespace
{

using arvmui::TextReader;

TEST(TextReader, OpensForReadingAndLetsOthersReadOnly)
{
    MemoryFile file("a");
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 0));
    ASSERT_EQ(file.openings.size(), 1u);
    EXPECT_EQ(file.openings[0].access, static_cast<DWORD>(GENERIC_READ));
    EXPECT_EQ(file.openings[0].share, static_cast<DWORD>(FILE_SHARE_READ));
    EXPECT_EQ(file.openings[0].disposition, static_cast<DWORD>(OPEN_EXISTING));
    EXPECT_EQ(file.openings[0].attributes, static_cast<DWORD>(FILE_ATTRIBUTE_NORMAL));
    EXPECT_FALSE(file.openings[0].hasSecurity);
    EXPECT_FALSE(file.openings[0].hasTemplate);
    EXPECT_EQ(reader.LastError(), 0u);
}

TEST(TextReader, RemembersWhyAFileWasNotOpened)
{
    TextReader reader;
    EXPECT_FALSE(reader.Open(L"no such file", 0));
    EXPECT_EQ(reader.LastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(reader.NextCharacter(), TextReader::kEnd);
}

TEST(TextReader, OpeningForgetsAnEarlierError)
{
    TextReader reader;
    EXPECT_FALSE(reader.Open(L"no such file", 0));
    MemoryFile file("ab");
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 1252));
    EXPECT_EQ(reader.LastError(), 0u);
    EXPECT_EQ(reader.NextCharacter(), static_cast<std::uint32_t>('a'));
}

TEST(TextReader, OpeningAgainDropsWhatWasReadOfTheFirstFile)
{
    TextReader reader;
    MemoryFile file("abc");
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 1252));
    EXPECT_EQ(reader.NextCharacter(), static_cast<std::uint32_t>('a'));
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 1252));
    EXPECT_EQ(reader.NextCharacter(), static_cast<std::uint32_t>('a'));
}

TEST(TextReader, ClosesTheFileOnce)
{
    MemoryFile file("a");
    {
        TextReader reader;
        ASSERT_TRUE(reader.Open(MemoryFile::kName, 0));
        EXPECT_TRUE(reader.Close());
        EXPECT_EQ(file.closings, 1);
        EXPECT_TRUE(reader.Close());
    }
    EXPECT_EQ(file.closings, 1);
}

TEST(TextReader, ClosesTheFileWhenItGoes)
{
    MemoryFile file("a");
    {
        TextReader reader;
        ASSERT_TRUE(reader.Open(MemoryFile::kName, 0));
    }
    EXPECT_EQ(file.closings, 1);
}

TEST(TextReader, ClosesTheFileWhenAnotherIsOpened)
{
    MemoryFile file("a");
    {
        TextReader reader;
        ASSERT_TRUE(reader.Open(MemoryFile::kName, 0));
        ASSERT_TRUE(reader.Open(MemoryFile::kName, 0));
    }
    EXPECT_EQ(file.closings, 2);
}

TEST(TextReader, ReadsABufferAtATime)
{
    MemoryFile file(std::string(3000, 'a'));
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 1252));
    while (reader.NextCharacter() != TextReader::kEnd)
    {
    }
    // The last one finds the end.
    EXPECT_EQ(file.requestedBytes, (std::vector<DWORD>{1024, 1024, 1024, 1024}));
}

TEST(TextReader, FillsUpBehindTheBeginningOfASequence)
{
    MemoryFile file(std::string(1022, 'a') + "\xE6\x97\xA5z");
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, CP_UTF8));
    for (int i = 0; i < 1022; ++i) ASSERT_EQ(reader.NextCharacter(), static_cast<std::uint32_t>('a'));
    EXPECT_EQ(reader.NextCharacter(), 0x65E5u);
    EXPECT_EQ(reader.NextCharacter(), static_cast<std::uint32_t>('z'));
    EXPECT_EQ(reader.NextCharacter(), TextReader::kEnd);
    ASSERT_GE(file.requestedBytes.size(), 2u);
    EXPECT_EQ(file.requestedBytes[1], 1022u);
}

TEST(TextReader, NeverAsksForMoreThanItsBufferHolds)
{
    std::string bytes;
    while (bytes.size() < 9000) bytes += "\xF0\x9F\x98\x80x\xE9";
    MemoryFile file(bytes);
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, CP_UTF8));
    wchar_t units[77];
    while (reader.NextCharacters(units, 77) != 0)
    {
    }
    EXPECT_LE(*std::max_element(file.requestedBytes.begin(), file.requestedBytes.end()), 1024u);
}

TEST(TextReader, RefillOfAFullBufferReadsNothing)
{
    MemoryFile file(std::string(2000, 'a'));
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 1252));
    EXPECT_TRUE(reader.Refill());
    EXPECT_TRUE(reader.Refill());
    EXPECT_EQ(file.requestedBytes, (std::vector<DWORD>{1024}));
}

TEST(TextReader, RefillAtTheEndOfTheFileSucceeds)
{
    MemoryFile file("");
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 1252));
    EXPECT_TRUE(reader.Refill());
    EXPECT_EQ(reader.LastError(), 0u);
}

TEST(TextReader, EndIsReportedAgainAndAgain)
{
    MemoryFile file("a");
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 1252));
    EXPECT_EQ(reader.NextCharacter(), static_cast<std::uint32_t>('a'));
    EXPECT_EQ(reader.NextCharacter(), TextReader::kEnd);
    EXPECT_EQ(reader.NextCharacter(), TextReader::kEnd);
    wchar_t unit = L'\0';
    EXPECT_EQ(reader.NextCharacters(&unit, 1), 0u);
}

TEST(TextReader, ReadErrorEndsTheTextAndIsKept)
{
    MemoryFile file("abcdef");
    file.errorAt = 3;
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 1252));
    for (const char expected : {'a', 'b', 'c'}) EXPECT_EQ(reader.NextCharacter(), static_cast<std::uint32_t>(expected));
    EXPECT_EQ(reader.NextCharacter(), TextReader::kEnd);
    EXPECT_EQ(reader.LastError(), static_cast<DWORD>(ERROR_CRC));
    EXPECT_FALSE(reader.Refill());
}

TEST(TextReader, ReadErrorInASequenceLeavesItsBytesUndecodedOneByOne)
{
    MemoryFile file("a\xE6\x97\xA5");
    file.errorAt = 3;
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, CP_UTF8));
    EXPECT_EQ(reader.NextCharacter(), static_cast<std::uint32_t>('a'));
    EXPECT_EQ(reader.NextCharacter(), TextReader::kUndecodable);
    EXPECT_EQ(reader.NextCharacter(), TextReader::kUndecodable);
    EXPECT_EQ(reader.NextCharacter(), TextReader::kEnd);
    EXPECT_EQ(reader.LastError(), static_cast<DWORD>(ERROR_CRC));
}

TEST(TextReader, CodePageTheSystemDoesNotKnowMayBeLeftAgain)
{
    MemoryFile file("\xE4\xE4\xE4");
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 54321));
    EXPECT_EQ(reader.NextCharacter(), TextReader::kUndecodable);
    reader.SetCodePage(1252);
    EXPECT_EQ(reader.NextCharacter(), 0x00E4u);
    reader.SetCodePage(1251);
    EXPECT_EQ(reader.NextCharacter(), 0x0434u);
}

// A file to which another program adds while it is read.
TEST(TextReader, FileThatGrowsIsReadOn)
{
    MemoryFile file("a");
    TextReader reader;
    ASSERT_TRUE(reader.Open(MemoryFile::kName, 1252));
    EXPECT_EQ(reader.NextCharacter(), static_cast<std::uint32_t>('a'));
    EXPECT_EQ(reader.NextCharacter(), TextReader::kEnd);
    file.bytes += "b";
    EXPECT_EQ(reader.NextCharacter(), static_cast<std::uint32_t>('b'));
}

}  // namespace
}  // namespace arvmui_test
