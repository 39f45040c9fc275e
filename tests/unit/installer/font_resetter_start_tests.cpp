// Start of the font watch: the names it collects and the helper process it starts.
#include "unit/installer/font_resetter_fixture.h"

namespace
{

using arvmui_test::StoreText;
using arvmui_test::SystemLookUps;

constexpr wchar_t kNoHelper[] = L"<no helper>";
constexpr wchar_t kNameQuery[] =
    L"SELECT `Value` FROM `Property_en` WHERE `Property`='ProductName' OR `Property`='PATCHNAME'";
constexpr wchar_t kCode[] = L"{12345678-1234-1234-1234-123456789ABC}";
constexpr UINT kError = ERROR_INVALID_DATA;

std::wstring UninstallKey(const std::wstring& code)
{
    return L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + code;
}

class FontResetterStart : public arvmui_test::FontResetterTest
{
protected:
    FontResetterStart() { clock.answersAll = true; }  // should the watch come about here

    void StoreDisplayName(const std::wstring& name)
    {
        installer.properties[L"ProductCode"] = kCode;
        StoreText(HKEY_LOCAL_MACHINE, UninstallKey(kCode).c_str(), L"DisplayName", name);
    }
};

// ---- Names.

TEST_F(FontResetterStart, CollectsEnglishThenPresentThenInstalledNames)
{
    installer.rows[kNameQuery] = {{L"Product"}, {L"Patch"}};
    installer.properties[L"PATCHNAME"] = L"Flicken";
    StoreDisplayName(L"Installed");
    EXPECT_EQ(StartedNames(), L" \"Product\" \"Patch\" \"Produkt\" \"Flicken\" \"Installed\"");
}

TEST_F(FontResetterStart, AsksForTheEnglishNamesOnly)
{
    Start();
    EXPECT_EQ(installer.Statements(), std::vector<std::wstring>{kNameQuery});
    EXPECT_EQ(installer.CountCalls(L"MsiGetActiveDatabase"), 1U);
}

TEST_F(FontResetterStart, ReadsThePropertiesInTheirOrder)
{
    installer.properties[L"PATCHNAME"] = L"Patch";
    installer.properties[L"ProductCode"] = L"{code}";
    Start();
    const std::vector<std::wstring> expected = {L"MsiGetPropertyW ProductName size 0",
        L"MsiGetPropertyW ProductName size 39", L"MsiGetPropertyW PATCHNAME size 0",
        L"MsiGetPropertyW PATCHNAME size 37", L"MsiGetPropertyW ProductCode size 0",
        L"MsiGetPropertyW ProductCode size 38"};
    EXPECT_EQ(installer.CallsOf(L"MsiGetPropertyW"), expected);
}

TEST_F(FontResetterStart, WithoutAnActiveDatabaseHasNoEnglishNames)
{
    installer.hasActiveDatabase = false;
    EXPECT_EQ(StartedNames(), L" \"Produkt\"");
    EXPECT_TRUE(installer.Statements().empty());
}

TEST_F(FontResetterStart, APackageWithoutEnglishPropertiesHasNoEnglishNames)
{
    installer.Answer(std::wstring(L"MsiDatabaseOpenViewW ") + kNameQuery, ERROR_BAD_QUERY_SYNTAX);
    EXPECT_EQ(StartedNames(), L" \"Produkt\"");
}

TEST_F(FontResetterStart, KeepsTheEnglishNamesBeforeOneThatCannotBeRead)
{
    installer.rows[kNameQuery] = {{L"Product"}, {L"Patch"}};
    installer.Answer(L"MsiRecordGetStringW 1 of Patch size 0", kError);
    EXPECT_EQ(StartedNames(), L" \"Product\" \"Produkt\"");
}

TEST_F(FontResetterStart, PassesOverEmptyAndRepeatedNames)
{
    installer.rows[kNameQuery] = {{L"Produkt"}, {L""}, {L"Produkt"}};
    StoreDisplayName(L"Produkt");
    EXPECT_EQ(StartedNames(), L" \"Produkt\"");
}

TEST_F(FontResetterStart, DoesNothingWhenTheProductNameCannotBeRead)
{
    installer.rows[kNameQuery] = {{L"Product"}};
    installer.properties[L"PATCHNAME"] = L"Patch";
    for (const wchar_t* const call : {L"MsiGetPropertyW ProductName size 0", L"MsiGetPropertyW ProductName size 39"})
    {
        installer.ForgetAnswers();
        installer.Answer(call, kError);
        EXPECT_EQ(StartedNames(), kNoHelper);
    }
    EXPECT_TRUE(clock.Events().empty());
    EXPECT_TRUE(lookUps.moves.empty());
    EXPECT_EQ(installer.CountCalls(L"MsiGetPropertyW PATCHNAME size 0"), 0U);
}

TEST_F(FontResetterStart, GoesOnWithAnEmptyProductName)
{
    installer.properties[L"ProductName"] = L"";
    installer.properties[L"PATCHNAME"] = L"Patch";
    EXPECT_EQ(StartedNames(), L" \"Patch\"");
}

TEST_F(FontResetterStart, StartsTheHelperThoughThereIsNoName)
{
    installer.properties[L"ProductName"] = L"";
    EXPECT_EQ(StartedNames(), L"");
}

TEST_F(FontResetterStart, GoesOnWhenThePatchNameCannotBeRead)
{
    StoreDisplayName(L"Installed");
    installer.Answer(L"MsiGetPropertyW PATCHNAME size 0", kError);
    EXPECT_EQ(StartedNames(), L" \"Produkt\" \"Installed\"");
}

TEST_F(FontResetterStart, HasNoInstalledNameWhenTheProductCodeCannotBeRead)
{
    StoreDisplayName(L"Installed");
    installer.Answer(L"MsiGetPropertyW ProductCode size 0", kError);
    EXPECT_EQ(StartedNames(), L" \"Produkt\"");
}

TEST_F(FontResetterStart, HasNoInstalledNameOfAnotherProduct)
{
    StoreDisplayName(L"Installed");
    installer.properties[L"ProductCode"] = L"{other}";
    EXPECT_EQ(StartedNames(), L" \"Produkt\"");
}

TEST_F(FontResetterStart, ReadsAnInstalledNameOf255CharactersAndCutsALongerOne)
{
    for (const size_t length : {255U, 256U, 300U})
    {
        helper.Forget();
        StoreDisplayName(std::wstring(length, L'n'));
        Start();
        ASSERT_EQ(helper.Lines().size(), 1U);
        EXPECT_TRUE(helper.Lines()[0].ends_with(L" \"Produkt\" \"" + std::wstring(255, L'n') + L"\""));
    }
}

TEST_F(FontResetterStart, WatchesForSixteenNamesAtMost)
{
    std::wstring expected;
    for (int i = 1; i <= 20; ++i)
    {
        const std::wstring name = L"name" + std::to_wstring(i);
        installer.rows[kNameQuery].push_back({name});
        if (i <= 16) expected += L" \"" + name + L"\"";
    }
    EXPECT_EQ(StartedNames(), expected);
}

TEST_F(FontResetterStart, EscapesTheNames)
{
    installer.properties[L"ProductName"] = L"a \"b\" \x65E5\\";
    EXPECT_EQ(StartedNames(), L" \"a \\u0022b\\u0022 \\u65E5\\\\\"");
}

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

TEST_F(FontResetterStart, ReadsTheInstalledNameInTheView32BitsWide)
{
    g_opened.clear();
    const arvmui_test::ImportPatch patch(::GetModuleHandleW(nullptr), "RegOpenKeyExW", &OpenKey);
    installer.properties[L"ProductCode"] = kCode;
    Start();
    EXPECT_EQ(g_opened, (std::vector<OpenedKey>{{HKEY_LOCAL_MACHINE, UninstallKey(kCode), 0x20219}}));
}

// ---- The helper.

TEST_F(FontResetterStart, GivesTheHelperASecondAndLeavesTheWatchToIt)
{
    EXPECT_EQ(StartedNames(), L" \"Produkt\"");
    EXPECT_EQ(helper.Waits(), std::vector<DWORD>{1000});
    EXPECT_EQ(helper.OpenHandles(), 0U);
    EXPECT_TRUE(clock.Events().empty());
}

TEST_F(FontResetterStart, HasItsFileDeletedAtTheNextRestartBeforeItStartsTheHelper)
{
    size_t movesAtStart = 0;
    helper.onStart = [&] { movesAtStart = lookUps.moves.size(); };
    Start();
    EXPECT_EQ(lookUps.moves, (std::vector<SystemLookUps::Move>{{arvmui_test::ProgramPath(), false, 4}}));
    EXPECT_EQ(movesAtStart, 1U);
    EXPECT_EQ(lookUps.moveFileModule, "KERNEL32.DLL");
}

TEST_F(FontResetterStart, SwitchesMessageBoxesOff)
{
    ARVMUI_SetMessagePopup(TRUE, nullptr);
    installer.isLoaded = false;
    Start();
    BOOL previous = TRUE;
    ARVMUI_SetMessagePopup(FALSE, &previous);
    EXPECT_FALSE(previous);
}

TEST_F(FontResetterStart, DoesNothingWithoutTheInstaller)
{
    installer.isLoaded = false;
    EXPECT_EQ(StartedNames(), kNoHelper);
    EXPECT_TRUE(installer.Calls().empty());
    EXPECT_TRUE(clock.Events().empty());
}

TEST_F(FontResetterStart, DoesNothingWhenTheInstallerLacksAFunction)
{
    installer.missing = {"MsiDatabaseImportW"};
    EXPECT_EQ(StartedNames(), kNoHelper);
    EXPECT_TRUE(installer.Calls().empty());
    EXPECT_TRUE(clock.Events().empty());
}

TEST_F(FontResetterStart, NoFailureOfTheInstallerIsTold)
{
    installer.rows[kNameQuery] = {{L"Product"}, {L"Patch"}};
    StoreDisplayName(L"Installed");
    ExpectEachFailure([this] { return Start(); }, kError, arvmui_test::Always(ERROR_SUCCESS));
}

TEST_F(FontResetterStart, NoLackOfMemoryIsTold)
{
    installer.rows[kNameQuery] = {{L"Product"}, {L"Patch"}};
    StoreDisplayName(L"Installed");
    ExpectEachLackOfMemory([this] { return Start(); }, ERROR_SUCCESS);
}

}  // namespace
