// The list of chosen languages when the settings dialog opens: which items of the stored text become
// rows of it, and under which names.
#include "resources/process_state.h"
#include "settings_dialog_fixture.h"

namespace
{

using namespace arvmui_test;

std::wstring Repeat(size_t count, wchar_t character = L'x')
{
    return std::wstring(count, character);
}

// ---- The stored text ---------------------------------------------------------------------------------

struct StoredList
{
    const char* name;
    std::wstring stored;
    Names chosen;
    std::wstring saved;  // by pressing OK at once
};

void PrintTo(const StoredList& list, std::ostream* output)
{
    *output << list.name;
}

class SettingsDialogStoredList : public SettingsDialog, public testing::WithParamInterface<StoredList>
{
};

TEST_P(SettingsDialogStoredList, IsShownAndSaved)
{
    Store(GetParam().stored);
    OpenSettings settings;
    ASSERT_NE(settings.Window(), nullptr);
    EXPECT_EQ(settings.Chosen(), GetParam().chosen);
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), GetParam().saved);
}

const wchar_t* const kGerman = L"Deutsch";
const wchar_t* const kFrench = L"Fran\u00e7ais";

INSTANTIATE_TEST_SUITE_P(Items, SettingsDialogStoredList,
    testing::Values(StoredList{"One", L"de-DE", {kGerman}, L"de-DE"},
        StoredList{"InTheStoredOrder", L"fr-FR,en-US,de-DE", {kFrench, L"English", kGerman}, L"fr-FR,en-US,de-DE"},
        StoredList{"BlanksAroundItems", L" \tde-DE \r\n,\v\f fr-FR  ", {kGerman, kFrench}, L"de-DE,fr-FR"},
        StoredList{"EmptyItems", L",,de-DE, ,,fr-FR,", {kGerman, kFrench}, L"de-DE,fr-FR"},
        StoredList{"OtherCase", L"DE-de,fR-Fr", {kGerman, kFrench}, L"de-DE,fr-FR"},
        StoredList{"Twice", L"de-DE,fr-FR,de-DE", {kGerman, kFrench}, L"de-DE,fr-FR"},
        StoredList{"TwiceInOtherCase", L"de-DE,DE-DE,fr-FR", {kGerman, kFrench}, L"de-DE,fr-FR"},
        StoredList{"NotInstalled", L"de-DE,pt-BR,de-DE", {kGerman, L"pt-BR"}, L"de-DE,pt-BR"},
        StoredList{"NotInstalledTwice", L"pt-BR,de-DE,PT-br", {L"pt-BR", kGerman}, L"pt-BR,de-DE"},
        StoredList{"NotInstalledBeyondAscii", L"\u00c4\u00d6,\u00e4\u00f6", {L"\u00c4\u00d6"}, L"\u00c4\u00d6"},
        StoredList{"SeveralNotInstalled", L"x,y,z,de-DE", {L"x", L"y", L"z", kGerman}, L"x,y,z,de-DE"},
        StoredList{"LanguageOfAnInstalledTag", L"de,de-AT", {L"de", L"de-AT"}, L"de,de-AT"},
        StoredList{"FolderIsNoTag", L"ja", {L"ja"}, L"ja"},
        StoredList{"Identifier", L"1031,0x0407", {L"1031", L"0x0407"}, L"1031,0x0407"},
        StoredList{"BlankInside", L"my language ,de-DE", {L"my language", kGerman}, L"my language,de-DE"},
        StoredList{"NoBreakSpaceIsNoBlank", L"\u00a0pt-BR\u00a0", {L"\u00a0pt-BR\u00a0"}, L"\u00a0pt-BR\u00a0"},
        StoredList{"CharactersOfNoFileName", L"a:b|c,..\\en", {L"a:b|c", L"..\\en"}, L"a:b|c,..\\en"},
        StoredList{"Keywords", L"kiv,user,system,uilang,msie",
            {kKeywordNames[3], kKeywordNames[0], kKeywordNames[1], kKeywordNames[2], kKeywordNames[4]},
            L"kiv,user,system,uilang,msie"},
        StoredList{"KeywordInOtherCase", L"USER,user", {kKeywordNames[0]}, L"user"},
        StoredList{"AskIsNotOffered", L"ask,user", {L"ask", kKeywordNames[0]}, L"ask,user"},
        StoredList{"PercentSigns", L"%s,%n,100%", {L"%s", L"%n", L"100%"}, L"%s,%n,100%"},
        StoredList{"LongestTag", Repeat(63), {Repeat(63)}, Repeat(63)},
        StoredList{"TagTooLong", Repeat(64), {Repeat(63)}, Repeat(63)},
        StoredList{"TagMuchTooLong", L"de-DE," + Repeat(200) + L",fr-FR", {kGerman, Repeat(63), kFrench},
            L"de-DE," + Repeat(63) + L",fr-FR"},
        StoredList{"LongestText", Repeat(249, L',') + L"de-DEx", {L"de-DEx"}, L"de-DEx"},
        StoredList{"TextTooLong", Repeat(250, L',') + L"de-DEx", {kGerman}, L"de-DE"},
        StoredList{"TextMuchTooLong", L"fr-FR" + Repeat(250, L',') + L"de-DE", {kFrench}, L"fr-FR"}),
    [](const auto& list) { return std::string(list.param.name); });

INSTANTIATE_TEST_SUITE_P(NoItems, SettingsDialogStoredList,
    testing::Values(StoredList{"Empty", L"", {}, kNoValue}, StoredList{"Separators", L" ,\t,, \r\n", {}, kNoValue}),
    [](const auto& list) { return std::string(list.param.name); });

class SettingsDialogList : public SettingsDialog
{
};

TEST_F(SettingsDialogList, ManyItemsThatAreNotInstalledAreKept)
{
    Names tags;
    std::wstring list;
    for (wchar_t c = 0; c < 127; ++c)
    {
        tags.emplace_back(1, static_cast<wchar_t>(0x4E00 + c));
        list += (c == 0 ? L"" : L",") + tags.back();
    }
    Store(list);
    OpenSettings settings;
    EXPECT_EQ(settings.Chosen(), tags);
    ASSERT_TRUE(settings.Click(IDOK));
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), list);
}

TEST_F(SettingsDialogList, WithoutStoredTextIsEmpty)
{
    OpenSettings settings;
    ASSERT_NE(settings.Window(), nullptr);
    EXPECT_EQ(settings.Chosen(), Names{});
}

TEST_F(SettingsDialogList, ValueThatIsNoTextCountsAsEmpty)
{
    const DWORD number = 1031;
    StoreValue(HKEY_CURRENT_USER, kProductKey, kListValue, REG_DWORD, &number, sizeof(number));
    OpenSettings settings;
    ASSERT_NE(settings.Window(), nullptr);
    EXPECT_EQ(settings.Chosen(), Names{});
}

TEST_F(SettingsDialogList, FirstRowOfATagIsChosen)
{
    Install(L"de-CH", L"de-DE", 0x0807, L"Other German", L"Anderes Deutsch");
    Store(L"de-DE");
    OpenSettings settings;
    EXPECT_EQ(settings.Chosen(), Names{kGerman});
    const HWND add = settings.OpenAdd();
    EXPECT_EQ(ListItems(add, ARVMUI_CONTROL_AVAILABLE_LIST).at(0), L"Anderes Deutsch");
}

// ---- Names -------------------------------------------------------------------------------------------

struct NameRow
{
    const char* name;
    LANGID language;
    std::wstring nativeName;
    std::vector<WORD> keyboards;
    bool isNative;  // else English
};

void PrintTo(const NameRow& row, std::ostream* output)
{
    *output << row.name;
}

class SettingsDialogNames : public SettingsDialog, public testing::WithParamInterface<NameRow>
{
};

// The same rule on both sides: chosen, and offered to be added.
TEST_P(SettingsDialogNames, AreReadable)
{
    for (const wchar_t* const folder : {L"de", L"en", L"fr", L"ja"}) Uninstall(folder);
    Install(L"test", L"tt-TT", GetParam().language, L"English name", GetParam().nativeName);
    UseKeyboards(GetParam().keyboards);
    const std::wstring expected = GetParam().isNative ? GetParam().nativeName : L"English name";

    Store(L"tt-TT");
    OpenSettings settings;
    ASSERT_EQ(settings.Chosen(), Names{expected});
    settings.Select({0});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    const HWND add = settings.OpenAdd();
    EXPECT_EQ(ListItems(add, ARVMUI_CONTROL_AVAILABLE_LIST).at(0), expected);
    SelectItems(add, ARVMUI_CONTROL_AVAILABLE_LIST, {0});
    ASSERT_TRUE(ClickButton(add, IDOK));
    ASSERT_TRUE(WaitUntilGone(add, settings.Window()));
    EXPECT_EQ(settings.Chosen(), Names{expected});
}

const wchar_t* const kJapanese = L"\u65e5\u672c\u8a9e";

INSTANTIATE_TEST_SUITE_P(Rule, SettingsDialogNames,
    testing::Values(NameRow{"Latin", 0x0407, L"Deutsch", {}, true}, NameRow{"LastLatin", 0x0408, L"A\u036f", {}, true},
        NameRow{"BeyondLatin", 0x0408, L"A\u0370", {}, false},
        NameRow{"Vietnamese", 0x042A, L"Ti\u1ebfng Vi\u1ec7t", {}, true},
        NameRow{"JapaneseWithoutKeyboard", 0x0411, kJapanese, {}, false},
        NameRow{"JapaneseWithOtherKeyboards", 0x0411, kJapanese, {0x07, 0x10, 0x12}, false},
        NameRow{"JapaneseWithKeyboard", 0x0411, kJapanese, {0x07, 0x09, 0x11}, true},
        NameRow{"OtherCountrysKeyboard", 0x0C04, L"\u4e2d\u6587", {0x04}, true}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(SettingsDialogList, TagThatIsNotInstalledIsItsOwnNameInAnyScript)
{
    Store(kJapanese);
    OpenSettings settings;
    EXPECT_EQ(settings.Chosen(), Names{kJapanese});
}

// Keywords are named in the dialog's language, which may need a keyboard too.
TEST_F(SettingsDialogList, KeywordsFollowTheRuleOfTheDialogsLanguage)
{
    WriteResourceImage(Folder() / L"resource" / L"en" / L"arvmuiUI.DLL", EnglishTexts());
    Strings texts = EnglishTexts();
    texts[ARVMUI_STRING_LANGUAGE_ID] = L"0x0411";
    texts[ARVMUI_STRING_KEYWORD_USER] = kJapanese;
    texts[ARVMUI_STRING_KEYWORD_SYSTEM] = L"Latin";
    Speak(texts);
    Store(L"user,system");
    {
        OpenSettings settings;
        EXPECT_EQ(settings.Chosen(), (Names{kKeywordNames[0], L"Latin"}));
    }
    UseKeyboards({0x11});
    OpenSettings settings;
    EXPECT_EQ(settings.Chosen(), (Names{kJapanese, L"Latin"}));
}

}  // namespace
