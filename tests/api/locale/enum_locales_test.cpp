// The search for a locale, as callers of ARVMUI_EnumLocalesW and ARVMUI_EnumLocalesA see it.
#include "arvmui.h"
#include "support/busy_blocks.h"
#include "support/candidate_recorder.h"
#include "support/system_languages.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <ostream>

namespace
{

using arvmui_test::CandidateRecorder;
using arvmui_test::ImportPatch;
using arvmui_test::LibraryUnderTest;
using arvmui_test::NarrowCandidateRecorder;

std::wstring Repeat(size_t count)
{
    return std::wstring(count, L'x');
}

const wchar_t* InPlaceOfText(ULONG_PTR language)
{
    return reinterpret_cast<const wchar_t*>(language);
}

// A process without any hint, whose user speaks German and whose system speaks French.
class EnumLocales : public testing::Test
{
protected:
    EnumLocales() : languages(LibraryUnderTest())
    {
        languages.user = 0x0407;
        languages.system = 0x040C;
        languages.userInterface = 0x0410;
        languages.systemInterface = 0x0411;
        for (unsigned slot = 0; slot < ARVMUI_HINT_COUNT; ++slot) SetHint(slot, L"");
    }

    static void SetHint(unsigned slot, const std::wstring& text)
    {
        wchar_t(&hint)[ARVMUI_HINT_CHARS] = ARVMUI_GetDescriptor()->LocaleHintTable[slot];
        ASSERT_LT(text.size(), ARVMUI_HINT_CHARS);
        std::wmemcpy(hint, text.c_str(), text.size() + 1);
    }

    static std::wstring Hint(unsigned slot) { return ARVMUI_GetDescriptor()->LocaleHintTable[slot]; }

    static std::wstring Offered(const wchar_t* list)
    {
        CandidateRecorder recorder;
        EXPECT_EQ(ARVMUI_EnumLocalesW(list, CandidateRecorder::Record, &recorder), 0u);
        EXPECT_EQ(recorder.nulls, 0u);
        return recorder.offered;
    }
    static std::wstring Offered(const std::wstring& list) { return Offered(list.c_str()); }

    arvmui_test::SystemLanguages languages;
};

// ---- Which candidates a list offers when none is accepted ------------------------------------------

struct ListCase
{
    const char* name;
    const wchar_t* list;
    const wchar_t* offered;
};

void PrintTo(const ListCase& value, std::ostream* out)
{
    *out << value.name;
}

std::string NameOf(const testing::TestParamInfo<ListCase>& parameter)
{
    return parameter.param.name;
}

class EnumLocalesOfList : public EnumLocales, public testing::WithParamInterface<ListCase>
{
};

TEST_P(EnumLocalesOfList, Offers)
{
    EXPECT_EQ(Offered(GetParam().list), GetParam().offered);
}

INSTANTIATE_TEST_SUITE_P(DerivedForms, EnumLocalesOfList,
    testing::Values(ListCase{"LanguageOfATag", L"fr-CA", L"fr-CA|fr|en|..|..\\en|"},
        ListCase{"FullTagAndLanguageOfALongerTag", L"de-DE-x", L"de-DE-x|de-DE|de|en|..|..\\en|"},
        ListCase{"UnderscoreAndCodeSet", L"fr_FR.UTF-8", L"fr_FR.UTF-8|fr_FR|fr|en|..|..\\en|"},
        ListCase{"NoFullTagBeforeALetter", L"de-DEx", L"de-DEx|en|..|..\\en|"},
        ListCase{"FullTagBeforeADigit", L"de-DE1", L"de-DE1|de-DE|de|en|..|..\\en|"},
        ListCase{"NoneOfALanguage", L"de", L"de|en|..|..\\en|"},
        ListCase{"NoneOfAThreeLetterLanguage", L"deu-DE", L"deu-DE|en|..|..\\en|"},
        ListCase{"NoneWithDigits", L"d1-DE", L"d1-DE|en|..|..\\en|"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(Duplicates, EnumLocalesOfList,
    testing::Values(ListCase{"SameTag", L"de,de", L"de|en|..|..\\en|"},
        ListCase{"CaseIsIgnored", L"de-DE,DE-de,DE", L"de-DE|de|en|..|..\\en|"},
        ListCase{"LanguageOfATriedTag", L"de-DE,de", L"de-DE|de|en|..|..\\en|"},
        ListCase{"TagOfATriedLanguage", L"de,de-DE", L"de|de-DE|en|..|..\\en|"},
        ListCase{"OtherTagOfATriedLanguage", L"de-DE,de-AT", L"de-DE|de|de-AT|en|..|..\\en|"},
        ListCase{"LongerTagOfATriedTag", L"de-DE,de-DE-x", L"de-DE|de|de-DE-x|en|..|..\\en|"},
        ListCase{"DerivedFullTagOfTwoLongerTags", L"de-DE-x,de-DE-y", L"de-DE-x|de-DE|de|de-DE-y|en|..|..\\en|"},
        ListCase{"DerivedFormsAreNotRecordedThemselves", L"zz-ZZ-x,zz-ZZ-x", L"zz-ZZ-x|zz-ZZ|zz|en|..|..\\en|"},
        ListCase{"NotAPrefixBeforeALetter", L"deu,de", L"deu|de|en|..|..\\en|"},
        ListCase{"NotAPrefixBeforeADigit", L"de1,de", L"de1|de|en|..|..\\en|"},
        ListCase{"IdentifierAndItsTag", L"1031,de-DE", L"de-DE|de|en|..|..\\en|"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(Fallbacks, EnumLocalesOfList,
    testing::Values(ListCase{"AloneForAnEmptyList", L"", L"en|..|..\\en|"},
        ListCase{"AloneForSeparators", L" ,\t, \r\n", L"en|..|..\\en|"},
        ListCase{"EnglishIsSkippedWhenOffered", L"en", L"en|..|..\\en|"},
        ListCase{"EnglishIsSkippedInAnyCase", L"EN", L"EN|..|..\\en|"},
        ListCase{"EnglishIsSkippedAfterItsTag", L"en-US,en", L"en-US|en|..|..\\en|"},
        ListCase{"EnglishIsSkippedAfterItsUnderscoreTag", L"en_GB", L"en_GB|en|..|..\\en|"},
        ListCase{"EnglishIsOfferedAfterAWordThatBeginsLikeIt", L"eng", L"eng|en|..|..\\en|"},
        ListCase{"EnglishIsOfferedAfterADigit", L"en2", L"en2|en|..|..\\en|"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(Items, EnumLocalesOfList,
    testing::Values(ListCase{"AreTrimmed", L" ,  en-GB ,, de-DE  ,ja", L"en-GB|en|de-DE|de|ja|..|..\\en|"},
        ListCase{"KeepInnerSpace", L"a b", L"a b|en|..|..\\en|"},
        ListCase{"KeepSpaceBeyondAscii", L"\u00A0a\u00A0", L"\u00A0a\u00A0|en|..|..\\en|"},
        ListCase{"DotsAreIgnored", L".,..,de", L"de|en|..|..\\en|"},
        ListCase{"ThreeDotsAreATag", L"...", L"...|en|..|..\\en|"},
        ListCase{"PathsAreNone", L"..\\en", L".._en|en|..|..\\en|"},
        ListCase{"ForeignCharactersBecomeUnderscores",
            L"a\x01"
            L"b\x1F"
            L"c\"d/e:f<g>h\\i|j",
            L"a_b_c_d_e_f_g_h_i_j|en|..|..\\en|"},
        ListCase{"WildcardsStay", L"a*b?c", L"a*b?c|en|..|..\\en|"},
        ListCase{"KeywordsWithForeignCharactersAreTags", L"as/k", L"as_k|en|..|..\\en|"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(Numbers, EnumLocalesOfList,
    testing::Values(ListCase{"Decimal", L"1031", L"de-DE|de|en|..|..\\en|"},
        ListCase{"Hexadecimal", L"0x0407", L"de-DE|de|en|..|..\\en|"},
        ListCase{"HexadecimalInAnyCase", L"0X40c", L"fr-FR|fr|en|..|..\\en|"},
        ListCase{"OctalWithALeadingZero", L"02007", L"de-DE|de|en|..|..\\en|"},
        ListCase{"OnlyTheLowSixteenBits", L"0xABCD0407", L"de-DE|de|en|..|..\\en|"},
        ListCase{"LanguageWithoutCountry", L"7", L"de|en|..|..\\en|"},
        ListCase{"English", L"1033", L"en-US|en|..|..\\en|"},
        ListCase{"UnknownLanguageOffersNothing", L"102,ja", L"ja|en|..|..\\en|"},
        ListCase{"ZeroOffersNothing", L"0,ja", L"ja|en|..|..\\en|"},
        ListCase{"TooLargeOffersNothing", L"99999999999,ja", L"ja|en|..|..\\en|"},
        ListCase{"EmptyRowOfTheTable", L"0x0417", L"-|en|..|..\\en|"},
        ListCase{"DigitsWithLettersAreATag", L"12a", L"12a|en|..|..\\en|"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(Keywords, EnumLocalesOfList,
    testing::Values(ListCase{"User", L"user", L"de-DE|de|en|..|..\\en|"},
        ListCase{"System", L"system", L"fr-FR|fr|en|..|..\\en|"},
        ListCase{"UILanguage", L"uilang", L"it-IT|it|ja-JP|ja|en|..|..\\en|"},
        ListCase{"AnyCase", L"USER,System,uiLANG", L"de-DE|de|fr-FR|fr|it-IT|it|ja-JP|ja|en|..|..\\en|"},
        ListCase{"Repeated", L"user,user", L"de-DE|de|en|..|..\\en|"},
        ListCase{"LongerWordsAreTags", L"users,systems", L"users|systems|en|..|..\\en|"},
        ListCase{"EmptyHintsOfferNothing", L"kiv,msie,ja", L"ja|en|..|..\\en|"}),
    NameOf);

TEST_F(EnumLocales, NullListWithoutHintsIsSettingsFileUserAndSystem)
{
    SetHint(HINT_SETTINGS_FILE, L"ja");
    EXPECT_EQ(Offered(nullptr), L"ja|de-DE|de|fr-FR|fr|en|..|..\\en|");
}

TEST_F(EnumLocales, NullListIsTheCommandLinesHint)
{
    SetHint(HINT_COMMAND_LINE, L"ja,0x0407");
    EXPECT_EQ(Offered(nullptr), L"ja|de-DE|de|en|..|..\\en|");
}

TEST_F(EnumLocales, HintMarkedAsLookedAtOffersNothing)
{
    SetHint(HINT_COMMAND_LINE, L"\t");
    SetHint(HINT_SETTINGS_FILE, L"\t");
    SetHint(HINT_BROWSER, L"\t");
    EXPECT_EQ(Offered(nullptr), L"en|..|..\\en|");
    EXPECT_EQ(Offered(L"kiv,msie"), L"en|..|..\\en|");
}

TEST_F(EnumLocales, IdentifierInPlaceOfTheListIsItsTag)
{
    EXPECT_EQ(Offered(InPlaceOfText(0x0407)), L"de-DE|de|en|..|..\\en|");
    EXPECT_EQ(Offered(InPlaceOfText(1)), L"ar|en|..|..\\en|");
    EXPECT_EQ(Offered(InPlaceOfText(0x0417)), L"-|en|..|..\\en|");
}

TEST_F(EnumLocales, IdentifierWithoutTagOffersNothingNotEvenFallbacks)
{
    EXPECT_EQ(Offered(InPlaceOfText(0x0066)), L"");
    EXPECT_EQ(Offered(InPlaceOfText(0x0400)), L"");
    EXPECT_EQ(Offered(InPlaceOfText(0xFFFF)), L"");
}

// ---- Languages of the system -----------------------------------------------------------------------

TEST_F(EnumLocales, UserLanguageWithoutEnglishFolderFallsBackToTheModulesOwnFolder)
{
    languages.user = 0x0409;
    EXPECT_EQ(Offered(L"user"), L"en-US|en|..|..\\en|");
}

TEST_F(EnumLocales, MissingUserInterfaceFunctionCountsAsNoLanguage)
{
    languages.hasUserInterface = false;
    EXPECT_EQ(Offered(L"uilang"), L"ja-JP|ja|en|..|..\\en|");
    languages.hasSystemInterface = false;
    EXPECT_EQ(Offered(L"uilang"), L"en|..|..\\en|");
}

TEST_F(EnumLocales, InterfaceLanguagesAreAskedForAtEachUse)
{
    EXPECT_EQ(Offered(L"uilang"), L"it-IT|it|ja-JP|ja|en|..|..\\en|");
    languages.userInterface = 0x0413;
    languages.systemInterface = 0x0412;
    EXPECT_EQ(Offered(L"uilang"), L"nl-NL|nl|ko-KR|ko|en|..|..\\en|");
}

TEST_F(EnumLocales, SystemInterfaceLanguageIsNotOfferedWhenTheUsersIsAccepted)
{
    for (const wchar_t* const accepted : {L"it-IT", L"it"})
    {
        CandidateRecorder recorder;
        recorder.accepted = accepted;
        EXPECT_EQ(ARVMUI_EnumLocalesW(L"uilang,de", CandidateRecorder::Record, &recorder), 1u);
        EXPECT_EQ(recorder.offered.find(L"ja"), std::wstring::npos);
    }
}

// ---- Bounds of the list of tried tags: 256 characters, terminators included -------------------------

struct BoundCase
{
    const char* name;
    std::wstring list;
    std::wstring offered;
};

void PrintTo(const BoundCase& value, std::ostream* out)
{
    *out << value.name;
}

class EnumLocalesAtBound : public EnumLocales, public testing::WithParamInterface<BoundCase>
{
};

TEST_P(EnumLocalesAtBound, Offers)
{
    EXPECT_EQ(Offered(GetParam().list), GetParam().offered);
}

INSTANTIATE_TEST_SUITE_P(TriedList, EnumLocalesAtBound,
    testing::Values(BoundCase{"Item252LeavesRoomForEnglish", Repeat(252), Repeat(252) + L"|en|..|..\\en|"},
        BoundCase{"Item253LeavesNoRoomForEnglish", Repeat(253), Repeat(253) + L"|..|..\\en|"},
        BoundCase{"Item254Fits", Repeat(254), Repeat(254) + L"|..|..\\en|"},
        BoundCase{"Item255Fits", Repeat(255), Repeat(255) + L"|..|..\\en|"},
        BoundCase{"Item256DoesNotFit", Repeat(256), L"en|..|..\\en|"},
        BoundCase{"ItemsBehindOneThatDoesNotFitAreLost", Repeat(256) + L",de", L"en|..|..\\en|"},
        BoundCase{
            "ItemThatJustFitsBehindAnother", L"de," + Repeat(252) + L",fr", L"de|" + Repeat(252) + L"|..|..\\en|"},
        BoundCase{"ItemThatJustDoesNotFitBehindAnother", L"de," + Repeat(253) + L",fr", L"de|en|..|..\\en|"},
        BoundCase{"SkippedDuplicatesTakeNoRoom", L"de,de,de," + Repeat(252), L"de|" + Repeat(252) + L"|..|..\\en|"},
        BoundCase{
            "ItemsThatOfferNothingTakeNoRoom", L"de,..,0,kiv," + Repeat(252), L"de|" + Repeat(252) + L"|..|..\\en|"},
        BoundCase{
            "RoomForBothDerivedForms", L"de-DE-" + Repeat(243), L"de-DE-" + Repeat(243) + L"|de-DE|de|en|..|..\\en|"},
        BoundCase{"NoRoomForTheFullTag", L"de-DE-" + Repeat(244), L"de-DE-" + Repeat(244) + L"|de|en|..|..\\en|"},
        BoundCase{"RoomForTheLanguageOnly", L"de-DE-" + Repeat(246), L"de-DE-" + Repeat(246) + L"|de|en|..|..\\en|"},
        BoundCase{"NoRoomForAnyDerivedForm", L"de-DE-" + Repeat(247), L"de-DE-" + Repeat(247) + L"|..|..\\en|"},
        BoundCase{"TagOfAnIdentifierThatDoesNotFitIsPassedOver", Repeat(253) + L",7,z", Repeat(253) + L"|z|..|..\\en|"},
        BoundCase{"TagOfAnIdentifierThatJustFits", Repeat(252) + L",7", Repeat(252) + L"|de|..|..\\en|"},
        BoundCase{"KeywordThatDoesNotFitEndsItsList", Repeat(251) + L",user,a", Repeat(251) + L"|en|..|..\\en|"}),
    [](const testing::TestParamInfo<BoundCase>& parameter) { return std::string(parameter.param.name); });

TEST_F(EnumLocales, ItemOfANestedListThatDoesNotFitEndsTheNestedListOnly)
{
    SetHint(HINT_SETTINGS_FILE, L"it," + Repeat(248) + L",a");
    // 256 - "de" - "it" = 250, and the item takes 249 with its terminator.
    EXPECT_EQ(Offered(L"de,kiv,j"), L"de|it|" + Repeat(248) + L"|..|..\\en|");
    EXPECT_EQ(Offered(L"de,fr,kiv,ja"), L"de|fr|it|ja|en|..|..\\en|");
}

TEST_F(EnumLocales, LongHintOfTheProcessIsReadWhole)
{
    SetHint(HINT_COMMAND_LINE, Repeat(255));
    EXPECT_EQ(Offered(nullptr), Repeat(255) + L"|..|..\\en|");
}

// ---- Lists within lists -----------------------------------------------------------------------------

struct HintCase
{
    const char* name;
    const wchar_t* settingsFile;
    const wchar_t* browser;
    const wchar_t* asked;
    const wchar_t* list;
    const wchar_t* offered;
};

void PrintTo(const HintCase& value, std::ostream* out)
{
    *out << value.name;
}

class EnumLocalesWithHints : public EnumLocales, public testing::WithParamInterface<HintCase>
{
};

TEST_P(EnumLocalesWithHints, Offers)
{
    SetHint(HINT_SETTINGS_FILE, GetParam().settingsFile);
    SetHint(HINT_BROWSER, GetParam().browser);
    SetHint(HINT_ASKED, GetParam().asked);
    EXPECT_EQ(Offered(GetParam().list), GetParam().offered);
}

INSTANTIATE_TEST_SUITE_P(NestedLists, EnumLocalesWithHints,
    testing::Values(HintCase{"SettingsFile", L"nl,pl", L"", L"", L"kiv,ja", L"nl|pl|ja|en|..|..\\en|"},
        HintCase{"Browser", L"", L"nl,pl", L"", L"msie,ja", L"nl|pl|ja|en|..|..\\en|"},
        HintCase{"Answer", L"", L"", L"nl,pl", L"ask,ja", L"nl|pl|ja|en|..|..\\en|"},
        HintCase{"KeywordsInAnyCase", L"nl", L"pl", L"ja", L"KIV,MSIE,Ask", L"nl|pl|ja|en|..|..\\en|"},
        HintCase{"KeywordsAndNumbersInHints", L"USER,1041", L"", L"", L"kiv", L"de-DE|de|ja-JP|ja|en|..|..\\en|"},
        HintCase{
            "TriedTagsAreShared", L"de-DE", L"de,nl", L"de-DE,nl", L"kiv,msie,ask,nl,de", L"de-DE|de|nl|en|..|..\\en|"},
        HintCase{"SettingsFileNamesTheBrowser", L"msie", L"nl", L"", L"kiv", L"nl|en|..|..\\en|"},
        HintCase{"BrowserNamesTheSettingsFile", L"nl", L"kiv", L"", L"msie", L"nl|en|..|..\\en|"},
        HintCase{"SettingsFileNamesItself", L"kiv,nl,KIV", L"", L"", L"kiv", L"nl|en|..|..\\en|"},
        HintCase{"BrowserNamesItself", L"", L"msie,nl,MSIE", L"", L"msie", L"nl|en|..|..\\en|"},
        HintCase{"AnswerNamesItself", L"", L"", L"ask,nl,ASK", L"ask", L"nl|en|..|..\\en|"},
        HintCase{"SettingsFileAndBrowserNameEachOther", L"msie,nl", L"kiv,pl", L"", L"kiv", L"pl|nl|en|..|..\\en|"},
        HintCase{
            "AllThreeNameEachOther", L"msie,nl", L"ask,kiv,pl", L"kiv,msie,ask,ja", L"kiv", L"ja|pl|nl|en|..|..\\en|"},
        HintCase{"InsideTheAnswerOthersMayFollow", L"msie,nl", L"pl", L"kiv", L"ask", L"pl|nl|en|..|..\\en|"},
        HintCase{"AHintMayBeWalkedTwice", L"nl", L"", L"", L"kiv,kiv,ja", L"nl|ja|en|..|..\\en|"},
        HintCase{"LookedAtAnswerIsPassedOver", L"", L"", L"\t", L"ask,ja", L"ja|en|..|..\\en|"}),
    [](const testing::TestParamInfo<HintCase>& parameter) { return std::string(parameter.param.name); });

TEST_F(EnumLocales, AnswerIsCutAtSixtyThreeCharacters)
{
    SetHint(HINT_ASKED, Repeat(63) + L"y,ja");
    EXPECT_EQ(Offered(L"ask"), Repeat(63) + L"|en|..|..\\en|");
}

TEST_F(EnumLocales, ReadsOtherHintsWithoutChangingThem)
{
    SetHint(HINT_COMMAND_LINE, L"kiv,msie,ask");
    SetHint(HINT_SETTINGS_FILE, L"nl");
    SetHint(HINT_BROWSER, L"pl");
    SetHint(HINT_ASKED, L"ja");
    EXPECT_EQ(Offered(nullptr), L"nl|pl|ja|en|..|..\\en|");
    EXPECT_EQ(Hint(HINT_COMMAND_LINE), L"kiv,msie,ask");
    EXPECT_EQ(Hint(HINT_SETTINGS_FILE), L"nl");
    EXPECT_EQ(Hint(HINT_BROWSER), L"pl");
    EXPECT_EQ(Hint(HINT_ASKED), L"ja");
}

// ---- The consumer ------------------------------------------------------------------------------------

TEST_F(EnumLocales, FirstResultOtherThanZeroEndsTheSearchAndIsReturned)
{
    SetHint(HINT_SETTINGS_FILE, L"nl-NL");
    SetHint(HINT_BROWSER, L"pl");
    SetHint(HINT_ASKED, L"ko");
    // The user's de-DE counts as tried after de-DE-x.
    const wchar_t* const list = L"de-DE-x,user,system,uilang,kiv,msie,ask,1041";
    const wchar_t* const candidates[] = {L"de-DE-x", L"de-DE", L"de", L"fr-FR", L"fr", L"it-IT", L"it", L"ja-JP", L"ja",
        L"nl-NL", L"nl", L"pl", L"ko", L"en", L"..", L"..\\en"};
    std::wstring expected;
    DWORD result = 0x80000001;
    for (const wchar_t* const candidate : candidates)
    {
        expected += std::wstring(candidate) + L"|";
        CandidateRecorder recorder;
        recorder.accepted = candidate;
        recorder.result = ++result;
        EXPECT_EQ(ARVMUI_EnumLocalesW(list, CandidateRecorder::Record, &recorder), result);
        EXPECT_EQ(recorder.offered, expected);
    }
}

TEST_F(EnumLocales, LastErrorIsLeftToTheConsumer)
{
    const auto consumer = [](const wchar_t*, void*) -> DWORD
    {
        ::SetLastError(4711);
        return 0;
    };
    ::SetLastError(0);
    EXPECT_EQ(ARVMUI_EnumLocalesW(L"user,uilang,de", consumer, nullptr), 0u);
    EXPECT_EQ(::GetLastError(), 4711u);
}

TEST_F(EnumLocales, LeavesNoMemoryBehind)
{
    SetHint(HINT_SETTINGS_FILE, L"nl");
    SetHint(HINT_ASKED, L"pl");
    const auto consumer = [](const wchar_t*, void*) -> DWORD { return 0; };
    const auto narrowConsumer = [](const char*, void*) -> DWORD { return 0; };
    ARVMUI_EnumLocalesW(nullptr, consumer, nullptr);
    ARVMUI_EnumLocalesA("user,kiv,ask", narrowConsumer, nullptr);
    const size_t before = arvmui_test::CountBusyBlocks();
    ARVMUI_EnumLocalesW(nullptr, consumer, nullptr);
    ARVMUI_EnumLocalesW(L"user,system,uilang,kiv,msie,ask", consumer, nullptr);
    ARVMUI_EnumLocalesA("user,kiv,ask", narrowConsumer, nullptr);
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

// ---- The narrow form ---------------------------------------------------------------------------------

class EnumLocalesNarrow : public EnumLocales
{
protected:
    static std::string Offered(const char* list)
    {
        NarrowCandidateRecorder recorder;
        EXPECT_EQ(ARVMUI_EnumLocalesA(list, NarrowCandidateRecorder::Record, &recorder), 0u);
        EXPECT_EQ(recorder.nulls, 0u);
        return recorder.offered;
    }
};

TEST_F(EnumLocalesNarrow, OffersTheSameCandidatesAsTheWideForm)
{
    EXPECT_EQ(Offered("fr-CA,user, 1041"), "fr-CA|fr|de-DE|de|ja-JP|ja|en|..|..\\en|");
}

TEST_F(EnumLocalesNarrow, NullListIsTheProcesssList)
{
    SetHint(HINT_COMMAND_LINE, L"ja");
    EXPECT_EQ(Offered(nullptr), "ja|en|..|..\\en|");
}

TEST_F(EnumLocalesNarrow, IdentifierInPlaceOfTheList)
{
    EXPECT_EQ(Offered(reinterpret_cast<const char*>(static_cast<ULONG_PTR>(0x0407))), "de-DE|de|en|..|..\\en|");
    EXPECT_EQ(Offered(reinterpret_cast<const char*>(static_cast<ULONG_PTR>(0x0066))), "");
}

TEST_F(EnumLocalesNarrow, AcceptedCandidateEndsTheSearch)
{
    NarrowCandidateRecorder recorder;
    recorder.accepted = "fr";
    recorder.result = 0xFFFFFFFF;
    EXPECT_EQ(ARVMUI_EnumLocalesA("fr-CA,de", NarrowCandidateRecorder::Record, &recorder), 0xFFFFFFFFu);
    EXPECT_EQ(recorder.offered, "fr-CA|fr|");
}

int WINAPI ConvertNothingToWide(UINT, DWORD, const char*, int, wchar_t*, int)
{
    ::SetLastError(ERROR_NO_UNICODE_TRANSLATION);
    return 0;
}

TEST_F(EnumLocalesNarrow, ListThatCannotBeConvertedOffersNothing)
{
    const ImportPatch patch(LibraryUnderTest(), "MultiByteToWideChar", &ConvertNothingToWide);
    EXPECT_EQ(Offered("de"), "");
}

int WINAPI ConvertAllButFrench(
    UINT codePage, DWORD flags, const wchar_t* text, int length, char* buffer, int size, const char* other, BOOL* used)
{
    if (std::wcscmp(text, L"fr") == 0) return 0;
    return ::WideCharToMultiByte(codePage, flags, text, length, buffer, size, other, used);
}

TEST_F(EnumLocalesNarrow, CandidateThatCannotBeConvertedIsPassedOver)
{
    const ImportPatch patch(LibraryUnderTest(), "WideCharToMultiByte", &ConvertAllButFrench);
    EXPECT_EQ(Offered("fr-CA,fr,de"), "fr-CA|de|en|..|..\\en|");
}

}  // namespace
