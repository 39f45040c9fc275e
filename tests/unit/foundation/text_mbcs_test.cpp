// Searches in narrow text of a double-byte code page. The system under test need not have one: the
// stepping is replaced by that of a code page whose lead bytes are 0x81 to 0x9F.
#include "foundation/text.h"

#include "support/import_replacement.h"

#include <gtest/gtest.h>

namespace
{

WORD g_codePage;
DWORD g_flags;
const char* g_stuckAt;

bool IsLeadByte(char byte)
{
    const unsigned value = static_cast<unsigned char>(byte);
    return value >= 0x81 && value <= 0x9F;
}

LPSTR WINAPI StepDoubleByte(WORD codePage, LPCSTR text, DWORD flags)
{
    g_codePage = codePage;
    g_flags = flags;
    if (*text == '\0' || text == g_stuckAt) return const_cast<char*>(text);
    return const_cast<char*>(text + (IsLeadByte(*text) && text[1] ? 2 : 1));
}

}  // namespace

ARVMUI_REPLACE_IMPORT(CharNextExA, &StepDoubleByte)

namespace
{

using arvmui::FindLastMbcsChar;
using arvmui::FindMbcsChar;

class DoubleByteText : public testing::Test
{
protected:
    DoubleByteText()
    {
        g_codePage = 4711;
        g_flags = 4711;
        g_stuckAt = nullptr;
    }
    // "\", then a character whose second byte is that of "\", then "A", "\", the character again, "A".
    static constexpr char kText[] = "\\\x81\\A\\\x81\\A";
};

TEST_F(DoubleByteText, StepsInTheAnsiCodePageWithoutFlags)
{
    FindMbcsChar(kText, 'A');
    EXPECT_EQ(g_codePage, CP_ACP);
    EXPECT_EQ(g_flags, 0u);
    g_codePage = 4711;
    g_flags = 4711;
    FindLastMbcsChar(kText, 'A');
    EXPECT_EQ(g_codePage, CP_ACP);
    EXPECT_EQ(g_flags, 0u);
}

TEST_F(DoubleByteText, SecondBytesAreNoCharacters)
{
    EXPECT_EQ(FindMbcsChar(kText, '\\'), kText);
    EXPECT_EQ(FindLastMbcsChar(kText, '\\'), kText + 4);
    EXPECT_EQ(FindMbcsChar(kText + 1, '\\'), kText + 4);
}

TEST_F(DoubleByteText, DoubleByteCharactersAreFoundByBothBytes)
{
    EXPECT_EQ(FindMbcsChar(kText, 0x815C), kText + 1);
    EXPECT_EQ(FindLastMbcsChar(kText, 0x815C), kText + 5);
    EXPECT_EQ(FindMbcsChar(kText, 0x5C81), nullptr);
    const char ideographicSpace[] = "a\x81\x40";
    EXPECT_EQ(FindMbcsChar(ideographicSpace, 0x8140), ideographicSpace + 1);
}

TEST_F(DoubleByteText, HighBytesAreNotNegative)
{
    const char text[] = "a\xE4\x9F\xFF";
    EXPECT_EQ(FindMbcsChar(text, 0xE4), text + 1);
    EXPECT_EQ(FindMbcsChar(text, 0x9FFF), text + 2);
    EXPECT_EQ(FindLastMbcsChar(text, 0xE4), text + 1);
}

TEST_F(DoubleByteText, FirstAndLastDiffer)
{
    const char text[] = "a:b:c";
    EXPECT_EQ(FindMbcsChar(text, ':'), text + 1);
    EXPECT_EQ(FindLastMbcsChar(text, ':'), text + 3);
}

TEST_F(DoubleByteText, WhatIsNotThereIsNull)
{
    EXPECT_EQ(FindMbcsChar(kText, 'B'), nullptr);
    EXPECT_EQ(FindLastMbcsChar(kText, 'B'), nullptr);
    EXPECT_EQ(FindMbcsChar("", 'B'), nullptr);
    EXPECT_EQ(FindLastMbcsChar("", 'B'), nullptr);
}

TEST_F(DoubleByteText, ZeroIsTheTerminator)
{
    EXPECT_EQ(FindMbcsChar(kText, 0), kText + 8);
    EXPECT_EQ(FindLastMbcsChar(kText, 0), kText + 8);
    const char empty[] = "";
    EXPECT_EQ(FindMbcsChar(empty, 0), empty);
}

TEST_F(DoubleByteText, SearchEndsWhereSteppingStops)
{
    const char text[] = "a:b:c";
    g_stuckAt = text + 2;
    EXPECT_EQ(FindMbcsChar(text, 'c'), nullptr);
    EXPECT_EQ(FindLastMbcsChar(text, ':'), text + 1);
}

}  // namespace
