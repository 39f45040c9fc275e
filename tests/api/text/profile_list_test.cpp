// Lists of sections and of keys, and buffers that are too small for them.

#include "settings_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace arvmui_test
{
namespace
{

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const wchar_t* const kNoSection = nullptr;
const char* const kNoSectionA = nullptr;

TEST(ProfileList, SectionsInTheOrderOfTheFile)
{
    const SettingsFile file("[b]\nx=1\n[a]\n[ c d ]\n");
    EXPECT_THAT(file.Sections(), ElementsAre(L"b", L"a", L" c d "));
}

TEST(ProfileList, SectionsOfOneNameAreAllNamed)
{
    const SettingsFile file("[a]\n[A]\n[a]\n");
    EXPECT_THAT(file.Sections(), ElementsAre(L"a", L"A", L"a"));
}

TEST(ProfileList, SectionsEndWithASecondNul)
{
    const SettingsFile file("[ab]\n[c]\n");
    EXPECT_EQ(file.Ask(kNoSection, nullptr, nullptr, 10), Filled<wchar_t>(5, L"ab\0c\0"sv, 10));
    EXPECT_EQ(file.Ask(kNoSectionA, nullptr, nullptr, 10), Filled<char>(5, "ab\0c\0"sv, 10));
}

TEST(ProfileList, SectionsWhateverTheKey)
{
    const SettingsFile file("[ab]\nk=1\n[c]\n");
    EXPECT_EQ(file.Ask(kNoSection, L"k", L"default", 10), Filled<wchar_t>(5, L"ab\0c\0"sv, 10));
    EXPECT_EQ(file.Ask(kNoSectionA, "k", "default", 10), Filled<char>(5, "ab\0c\0"sv, 10));
}

TEST(ProfileList, SectionsThatFitExactly)
{
    const SettingsFile file("[ab]\n[c]\n");
    EXPECT_EQ(file.Ask(kNoSection, nullptr, nullptr, 6), Filled<wchar_t>(5, L"ab\0c\0"sv, 6));
    EXPECT_EQ(file.Ask(kNoSectionA, nullptr, nullptr, 6), Filled<char>(5, "ab\0c\0"sv, 6));
}

// Deliberate: a list of sections that does not fit is dropped whole, a list of keys is not.
TEST(ProfileList, SectionsThatDoNotFitGiveNothing)
{
    const SettingsFile file("[ab]\n[c]\n");
    for (const DWORD size : {5u, 4u, 3u, 2u})
    {
        SCOPED_TRACE(size);
        EXPECT_EQ(file.Ask(kNoSection, nullptr, nullptr, size), Filled<wchar_t>(size - 2, L"", size));
        EXPECT_EQ(file.Ask(kNoSectionA, nullptr, nullptr, size), Filled<char>(size - 2, "", size));
    }
}

// Two less than one would be a number far beyond the buffer.
TEST(ProfileList, InABufferForOneCharacterIsEmpty)
{
    const SettingsFile file("[s]\nk=1\n");
    EXPECT_EQ(file.Ask(kNoSection, nullptr, nullptr, 1), Filled<wchar_t>(0, L"", 1));
    EXPECT_EQ(file.Ask(L"s", nullptr, nullptr, 1), Filled<wchar_t>(0, L"", 1));
    EXPECT_EQ(file.Ask(kNoSectionA, nullptr, nullptr, 1), Filled<char>(0, "", 1));
    EXPECT_EQ(file.Ask("s", nullptr, nullptr, 1), Filled<char>(0, "", 1));
}

TEST(ProfileList, KeysThatDoNotFitKeepThoseBefore)
{
    const SettingsFile file("[s]\nab=1\nc=2\n");
    EXPECT_EQ(file.Ask(L"s", nullptr, nullptr, 6), Filled<wchar_t>(5, L"ab\0c\0"sv, 6));
    EXPECT_EQ(file.Ask(L"s", nullptr, nullptr, 5), Filled<wchar_t>(3, L"ab\0"sv, 5));
    EXPECT_EQ(file.Ask(L"s", nullptr, nullptr, 4), Filled<wchar_t>(2, L"ab\0"sv, 4));
    EXPECT_EQ(file.Ask(L"s", nullptr, nullptr, 3), Filled<wchar_t>(1, L"", 3));
    EXPECT_EQ(file.Ask("s", nullptr, nullptr, 6), Filled<char>(5, "ab\0c\0"sv, 6));
    EXPECT_EQ(file.Ask("s", nullptr, nullptr, 5), Filled<char>(3, "ab\0"sv, 5));
    EXPECT_EQ(file.Ask("s", nullptr, nullptr, 4), Filled<char>(2, "ab\0"sv, 4));
    EXPECT_EQ(file.Ask("s", nullptr, nullptr, 3), Filled<char>(1, "", 3));
}

TEST(ProfileList, EmptyFileHasNoSections)
{
    EXPECT_EQ(SettingsFile("").Ask(kNoSection, nullptr, L"default", 8), Filled<wchar_t>(0, L"", 8));
    EXPECT_EQ(SettingsFile("").Ask(kNoSectionA, nullptr, "default", 8), Filled<char>(0, "", 8));
}

TEST(ProfileList, TwoMalformedLinesAreSkippedInAListOfSections)
{
    EXPECT_THAT(SettingsFile("x\n[a]\n=\n[b]\n").Sections(), ElementsAre(L"a", L"b"));
}

// Deliberate: a list of sections stands only where the whole file was read.
TEST(ProfileList, ThirdMalformedLineEmptiesAListOfSections)
{
    const SettingsFile file("[a]\nx\nx\n[b]\nx\n");
    EXPECT_EQ(file.Ask(kNoSection, nullptr, nullptr, 40), Filled<wchar_t>(0, L"", 40));
    EXPECT_EQ(file.Ask(kNoSectionA, nullptr, nullptr, 40), Filled<char>(0, "", 40));
}

TEST(ProfileList, ThirdMalformedLineEndsAListOfKeys)
{
    EXPECT_THAT(SettingsFile("[s]\na=1\nx\ny\nb=2\nz\nc=3\n").Keys(L"s"), ElementsAre(L"a", L"x", L"y", L"b", L"z"));
}

TEST(ProfileList, KeysOfOneSection)
{
    const SettingsFile file("[a]\nx=1\n[s]\nb = 1\nc d='2'\nb=3\n[t]\ny=4\n");
    EXPECT_THAT(file.Keys(L"s"), ElementsAre(L"b", L"c d", L"b"));
    EXPECT_THAT(file.Keys(L"S"), ElementsAre(L"b", L"c d", L"b"));
}

TEST(ProfileList, KeysOfTheFirstSectionOfANameOnly)
{
    EXPECT_THAT(SettingsFile("[s]\na=1\n[t]\n[s]\nb=2\n").Keys(L"s"), ElementsAre(L"a"));
}

TEST(ProfileList, KeysWithoutEqualsSignAreNamedAndCountAsMalformed)
{
    EXPECT_THAT(SettingsFile("[s]\na\nb\nc=1\n").Keys(L"s"), ElementsAre(L"a", L"b", L"c"));
}

TEST(ProfileList, KeysOfASectionThatIsNotThere)
{
    const SettingsFile file("[s]\na=1\n");
    EXPECT_EQ(file.Ask(L"t", nullptr, L"default", 12), Filled<wchar_t>(0, L"", 12));
    EXPECT_EQ(file.Ask("t", nullptr, "default", 12), Filled<char>(0, "", 12));
}

TEST(ProfileList, KeysOfASectionWithoutAny)
{
    EXPECT_THAT(SettingsFile("[s]\n[t]\na=1\n").Keys(L"s"), IsEmpty());
}

TEST(ProfileList, KeysOfAnySectionAreNone)
{
    const SettingsFile file("[s]\na=1\n");
    EXPECT_EQ(file.Ask(kAnySection, nullptr, L"default", 12), Filled<wchar_t>(0, L"", 12));
    EXPECT_EQ(file.Ask(kAnySectionA, nullptr, "default", 12), Filled<char>(0, "", 12));
}

TEST(ProfileList, NamesKeepTwoHundredSeventyCharacters)
{
    const SettingsFile file(
        "[" + std::string(271, 's') + "]\n" + std::string(270, 'k') + "=1\n" + std::string(400, 'm') + "=1\n");
    EXPECT_THAT(file.Sections(), ElementsAre(std::wstring(270, L's')));
    EXPECT_THAT(
        file.Keys(std::wstring(270, L's').c_str()), ElementsAre(std::wstring(270, L'k'), std::wstring(270, L'm')));
}

TEST(ProfileList, EmptySectionNameTakesItsNul)
{
    const SettingsFile file("[]\n[a]\n");
    EXPECT_EQ(file.Ask(kNoSection, nullptr, nullptr, 8), Filled<wchar_t>(3, L"\0a\0"sv, 8));
    EXPECT_EQ(file.Ask(kNoSectionA, nullptr, nullptr, 8), Filled<char>(3, "\0a\0"sv, 8));
}

}  // namespace
}  // namespace arvmui_test
