#include "pseudo_text.h"

#include <gtest/gtest.h>

TEST(PseudoText, IsAccentedLongerAndInBrackets)
{
    EXPECT_EQ(PseudoTranslate(L"Add", 0), L"[\u00C5dd~~]");
}

TEST(PseudoText, KeepsPlaceholdersAndAccessKeys)
{
    EXPECT_EQ(PseudoTranslate(L"&Open %s: %%lu", 0).substr(0, 14), L"[&Op\u00E9\u00F1 %s: %%l");
}

TEST(PseudoText, StaysWithinItsRoom)
{
    EXPECT_EQ(PseudoTranslate(L"abc", 6), L"[\u00E5b\u00E7~]");
    EXPECT_EQ(PseudoTranslate(L"abc", 5), L"[\u00E5b\u00E7]");
    EXPECT_EQ(PseudoTranslate(L"abc", 4), L"\u00E5b\u00E7");
    EXPECT_EQ(PseudoTranslate(L"abc", 3), L"\u00E5b\u00E7");
}

TEST(PseudoText, NothingStaysNothing)
{
    EXPECT_EQ(PseudoTranslate(L"", 0), L"");
}
