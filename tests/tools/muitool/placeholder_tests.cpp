#include "placeholders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Placeholders, PrintfOnesStandInTheirOrder)
{
    EXPECT_THAT(PrintfPlaceholders(L"%s has %5lu of %%d and %#I64x"), ElementsAre(L"%s", L"%5lu", L"%#I64x"));
}

TEST(Placeholders, APercentSignBeforeAWordIsNone)
{
    EXPECT_THAT(PrintfPlaceholders(L"100 % der Texte"), IsEmpty());
    EXPECT_THAT(PrintfPlaceholders(L"100%"), IsEmpty());
}

TEST(Placeholders, InsertsAreSortedByNumber)
{
    EXPECT_THAT(InsertPlaceholders(L"%2!d! of %1, %%1, %0"), ElementsAre(L"%1", L"%2!d!"));
}

TEST(Placeholders, TheFirstPassFillsInItsOwnAndUnescapesTheRest)
{
    EXPECT_EQ(TextForSecondPass(L"%s: %%lu, %%s, %%%%"), L": %lu, %s, %%");
}

TEST(Placeholders, AnEscapedPlaceholderIsOnePiece)
{
    EXPECT_EQ(PlaceholderLength(L"%%lu: rest"), 4u);
    EXPECT_EQ(PlaceholderLength(L"%% rest"), 2u);
    EXPECT_EQ(PlaceholderLength(L"%1!s! rest"), 5u);
    EXPECT_EQ(PlaceholderLength(L"% rest"), 0u);
}
