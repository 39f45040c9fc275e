// The locales of a package and the texts of the language dialog.
#include "installer/package_locales.h"

#include "foundation/heap.h"
#include "unit/installer/installer_fixture.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{

using arvmui::HeapBlock;
using arvmui::ReadPackageLocales;
using arvmui_test::InstallerRow;
using arvmui_test::InstallerTest;

constexpr wchar_t kLocaleQuery[] =
    L"SELECT `Locale`,`LangID`,`EnglishName`,`NativeName` FROM `ARVUILocale` ORDER BY `DisplayOrder`";

std::wstring TextQuery(const std::wstring& locale)
{
    return L"SELECT `Key`,`Text` FROM `ARVUIText` WHERE `Locale`='" + locale + L"'";
}

template <size_t kChars>
void SetText(wchar_t (&field)[kChars], const std::wstring& text)
{
    text.copy(field, kChars - 1);
}

LocaleEntry MakeEntry(
    LANGID language, const std::wstring& locale, const std::wstring& english, const std::wstring& native)
{
    LocaleEntry entry = {};
    entry.LangID = language;
    SetText(entry.Locale, locale);
    entry.LocaleLength = static_cast<DWORD>(locale.size());
    SetText(entry.EnglishName, english);
    SetText(entry.NativeName, native);
    return entry;
}

class PackageLocales : public InstallerTest
{
protected:
    void TearDown() override
    {
        Free();
        InstallerTest::TearDown();
    }

    UINT Read(bool withTexts = false)
    {
        Free();
        return ReadPackageLocales(database, withTexts, &entries_, &count_);
    }

    // For calls that are repeated: keeps nothing.
    UINT ReadAndFree(bool withTexts = true)
    {
        const UINT result = Read(withTexts);
        Free();
        return result;
    }

    void Free() { ARVMUI_free(std::exchange(entries_, nullptr)); }

    void ProvideLocales(std::vector<InstallerRow> rows) { installer.rows[kLocaleQuery] = std::move(rows); }

    void ProvideManyLocales(size_t count)
    {
        std::vector<InstallerRow> rows;
        for (size_t i = 0; i < count; ++i)
            rows.push_back({L"x" + std::to_wstring(i), std::to_wstring(i), L"English", L"Native"});
        ProvideLocales(rows);
    }

    void ProvideTexts(const std::wstring& locale, std::vector<InstallerRow> rows)
    {
        installer.rows[TextQuery(locale)] = std::move(rows);
    }

    LocaleEntry* entries_ = nullptr;
    DWORD count_ = 0;
};

// ---- Rows of ARVUILocale --------------------------------------------------------------------------------

TEST_F(PackageLocales, AreReadFromTheirTableInTheOrderOfDisplay)
{
    EXPECT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements(), std::vector<std::wstring>{kLocaleQuery});
}

TEST_F(PackageLocales, MayBeNone)
{
    count_ = 99;
    EXPECT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_EQ(count_, 0U);
}

// Nothing but the fields of the row, down to the last byte.
TEST_F(PackageLocales, AreOneEntryForEachRow)
{
    ProvideLocales({{L"zh-CN", L"2052", L"Chinese", L"\u4E2D\u6587"}, {L"de", L"1031", L"German", L"Deutsch"}});
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    ASSERT_EQ(count_, 2U);
    const LocaleEntry chinese = MakeEntry(2052, L"zh-CN", L"Chinese", L"\u4E2D\u6587");
    const LocaleEntry german = MakeEntry(1031, L"de", L"German", L"Deutsch");
    EXPECT_EQ(std::memcmp(&entries_[0], &chinese, sizeof(LocaleEntry)), 0);
    EXPECT_EQ(std::memcmp(&entries_[1], &german, sizeof(LocaleEntry)), 0);
}

TEST_F(PackageLocales, MayHaveEmptyTexts)
{
    ProvideLocales({{L"", L"", L"", L""}});
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    const LocaleEntry nothing = {};
    ASSERT_EQ(count_, 1U);
    EXPECT_EQ(std::memcmp(entries_, &nothing, sizeof(LocaleEntry)), 0);
}

TEST_F(PackageLocales, KeepSixteenBitsOfTheIdentifier)
{
    ProvideLocales({{L"de", L"590855", L"German", L"Deutsch"}});  // 0x90407
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_EQ(entries_[0].LangID, 0x0407);
}

struct CutCase
{
    const char* name;
    size_t field;  // of the row, from 0
    const wchar_t* (*text)(const LocaleEntry& entry);
};

void PrintTo(const CutCase& value, std::ostream* output)
{
    *output << value.name;
}

class CutText : public PackageLocales, public testing::WithParamInterface<CutCase>
{
protected:
    std::wstring ReadOfLength(size_t length)
    {
        InstallerRow row = {L"de", L"1031", L"German", L"Deutsch"};
        row[GetParam().field] = std::wstring(length - 1, L't') + L'!';
        ProvideLocales({row});
        EXPECT_EQ(Read(), ERROR_SUCCESS);
        return GetParam().text(entries_[0]);
    }
};

TEST_P(CutText, KeepsSixtyThreeCharacters)
{
    EXPECT_EQ(ReadOfLength(63), std::wstring(62, L't') + L'!');
}

TEST_P(CutText, LosesTheSixtyFourth)
{
    EXPECT_EQ(ReadOfLength(64), std::wstring(63, L't'));
}

const CutCase kCutCases[] = {
    {"Locale", 0, [](const LocaleEntry& entry) { return entry.Locale; }},
    {"EnglishName", 2, [](const LocaleEntry& entry) { return entry.EnglishName; }},
    {"NativeName", 3, [](const LocaleEntry& entry) { return entry.NativeName; }},
};

INSTANTIATE_TEST_SUITE_P(Fields, CutText, testing::ValuesIn(kCutCases),
    [](const testing::TestParamInfo<CutCase>& parameter) { return std::string(parameter.param.name); });

TEST_F(PackageLocales, HaveTheLengthOfTheCutLocale)
{
    ProvideLocales({{std::wstring(100, L'x'), L"1031", L"German", L"Deutsch"}});
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_EQ(entries_[0].LocaleLength, 63U);
}

// ---- The array ------------------------------------------------------------------------------------------

TEST_F(PackageLocales, ShareOneBlockThatGrowsByItsSize)
{
    const std::pair<size_t, std::vector<size_t>> cases[] = {
        {0, {}}, {1, {8}}, {8, {8}}, {9, {8, 16}}, {16, {8, 16}}, {17, {8, 16, 32}}, {33, {8, 16, 32, 64}}};
    for (const auto& [count, capacities] : cases)
    {
        ProvideManyLocales(count);
        heap.ForgetSizes();
        ASSERT_EQ(Read(), ERROR_SUCCESS);
        EXPECT_EQ(count_, count);
        std::vector<size_t> growths;
        for (const size_t bytes : heap.Sizes())
            if (bytes % sizeof(LocaleEntry) == 0) growths.push_back(bytes / sizeof(LocaleEntry));
        EXPECT_EQ(growths, capacities) << count;
        EXPECT_EQ(heap.LiveBlocks(), count == 0 ? 0U : 1U);
    }
}

TEST_F(PackageLocales, KeepTheirOrderAndContentsAsTheArrayGrows)
{
    ProvideManyLocales(40);
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    ASSERT_EQ(count_, 40U);
    for (DWORD i = 0; i < 40; ++i)
    {
        const LocaleEntry expected =
            MakeEntry(static_cast<LANGID>(i), L"x" + std::to_wstring(i), L"English", L"Native");
        EXPECT_EQ(std::memcmp(&entries_[i], &expected, sizeof(LocaleEntry)), 0) << i;
    }
}

// ---- Rows of ARVUIText ----------------------------------------------------------------------------------

TEST_F(PackageLocales, HaveNoTextsUnlessAskedFor)
{
    ProvideLocales({{L"de", L"1031", L"German", L"Deutsch"}});
    ProvideTexts(L"de", {{L"OK", L"Gut"}});
    ASSERT_EQ(Read(false), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements().size(), 1U);
    EXPECT_EQ(std::wstring(entries_[0].OK), L"");
}

TEST_F(PackageLocales, AskForTheTextsOfEachLocaleInTurn)
{
    ProvideLocales({{L"zh-CN", L"2052", L"Chinese", L"Chinese"}, {L"de", L"1031", L"German", L"Deutsch"}});
    ASSERT_EQ(Read(true), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements(), (std::vector<std::wstring>{kLocaleQuery, TextQuery(L"zh-CN"), TextQuery(L"de")}));
}

TEST_F(PackageLocales, AskForTheTextsOfTheCutLocale)
{
    ProvideLocales({{std::wstring(64, L'x'), L"1031", L"German", L"Deutsch"}});
    ASSERT_EQ(Read(true), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements().back(), TextQuery(std::wstring(63, L'x')));
}

TEST_F(PackageLocales, HaveTheFourTexts)
{
    ProvideLocales({{L"de", L"1031", L"German", L"Deutsch"}});
    ProvideTexts(L"de", {{L"Cancel", L"Nein"}, {L"OK", L"Gut"}, {L"LanguageSelectionDesc", L"Welche?"},
                            {L"LanguageSelectionTitle", L"Sprache"}});
    ASSERT_EQ(Read(true), ERROR_SUCCESS);
    LocaleEntry expected = MakeEntry(1031, L"de", L"German", L"Deutsch");
    SetText(expected.LanguageSelectionTitle, L"Sprache");
    SetText(expected.LanguageSelectionDesc, L"Welche?");
    SetText(expected.OK, L"Gut");
    SetText(expected.Cancel, L"Nein");
    EXPECT_EQ(std::memcmp(entries_, &expected, sizeof(LocaleEntry)), 0);
}

TEST_F(PackageLocales, HaveNoTextsWhereThePackageHasNone)
{
    ProvideLocales({{L"de", L"1031", L"German", L"Deutsch"}});
    ASSERT_EQ(Read(true), ERROR_SUCCESS);
    const LocaleEntry expected = MakeEntry(1031, L"de", L"German", L"Deutsch");
    EXPECT_EQ(std::memcmp(entries_, &expected, sizeof(LocaleEntry)), 0);
}

TEST_F(PackageLocales, TakeKeysOfAnyCase)
{
    ProvideLocales({{L"de", L"1031", L"German", L"Deutsch"}});
    ProvideTexts(L"de", {{L"cANCEL", L"Nein"}, {L"ok", L"Gut"}, {L"LANGUAGESELECTIONDESC", L"Welche?"},
                            {L"languageselectiontitle", L"Sprache"}});
    ASSERT_EQ(Read(true), ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(entries_[0].LanguageSelectionTitle), L"Sprache");
    EXPECT_EQ(std::wstring(entries_[0].LanguageSelectionDesc), L"Welche?");
    EXPECT_EQ(std::wstring(entries_[0].OK), L"Gut");
    EXPECT_EQ(std::wstring(entries_[0].Cancel), L"Nein");
}

TEST_F(PackageLocales, SkipUnknownKeys)
{
    ProvideLocales({{L"de", L"1031", L"German", L"Deutsch"}});
    ProvideTexts(L"de", {{L"OKAY", L"1"}, {L"O", L"2"}, {L"", L"3"}, {L"Cancel ", L"4"}, {L"LanguageSelection", L"5"}});
    ASSERT_EQ(Read(true), ERROR_SUCCESS);
    const LocaleEntry expected = MakeEntry(1031, L"de", L"German", L"Deutsch");
    EXPECT_EQ(std::memcmp(entries_, &expected, sizeof(LocaleEntry)), 0);
}

// The text of a key that nobody knows is not even read.
TEST_F(PackageLocales, ReadNoTextOfAnUnknownKey)
{
    ProvideLocales({{L"de", L"1031", L"German", L"Deutsch"}});
    ProvideTexts(L"de", {{L"Help", L"Hilfe"}});
    ASSERT_EQ(Read(true), ERROR_SUCCESS);
    EXPECT_EQ(installer.CountCalls(L"MsiRecordGetStringW 2 of Help|Hilfe size 0"), 0U);
}

TEST_F(PackageLocales, TakeTheLastTextOfAKey)
{
    ProvideLocales({{L"de", L"1031", L"German", L"Deutsch"}});
    ProvideTexts(L"de", {{L"OK", L"Eine lange Antwort"}, {L"ok", L"Gut"}});
    ASSERT_EQ(Read(true), ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(entries_[0].OK), L"Gut");
}

struct KeyCase
{
    const char* key;
    size_t capacity;  // characters, terminator included
    const wchar_t* (*text)(const LocaleEntry& entry);
};

void PrintTo(const KeyCase& value, std::ostream* output)
{
    *output << value.key;
}

class CutKeyText : public PackageLocales, public testing::WithParamInterface<KeyCase>
{
protected:
    std::wstring ReadOfLength(size_t length)
    {
        ProvideLocales({{L"de", L"1031", L"German", L"Deutsch"}, {L"fr", L"1036", L"French", L"Fran\u00E7ais"}});
        const std::string key = GetParam().key;
        ProvideTexts(L"de", {{std::wstring(key.begin(), key.end()), std::wstring(length - 1, L't') + L'!'}});
        EXPECT_EQ(Read(true), ERROR_SUCCESS);
        return GetParam().text(entries_[0]);
    }
};

TEST_P(CutKeyText, KeepsTheCapacityLessOne)
{
    const size_t kept = GetParam().capacity - 1;
    EXPECT_EQ(ReadOfLength(kept), std::wstring(kept - 1, L't') + L'!');
}

TEST_P(CutKeyText, LosesWhatIsBeyond)
{
    const size_t kept = GetParam().capacity - 1;
    EXPECT_EQ(ReadOfLength(kept + 1), std::wstring(kept, L't'));
}

TEST_P(CutKeyText, SpillsIntoNoOtherField)
{
    ReadOfLength(1000);
    std::vector<std::wstring> others;
    for (const wchar_t* text :
        {entries_[0].LanguageSelectionTitle, entries_[0].LanguageSelectionDesc, entries_[0].OK, entries_[0].Cancel})
    {
        if (text != GetParam().text(entries_[0])) others.push_back(text);
    }
    EXPECT_EQ(others, std::vector<std::wstring>(3));
}

const KeyCase kKeyCases[] = {
    {"LanguageSelectionTitle", 256, [](const LocaleEntry& entry) { return entry.LanguageSelectionTitle; }},
    {"LanguageSelectionDesc", 256, [](const LocaleEntry& entry) { return entry.LanguageSelectionDesc; }},
    {"OK", 32, [](const LocaleEntry& entry) { return entry.OK; }},
    {"Cancel", 32, [](const LocaleEntry& entry) { return entry.Cancel; }},
};

INSTANTIATE_TEST_SUITE_P(Keys, CutKeyText, testing::ValuesIn(kKeyCases),
    [](const testing::TestParamInfo<KeyCase>& parameter) { return std::string(parameter.param.key); });

// ---- Failures -------------------------------------------------------------------------------------------

void ProvidePackage(arvmui_test::StandInInstaller& installer)
{
    installer.rows[kLocaleQuery] = {
        {L"de", L"1031", L"German", L"Deutsch"}, {L"fr", L"1036", L"French", L"Fran\u00E7ais"}};
    installer.rows[TextQuery(L"de")] = {{L"OK", L"Gut"}, {L"Help", L"Hilfe"}};
    installer.rows[TextQuery(L"fr")] = {
        {L"LanguageSelectionTitle", L"Langue"}, {L"LanguageSelectionDesc", L"?"}, {L"Cancel", L"Non"}};
}

TEST_F(PackageLocales, PassTheErrorOfEachStepThrough)
{
    ProvidePackage(installer);
    ExpectEachFailure([this] { return ReadAndFree(); }, ERROR_ACCESS_DENIED, arvmui_test::Always(ERROR_ACCESS_DENIED));
}

TEST_F(PackageLocales, StoreNothingOnFailure)
{
    ProvidePackage(installer);
    installer.Answer(L"MsiViewFetch " + std::wstring(kLocaleQuery), ERROR_ACCESS_DENIED, 3);
    LocaleEntry* entries = nullptr;
    DWORD count = 0;
    EXPECT_EQ(ReadPackageLocales(database, true, &entries, &count), UINT{ERROR_ACCESS_DENIED});
    EXPECT_EQ(entries, nullptr);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(heap.LiveBlocks(), 0U);
}

// A package without the table is rejected as a bad statement.
TEST_F(PackageLocales, NeedTheTable)
{
    installer.Answer(L"MsiDatabaseOpenViewW " + std::wstring(kLocaleQuery), ERROR_BAD_QUERY_SYNTAX);
    EXPECT_EQ(Read(), UINT{ERROR_BAD_QUERY_SYNTAX});
}

TEST_F(PackageLocales, HaveTheHeapsErrorWhereTheArrayCannotGrow)
{
    ProvidePackage(installer);
    heap.FailAt(0, ERROR_NOT_READY);
    EXPECT_EQ(ReadAndFree(), UINT{ERROR_NOT_READY});
}

TEST_F(PackageLocales, HaveTheHeapsErrorWhereTheFullArrayCannotGrow)
{
    ProvideManyLocales(9);
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    const std::vector<size_t> sizes = heap.Sizes();
    const auto growth = std::find(sizes.begin(), sizes.end(), 16 * sizeof(LocaleEntry));
    ASSERT_NE(growth, sizes.end());
    Free();

    heap.FailAt(static_cast<size_t>(growth - sizes.begin()), ERROR_NOT_READY);
    EXPECT_EQ(ReadAndFree(false), UINT{ERROR_NOT_READY});
    EXPECT_EQ(heap.LiveBlocks(), 0U);
}

// A heap need not set a code, and 0 would be a success.
TEST_F(PackageLocales, FailEvenWhereTheHeapGivesNoReason)
{
    ProvidePackage(installer);
    heap.FailAt(0, ERROR_SUCCESS);
    EXPECT_EQ(ReadAndFree(), UINT{ERROR_NOT_ENOUGH_MEMORY});
}

TEST_F(PackageLocales, FailWithoutMemoryForATextOrAStatement)
{
    ProvidePackage(installer);
    ExpectEachLackOfMemory(
        [this]
        {
            const UINT result = ReadAndFree();
            // The array's own growth, the first allocation of all, has the heap's code.
            return result == ERROR_NOT_ENOUGH_MEMORY ? ERROR_FUNCTION_FAILED : result;
        },
        ERROR_FUNCTION_FAILED);
}

// ---- The entry of a locale ------------------------------------------------------------------------------

TEST_F(PackageLocales, AreFoundByTheirTagInAnyCase)
{
    ProvideLocales({{L"en", L"1033", L"English", L"English"}, {L"zh-CN", L"2052", L"Chinese", L"Chinese"},
        {L"ZH-cn", L"4100", L"Chinese", L"Chinese"}});
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_EQ(arvmui::FindPackageLocale(entries_, count_, L"zh-cn"), &entries_[1]);
    EXPECT_EQ(arvmui::FindPackageLocale(entries_, count_, L"zh"), nullptr);
    EXPECT_EQ(arvmui::FindPackageLocale(entries_, 1, L"zh-cn"), nullptr);
}

}  // namespace
