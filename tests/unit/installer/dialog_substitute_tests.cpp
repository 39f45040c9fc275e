// The substitute face of a package's dialogs: every source in its order.
#include "unit/installer/dialog_font_fixture.h"

namespace
{

using arvmui_test::kDialogFont;
using arvmui_test::kFontSubstitutes;
using arvmui_test::kInterfaceFont;
using arvmui_test::kProductKey;

using Texts = std::vector<std::wstring>;

constexpr UINT kError = ERROR_INVALID_DATA;
constexpr wchar_t kSetting[] = L"InstalledFontSubstitute";

class DialogSubstitute : public arvmui_test::DialogFontTest
{
protected:
    DialogSubstitute()
    {
        // What is behind the substitute is settled: the interface's font is there already.
        installer.properties[kInterfaceFont] = L"Preset";
        screen.fonts = {{L"Screen", DEFAULT_CHARSET}};
    }

    // The face that is written; what no face is called if none is.
    std::wstring Chosen()
    {
        EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
        const Texts written = Written();
        if (written.empty()) return L"<nothing>";
        EXPECT_EQ(written.size(), 1U);
        const std::wstring start = DialogFont(L"");
        EXPECT_EQ(written[0].substr(0, start.size()), start);
        return written[0].substr(start.size());
    }
    bool AsksForTheInterfaceFont() const
    {
        return installer.CountCalls(std::wstring(L"MsiGetPropertyW ") + kInterfaceFont + L" size 0") != 0;
    }
};

constexpr wchar_t kNothing[] = L"<nothing>";

// ---- The session's property.

TEST_F(DialogSubstitute, PresetBySessionIsNotWrittenAgain)
{
    installer.properties[kDialogFont] = L"Preset";
    StoreMachineText(kProductKey, kSetting, L"Setting");
    EXPECT_EQ(Chosen(), kNothing);
    EXPECT_TRUE(AsksForTheInterfaceFont());
    EXPECT_EQ(screen.enumerations, 0);
}

struct PresetCase
{
    const char* name;
    const wchar_t* preset;
    const wchar_t* written;
    bool goesOn;
};

class PresetSubstitute : public DialogSubstitute, public testing::WithParamInterface<PresetCase>
{
};

TEST_P(PresetSubstitute, IsTakenOrSwitchedOff)
{
    installer.properties[kDialogFont] = GetParam().preset;
    EXPECT_EQ(Chosen(), GetParam().written);
    EXPECT_EQ(AsksForTheInterfaceFont(), GetParam().goesOn);
}

INSTANTIATE_TEST_SUITE_P(Texts, PresetSubstitute,
    testing::Values(PresetCase{"Face", L"Arial", kNothing, true},
        PresetCase{"FaceInLowerCase", L"arial", kNothing, true}, PresetCase{"No", L"no", L"none", false},
        PresetCase{"NoInCapitals", L"NO", L"none", false}, PresetCase{"Off", L"off", L"none", false},
        PresetCase{"OffInCapitals", L"OFF", L"none", false}, PresetCase{"None", L"none", kNothing, false},
        PresetCase{"NoneInCapitals", L"NONE", kNothing, false}, PresetCase{"NoMore", L"nope", kNothing, true},
        PresetCase{"Offer", L"offer", kNothing, true}, PresetCase{"NoWithABlank", L"no ", kNothing, true},
        PresetCase{"Blank", L" ", kNothing, true}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(DialogSubstitute, OfMoreThan31CharactersIsWrittenCut)
{
    for (const size_t length : {31U, 32U, 40U})
    {
        installer.properties[kDialogFont] = std::wstring(length, L'f');
        EXPECT_EQ(Chosen(), length == 31 ? kNothing : std::wstring(31, L'f')) << length;
        EXPECT_TRUE(AsksForTheInterfaceFont());
    }
}

// ---- The machine's setting.

TEST_F(DialogSubstitute, IsTheMachinesSettingWithoutAPreset)
{
    StoreMachineText(kProductKey, kSetting, L"Setting");
    EXPECT_EQ(Chosen(), L"Setting");
    EXPECT_EQ(screen.enumerations, 0);
    EXPECT_TRUE(AsksForTheInterfaceFont());
}

TEST_F(DialogSubstitute, CanBeSwitchedOffForTheMachine)
{
    for (const wchar_t* const word : {L"no", L"OFF", L"No", L"none"})
    {
        installer.properties.erase(kDialogFont);
        StoreMachineText(kProductKey, kSetting, word);
        EXPECT_EQ(Chosen(), L"none");
        EXPECT_FALSE(AsksForTheInterfaceFont());
    }
}

TEST_F(DialogSubstitute, KeepsTheSpellingOfTheMachinesNone)
{
    StoreMachineText(kProductKey, kSetting, L"NONE");
    EXPECT_EQ(Chosen(), L"NONE");
    EXPECT_FALSE(AsksForTheInterfaceFont());
}

TEST_F(DialogSubstitute, OfTheMachineIsCutAt31Characters)
{
    StoreMachineText(kProductKey, kSetting, std::wstring(40, L'f'));
    EXPECT_EQ(Chosen(), std::wstring(31, L'f'));
}

TEST_F(DialogSubstitute, OfTheMachineIsNoAliasWhateverTheSubstitutesSay)
{
    StoreMachineText(kProductKey, kSetting, L"Setting");
    StoreMachineText(kFontSubstitutes, L"Setting", L"Other");
    EXPECT_EQ(Chosen(), L"Setting");
}

TEST_F(DialogSubstitute, IsTheScreensFontWhereTheSettingIsEmptyOrNoText)
{
    StoreMachineText(kProductKey, kSetting, L"");
    EXPECT_EQ(Chosen(), L"Screen");
    installer.properties.erase(kDialogFont);
    const DWORD number = 1;
    arvmui_test::StoreValue(HKEY_LOCAL_MACHINE, kProductKey, kSetting, REG_DWORD, &number, sizeof(number));
    EXPECT_EQ(Chosen(), L"Screen");
}

// ---- The screen's fonts.

TEST_F(DialogSubstitute, IsTheFirstFontOfTheDefaultCharacterSet)
{
    screen.fonts = {{L"Western", ANSI_CHARSET}, {L"Symbols", SYMBOL_CHARSET}, {L"First", DEFAULT_CHARSET},
        {L"Second", DEFAULT_CHARSET}};
    EXPECT_EQ(Chosen(), L"First");
    EXPECT_EQ(screen.told, 3U) << "the enumeration is to end there";
    EXPECT_EQ(screen.screens, 1);
    EXPECT_TRUE(AsksForTheInterfaceFont());
}

TEST_F(DialogSubstitute, DoesNotGiveTheScreenBack)
{
    EXPECT_EQ(Chosen(), L"Screen");
    EXPECT_EQ(screen.screens, 1);
    EXPECT_EQ(screen.released, 0);
}

TEST_F(DialogSubstitute, MayHaveAFaceOf31Characters)
{
    screen.fonts = {{std::wstring(31, L'f'), DEFAULT_CHARSET}};
    EXPECT_EQ(Chosen(), std::wstring(31, L'f'));
}

TEST_F(DialogSubstitute, IsNoneWithoutSuchAFont)
{
    screen.fonts = {{L"Western", ANSI_CHARSET}, {L"Symbols", SYMBOL_CHARSET}};
    EXPECT_EQ(Chosen(), L"none");
    EXPECT_EQ(screen.told, 2U);
    EXPECT_FALSE(AsksForTheInterfaceFont());
}

TEST_F(DialogSubstitute, IsNoneWithoutAnyFont)
{
    screen.fonts = {};
    EXPECT_EQ(Chosen(), L"none");
}

TEST_F(DialogSubstitute, IsNoneWhereTheFontIsAnAlias)
{
    screen.fonts = {{L"Alias", DEFAULT_CHARSET}, {L"Real", DEFAULT_CHARSET}};
    StoreMachineText(kFontSubstitutes, L"Alias", L"Real");
    EXPECT_EQ(Chosen(), L"none");
    EXPECT_FALSE(AsksForTheInterfaceFont());
}

TEST_F(DialogSubstitute, AliasesOfOtherFontsDoNotCount)
{
    StoreMachineText(kFontSubstitutes, L"Alias", L"Screen");
    EXPECT_EQ(Chosen(), L"Screen");
}

TEST_F(DialogSubstitute, ScreenFontOfAnOffWordIsNone)
{
    screen.fonts = {{L"Off", DEFAULT_CHARSET}};
    EXPECT_EQ(Chosen(), L"none");
}

// ---- The calls.

struct OpenedKey
{
    HKEY root;
    std::wstring path;
    REGSAM access;
    bool operator==(const OpenedKey&) const = default;
};

std::vector<OpenedKey> g_opened;

LSTATUS WINAPI OpenKey(HKEY root, LPCWSTR subkey, DWORD options, REGSAM access, PHKEY key)
{
    g_opened.push_back({root, subkey, access});
    return ARVMUI_REAL_FUNCTION(L"advapi32.dll", RegOpenKeyExW)(root, subkey, options, KEY_READ, key);
}

TEST_F(DialogSubstitute, ReadsTheMachinesSettingsInTheView32BitsWide)
{
    g_opened.clear();
    const arvmui_test::ImportPatch patch(::GetModuleHandleW(nullptr), "RegOpenKeyExW", &OpenKey);
    installer.properties.erase(kInterfaceFont);
    EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
    const OpenedKey setting = {HKEY_LOCAL_MACHINE, kProductKey, 0x20219};
    const OpenedKey substitutes = {HKEY_LOCAL_MACHINE, kFontSubstitutes, 0x20219};
    EXPECT_EQ(g_opened, (std::vector<OpenedKey>{setting, substitutes, substitutes}));
}

TEST_F(DialogSubstitute, LeavesMessageBoxesAsTheyAre)
{
    ARVMUI_SetMessagePopup(TRUE, nullptr);
    EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
    BOOL previous = FALSE;
    ARVMUI_SetMessagePopup(FALSE, &previous);
    EXPECT_TRUE(previous);
}

TEST_F(DialogSubstitute, FailsWithoutTheInstaller)
{
    installer.isLoaded = false;
    EXPECT_EQ(Run(), static_cast<UINT>(ERROR_FUNCTION_FAILED));
    EXPECT_TRUE(installer.Calls().empty());
}

TEST_F(DialogSubstitute, FailsWhenTheInstallerLacksAFunction)
{
    installer.missing = {"MsiDatabaseImportW"};
    EXPECT_EQ(Run(), static_cast<UINT>(ERROR_FUNCTION_FAILED));
    EXPECT_TRUE(installer.Calls().empty());
}

TEST_F(DialogSubstitute, FailsWhenThePresetCannotBeRead)
{
    installer.Answer(std::wstring(L"MsiGetPropertyW ") + kDialogFont + L" size 0", kError);
    EXPECT_EQ(Run(), kError);
    EXPECT_EQ(installer.Calls().size(), 1U);
    EXPECT_EQ(screen.enumerations, 0);
}

TEST_F(DialogSubstitute, FailsWhenItCannotBeWritten)
{
    installer.Answer(L"MsiSetPropertyW " + DialogFont(L"Screen"), kError);
    EXPECT_EQ(Run(), kError);
    EXPECT_FALSE(AsksForTheInterfaceFont());
}

}  // namespace
