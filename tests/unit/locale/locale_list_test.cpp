// Cutting locale lists into items, cleaning and recognising items, deriving shorter tags, and the
// list of tags already tried.
#include "locale/locale_list.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <ostream>
#include <string>
#include <vector>

namespace
{

using namespace arvmui;

// The items that a walk through a list yields.
std::vector<std::wstring> ItemsOf(const wchar_t* list)
{
    std::vector<std::wstring> items;
    for (const wchar_t* p = SkipListSeparators(list); *p; p = SkipListSeparators(p))
    {
        const wchar_t* const end = FindListItemEnd(p);
        items.emplace_back(p, end);
        p = end;
    }
    return items;
}

using Items = std::vector<std::wstring>;

TEST(ListItems, BlanksAndEmptyItemsAreSkipped)
{
    EXPECT_EQ(ItemsOf(L" , en ,,de-DE  ,ja"), (Items{L"en", L"de-DE", L"ja"}));
}

TEST(ListItems, EmptyListsHaveNone)
{
    EXPECT_EQ(ItemsOf(L""), Items{});
    EXPECT_EQ(ItemsOf(L" ,\t, "), Items{});
}

TEST(ListItems, AllAsciiWhiteSpaceSeparates)
{
    EXPECT_EQ(ItemsOf(L" \t\n\v\f\ren\r\f\v\n\t ,\t de"), (Items{L"en", L"de"}));
}

TEST(ListItems, WhiteSpaceInsideAnItemStays)
{
    EXPECT_EQ(ItemsOf(L"my \t folder  , x y "), (Items{L"my \t folder", L"x y"}));
}

TEST(ListItems, WhiteSpaceBeyondAsciiBelongsToTheItem)
{
    EXPECT_EQ(ItemsOf(L"\u00A0en\u00A0,\u3000de\u2003 "), (Items{L"\u00A0en\u00A0", L"\u3000de\u2003"}));
}

TEST(ListItems, SeparatorsAreCommaAndAsciiWhiteSpaceOnly)
{
    for (unsigned c = 1; c <= 0xFFFF; ++c)
    {
        const wchar_t list[] = {static_cast<wchar_t>(c), L'x', L'\0'};
        const bool separates = c == ',' || c == ' ' || (c >= 9 && c <= 13);
        EXPECT_EQ(SkipListSeparators(list), separates ? list + 1 : list) << "character " << c;
    }
}

TEST(ListItems, EndIsTheCommaTheTerminatorOrTheSpaceBeforeIt)
{
    const std::wstring lists[] = {L"en,", L"en", L"en ,", L"en \t", L"en"};
    for (const std::wstring& list : lists) EXPECT_EQ(FindListItemEnd(list.c_str()) - list.c_str(), 2);
    const wchar_t onlySpace[] = L"  ,";
    EXPECT_EQ(FindListItemEnd(onlySpace), onlySpace);
    const wchar_t nothing[] = L"";
    EXPECT_EQ(FindListItemEnd(nothing), nothing);
}

TEST(CopyListItem, FitsExactlyWithItsTerminator)
{
    wchar_t buffer[4];
    std::wmemset(buffer, L'?', 4);
    const wchar_t item[] = L"ja,de";
    EXPECT_TRUE(CopyListItem(buffer, buffer + 3, item, item + 2));
    EXPECT_STREQ(buffer, L"ja");
    EXPECT_EQ(buffer[3], L'?');
}

TEST(CopyListItem, OneCharacterTooLongCopiesNothing)
{
    wchar_t buffer[4];
    std::wmemset(buffer, L'?', 4);
    const wchar_t item[] = L"jap,de";
    EXPECT_FALSE(CopyListItem(buffer, buffer + 3, item, item + 3));
    EXPECT_EQ(std::wstring(buffer, 4), L"????");
}

TEST(CopyListItem, EmptyItemNeedsRoomForItsTerminator)
{
    wchar_t buffer[2] = {L'?', L'?'};
    const wchar_t item[] = L"";
    EXPECT_FALSE(CopyListItem(buffer, buffer, item, item));
    EXPECT_EQ(buffer[0], L'?');
    EXPECT_TRUE(CopyListItem(buffer, buffer + 1, item, item));
    EXPECT_EQ(buffer[0], L'\0');
}

std::wstring Sanitized(std::wstring item)
{
    wchar_t* const result = SanitizeLocaleItem(item.data());
    EXPECT_EQ(result, item.data());
    return item.c_str();
}

TEST(SanitizeLocaleItem, ReplacesWhatNoFileNameHolds)
{
    EXPECT_EQ(Sanitized(L"a:b|c"), L"a_b_c");
    EXPECT_EQ(Sanitized(L"..\\en"), L".._en");
    EXPECT_EQ(Sanitized(L"\"/:<>\\|"), L"_______");
    EXPECT_EQ(Sanitized(L""), L"");
}

TEST(SanitizeLocaleItem, TouchesControlCharactersAndSevenOthersOnly)
{
    const std::wstring replaced = L"\"/:<>\\|";
    for (unsigned c = 1; c <= 0xFFFF; ++c)
    {
        const wchar_t character = static_cast<wchar_t>(c);
        const bool bad = c < 32 || replaced.find(character) != std::wstring::npos;
        EXPECT_EQ(Sanitized(std::wstring(1, character)), std::wstring(1, bad ? L'_' : character)) << "character " << c;
    }
}

// Deliberate: they match no folder, but a keyword is recognised whatever else the item holds.
TEST(SanitizeLocaleItem, LeavesWildcards)
{
    EXPECT_EQ(Sanitized(L"*?"), L"*?");
}

struct NumericCase
{
    const char* name;
    const wchar_t* item;
    bool numeric;
    LANGID id;
    friend void PrintTo(const NumericCase& entry, std::ostream* stream) { *stream << entry.name; }
};

const NumericCase kNumericCases[] = {
    {"Decimal", L"1033", true, 1033},
    {"Hexadecimal", L"0x409", true, 0x409},
    {"HexadecimalInUpperCase", L"0X0C0A", true, 0x0C0A},
    {"Octal", L"02011", true, 02011},
    {"Zero", L"0", true, 0},
    {"LowSixteenBitsCount", L"0x10407", true, 0x0407},
    {"NegativeWrapsAround", L"-1", true, 0xFFFF},
    {"PlusSign", L"+1031", true, 1031},
    {"LeadingWhiteSpace", L" 1031", true, 1031},
    {"TooLargeSaturates", L"99999999999", true, 0xFFFF},
    {"LettersBehind", L"12a", false, 0},
    {"DigitOutOfBase", L"08", false, 0},
    {"SpaceBehind", L"12 ", false, 0},
    {"Empty", L"", false, 0},
    {"Blank", L" ", false, 0},
    {"SignAlone", L"-", false, 0},
    {"PrefixAlone", L"0x", false, 0},
    {"Tag", L"de-DE", false, 0},
    {"HexadecimalWithoutPrefix", L"C0A", false, 0},
};

class NumericItem : public testing::TestWithParam<NumericCase>
{
};

TEST_P(NumericItem, IsRecognisedAndHasItsLowSixteenBitsAsIdentifier)
{
    EXPECT_EQ(IsNumericItem(GetParam().item) != FALSE, GetParam().numeric);
    if (GetParam().numeric)
    {
        EXPECT_EQ(ParseNumericItem(GetParam().item), GetParam().id);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , NumericItem, testing::ValuesIn(kNumericCases), [](const auto& entry) { return entry.param.name; });

struct DeriveCase
{
    const wchar_t* tag;
    const wchar_t* full;      // null: none
    const wchar_t* language;  // null: none
};

const DeriveCase kDeriveCases[] = {
    {L"en-US-x", L"en-US", L"en"},
    {L"en_US.UTF-8", L"en_US", L"en"},
    {L"en-US ", L"en-US", L"en"},
    {L"en-US1", L"en-US", L"en"},
    {L"zh-cn@pinyin", L"zh-cn", L"zh"},
    {L"en-US", nullptr, L"en"},
    {L"pt_BR", nullptr, L"pt"},
    {L"en-USA", nullptr, nullptr},
    {L"en-USA-x", nullptr, nullptr},
    {L"en", nullptr, nullptr},
    {L"en-", nullptr, nullptr},
    {L"en-U", nullptr, nullptr},
    {L"en-U1-x", nullptr, nullptr},
    {L"eng-US", nullptr, nullptr},
    {L"e-US-x", nullptr, nullptr},
    {L"1n-US-x", nullptr, nullptr},
    {L"e1-US-x", nullptr, nullptr},
    {L"en.US-x", nullptr, nullptr},
    {L"enUS-x", nullptr, nullptr},
    {L"", nullptr, nullptr},
    {L"e", nullptr, nullptr},
    // Letters of any script count.
    {L"\x00E9\x0440-\x03B1\x65E5.x", L"\x00E9\x0440-\x03B1\x65E5", L"\x00E9\x0440"},
    {L"en-US\x00E9", nullptr, nullptr},
};

TEST(DeriveFullTag, TakesTheFirstFiveCharactersOfALongerTag)
{
    for (const DeriveCase& entry : kDeriveCases)
    {
        SCOPED_TRACE(testing::Message() << std::wstring(entry.tag));
        wchar_t buffer[8];
        std::wmemset(buffer, L'?', 8);
        EXPECT_EQ(DeriveFullTag(entry.tag, buffer, 6) != FALSE, entry.full != nullptr);
        if (entry.full)
            EXPECT_STREQ(buffer, entry.full);
        else
            EXPECT_EQ(std::wstring(buffer, 8), L"????????");
    }
}

TEST(DeriveLanguageTag, TakesTheLanguageOfATagWithACountry)
{
    for (const DeriveCase& entry : kDeriveCases)
    {
        SCOPED_TRACE(testing::Message() << std::wstring(entry.tag));
        wchar_t buffer[8];
        std::wmemset(buffer, L'?', 8);
        EXPECT_EQ(DeriveLanguageTag(entry.tag, buffer, 3) != FALSE, entry.language != nullptr);
        if (entry.language)
            EXPECT_STREQ(buffer, entry.language);
        else
            EXPECT_EQ(std::wstring(buffer, 8), L"????????");
    }
}

TEST(DerivedTags, NeedRoomForTheirTerminator)
{
    wchar_t buffer[8];
    std::wmemset(buffer, L'?', 8);
    EXPECT_FALSE(DeriveFullTag(L"en-US-x", buffer, 5));
    EXPECT_FALSE(DeriveFullTag(L"en-US-x", buffer, 0));
    EXPECT_FALSE(DeriveLanguageTag(L"en-US", buffer, 2));
    EXPECT_FALSE(DeriveLanguageTag(L"en-US", buffer, 0));
    EXPECT_EQ(std::wstring(buffer, 8), L"????????");
    EXPECT_TRUE(DeriveFullTag(L"en-US-x", buffer, 6));
    EXPECT_EQ(std::wstring(buffer, 8), (std::wstring(L"en-US\0??", 8)));
    EXPECT_TRUE(DeriveLanguageTag(L"ja-JP", buffer, 3));
    EXPECT_EQ(std::wstring(buffer, 8), (std::wstring(L"ja\0US\0??", 8)));
}

bool Tried(const std::wstring& list, const wchar_t* candidate)
{
    return IsTagAlreadyTried(list.c_str(), list.c_str() + list.size(), candidate) != FALSE;
}

// Terminated strings one behind the other.
std::wstring TriedList(const std::vector<std::wstring>& tags)
{
    std::wstring list;
    for (const std::wstring& tag : tags) list += tag + L'\0';
    return list;
}

TEST(TriedTags, FullTagCoversItsLanguageInAnyCase)
{
    const std::wstring list = TriedList({L"en-US"});
    EXPECT_TRUE(Tried(list, L"en"));
    EXPECT_TRUE(Tried(list, L"EN"));
    EXPECT_TRUE(Tried(list, L"en-US"));
    EXPECT_TRUE(Tried(list, L"EN-us"));
    EXPECT_FALSE(Tried(list, L"eng"));
    EXPECT_FALSE(Tried(list, L"de"));
}

TEST(TriedTags, LanguageDoesNotCoverItsFullTag)
{
    const std::wstring list = TriedList({L"en"});
    EXPECT_TRUE(Tried(list, L"EN"));
    EXPECT_FALSE(Tried(list, L"en-US"));
    EXPECT_FALSE(Tried(list, L"eng"));
}

TEST(TriedTags, MatchEndsAtTheEndOfAWord)
{
    EXPECT_FALSE(Tried(TriedList({L"eng"}), L"en"));
    EXPECT_FALSE(Tried(TriedList({L"en1"}), L"en"));
    EXPECT_FALSE(Tried(TriedList({L"en\x00E9"}), L"en"));
    EXPECT_TRUE(Tried(TriedList({L"en_US"}), L"en"));
    EXPECT_TRUE(Tried(TriedList({L"en.x"}), L"en"));
    EXPECT_FALSE(Tried(TriedList({L"en-US"}), L"en-"));
}

TEST(TriedTags, EveryEntryIsLookedAt)
{
    const std::wstring list = TriedList({L"fr", L"de-DE", L"ja"});
    EXPECT_TRUE(Tried(list, L"fr"));
    EXPECT_TRUE(Tried(list, L"de"));
    EXPECT_TRUE(Tried(list, L"ja"));
    EXPECT_FALSE(Tried(list, L"ko"));
}

TEST(TriedTags, NothingIsTriedInAnEmptyList)
{
    EXPECT_FALSE(Tried(L"", L"en"));
}

TEST(TriedTags, EntriesFromTheEndOnDoNotCount)
{
    const std::wstring list = TriedList({L"fr", L"de"});
    EXPECT_FALSE(IsTagAlreadyTried(list.c_str(), list.c_str() + 3, L"de"));
    EXPECT_TRUE(IsTagAlreadyTried(list.c_str(), list.c_str() + 3, L"fr"));
}

TEST(ListFunctions, LeaveTheLastErrorCode)
{
    wchar_t buffer[8];
    const wchar_t item[] = L"ja-JP";
    ::SetLastError(4711);
    EXPECT_FALSE(CopyListItem(buffer, buffer + 2, item, item + 5));
    EXPECT_FALSE(DeriveFullTag(item, buffer, 8));
    EXPECT_FALSE(DeriveLanguageTag(item, buffer, 1));
    EXPECT_FALSE(IsNumericItem(item));
    EXPECT_FALSE(Tried(TriedList({L"fr"}), item));
    EXPECT_EQ(::GetLastError(), 4711u);
}

}  // namespace
