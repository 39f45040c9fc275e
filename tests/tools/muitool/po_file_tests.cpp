#include "po_file.h"
#include "tool_error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(PoFile, WhatIsWrittenIsReadAgain)
{
    const std::string odd = "\"quotes\" \\ \t\r\n\x01 two\nlines\n";
    const std::string text = WritePo("de-DE", {{{"a note"}, true, "string 1", "original", odd}});
    EXPECT_THAT(ReadPo(text), ElementsAre(Pair("string 1", odd)));
}

TEST(PoFile, UntranslatedAndDoubtfulEntriesAreLeftOut)
{
    EXPECT_THAT(ReadPo("msgctxt \"a\"\nmsgid \"x\"\nmsgstr \"\"\n\n#, fuzzy, c-format\nmsgctxt \"b\"\nmsgid "
                       "\"x\"\nmsgstr \"y\"\n"),
        IsEmpty());
}

TEST(PoFile, EntriesNeedNoBlankLineBetweenThem)
{
    EXPECT_THAT(ReadPo("msgctxt \"a\"\nmsgid \"x\"\nmsgstr \"1\"\nmsgctxt \"b\"\nmsgid \"x\"\nmsgstr \"2\"\n"),
        ElementsAre(Pair("a", "1"), Pair("b", "2")));
}

TEST(PoFile, AByteOrderMarkAndWindowsLineEndsAreTaken)
{
    EXPECT_THAT(ReadPo("\xEF\xBB\xBFmsgctxt \"a\"\r\nmsgid \"x\"\r\nmsgstr \"\"\r\n\"1\\n\"\r\n\"2\"\r\n"),
        ElementsAre(Pair("a", "1\n2")));
}

TEST(PoFile, BrokenTextIsRefusedWithItsLine)
{
    const auto error = [](const char* text)
    {
        try
        {
            ReadPo(text);
        }
        catch (const ToolError& refused)
        {
            return std::string(refused.what());
        }
        return std::string();
    };
    EXPECT_THAT(error("msgid \"x\"\nmsgstr \"y\n"), testing::StartsWith("line 2: "));
    EXPECT_THAT(error("msgid \"\\q\"\n"), testing::StartsWith("line 1: "));
    EXPECT_THAT(error("\"text without a place\"\n"), testing::StartsWith("line 1: "));
}
