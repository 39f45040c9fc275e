// The deferred action that has the installer's cached package translated: what it reads, where it
// finds the package, and the helper process it starts and waits for.
#include "arvmui.h"
#include "support/import_replacement.h"
#include "support/scratch_registry.h"
#include "unit/installer/helper_start.h"
#include "unit/installer/installer_fixture.h"

#include <optional>

namespace
{

using arvmui_test::HelperStart;
using arvmui_test::StandInInstaller;
using arvmui_test::StoreText;

constexpr wchar_t kSid[] = L"S-1-5-21-1-2-3-1001";
constexpr wchar_t kSystemSid[] = L"S-1-5-18";
constexpr wchar_t kPath[] = L"C:\\Installer\\1a2b.msi";
constexpr wchar_t kEscapedPath[] = L"C:\\\\Installer\\\\1a2b.msi";

std::wstring PackageKey(const std::wstring& sid, const std::wstring& product = L"PACKEDCODE")
{
    return L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\" + sid + L"\\Products\\" + product
           + L"\\InstallProperties";
}

class LocalPackageAction : public arvmui_test::InstallerTest
{
protected:
    LocalPackageAction()
    {
        EXPECT_TRUE(registry_.ReplaceRoot(HKEY_LOCAL_MACHINE));
        installer.properties[L"UserSID"] = kSid;
        installer.properties[L"CustomActionData"] = L"de,PACKEDCODE,";
    }
    void TearDown() override
    {
        EXPECT_EQ(helper.OpenHandles(), 0U);
        InstallerTest::TearDown();
    }

    void StorePackage(const std::wstring& sid, const wchar_t* value = L"LocalPackage", const std::wstring& path = kPath)
    {
        StoreText(HKEY_LOCAL_MACHINE, PackageKey(sid).c_str(), value, path);
    }

    // The arguments with which a helper was started; what no helper has if none was.
    std::wstring Run()
    {
        installer.ForgetCalls();
        EXPECT_EQ(ARVMUI_MSI_TranslateLocalPackage(StandInInstaller::kSession), 0U);
        if (helper.Lines().empty()) return L"<no helper>";
        EXPECT_EQ(helper.Lines().size(), 1U);
        const std::wstring start =
            HelperStart::LineWithoutArguments(arvmui_test::ProgramPath(), L"ARVMUI_RUNDLL32_TranslateLocalPackage");
        EXPECT_EQ(helper.Lines()[0].substr(0, start.size()), start);
        return helper.Lines()[0].substr(start.size());
    }

    static std::wstring Arguments(const std::wstring& locale, const std::wstring& escapedPath = kEscapedPath,
        const std::wstring& mode = L"NOTRANSFORM")
    {
        return L" \"" + locale + L"\" \"" + escapedPath + L"\" \"" + mode + L"\"";
    }

    HelperStart helper;

private:
    arvmui_test::ScratchRegistry registry_;
};

constexpr wchar_t kNoHelper[] = L"<no helper>";

TEST_F(LocalPackageAction, StartsTheHelperOnThisLibrary)
{
    StorePackage(kSid);
    EXPECT_EQ(Run(), Arguments(L"de"));
}

TEST_F(LocalPackageAction, WaitsForTheHelperWithoutALimitBeforeItClosesIt)
{
    StorePackage(kSid);
    Run();
    EXPECT_EQ(helper.Waits(), std::vector<DWORD>{INFINITE});
    EXPECT_EQ(helper.OpenHandles(), 0U);
}

TEST_F(LocalPackageAction, WaitsForNothingWhenTheHelperDoesNotStart)
{
    StorePackage(kSid);
    helper.starts = false;
    Run();
    EXPECT_EQ(helper.Lines().size(), 1U);
    EXPECT_TRUE(helper.Waits().empty());
}

TEST_F(LocalPackageAction, IsContentWithAHelperThatCannotBeWaitedFor)
{
    StorePackage(kSid);
    helper.waitResult = WAIT_FAILED;
    Run();
    EXPECT_EQ(helper.Waits().size(), 1U);
}

TEST_F(LocalPackageAction, SwitchesMessageBoxesOff)
{
    ARVMUI_SetMessagePopup(TRUE, nullptr);
    installer.isLoaded = false;
    Run();
    BOOL previous = TRUE;
    ARVMUI_SetMessagePopup(FALSE, &previous);
    EXPECT_FALSE(previous);
}

TEST_F(LocalPackageAction, DoesNothingWithoutTheInstaller)
{
    StorePackage(kSid);
    installer.isLoaded = false;
    EXPECT_EQ(Run(), kNoHelper);
    EXPECT_TRUE(installer.Calls().empty());
}

TEST_F(LocalPackageAction, DoesNothingWhenTheInstallerLacksAFunction)
{
    StorePackage(kSid);
    installer.missing = {"MsiDatabaseImportW"};
    EXPECT_EQ(Run(), kNoHelper);
    EXPECT_TRUE(installer.Calls().empty());
}

TEST_F(LocalPackageAction, BindsBeforeItReads)
{
    StorePackage(kSid);
    bool wasBound = true;
    installer.onCall = [&](const std::wstring&) { wasBound = wasBound && installer.LookedUp().size() >= 14; };
    EXPECT_EQ(Run(), Arguments(L"de"));
    EXPECT_TRUE(wasBound);
}

// ---- What the action is told.

TEST_F(LocalPackageAction, ReadsTheUserThenItsData)
{
    StorePackage(kSid);
    Run();
    const std::vector<std::wstring> expected = {L"MsiGetPropertyW UserSID size 0", L"MsiGetPropertyW UserSID size 51",
        L"MsiGetPropertyW CustomActionData size 0", L"MsiGetPropertyW CustomActionData size 46"};
    EXPECT_EQ(installer.Calls(), expected);
}

TEST_F(LocalPackageAction, ReadsNothingMoreWhenTheUserCannotBeRead)
{
    StorePackage(kSid);
    installer.Answer(L"MsiGetPropertyW UserSID size 0", ERROR_INVALID_HANDLE);
    EXPECT_EQ(Run(), kNoHelper);
    EXPECT_EQ(installer.Calls().size(), 1U);
}

struct DataCase
{
    const char* name;
    const wchar_t* data;
    const wchar_t* arguments;
};

class LocalPackageData : public LocalPackageAction, public testing::WithParamInterface<DataCase>
{
};

TEST_P(LocalPackageData, IsCutAtItsFirstTwoCommas)
{
    StorePackage(kSid);
    // What an action that is not deferred would use.
    installer.properties[L"UILOCALE"] = L"fr";
    installer.properties[L"ProductCodeFast"] = L"PACKEDCODE";
    installer.properties[L"CustomActionData"] = GetParam().data;
    EXPECT_EQ(Run(), GetParam().arguments);
}

INSTANTIATE_TEST_SUITE_P(Texts, LocalPackageData,
    testing::Values(DataCase{"Empty", L"", kNoHelper}, DataCase{"NoComma", L"de", kNoHelper},
        DataCase{"OneComma", L"de,PACKEDCODE", kNoHelper},
        DataCase{"EmptyTransforms", L"de,PACKEDCODE,", L" \"de\" \"C:\\\\Installer\\\\1a2b.msi\" \"NOTRANSFORM\""},
        DataCase{"Transforms", L"de,PACKEDCODE,a.mst", L" \"de\" \"C:\\\\Installer\\\\1a2b.msi\" \"TRANSFORMS\""},
        DataCase{"SeveralTransforms", L"de,PACKEDCODE,a.mst,b.mst,c,",
            L" \"de\" \"C:\\\\Installer\\\\1a2b.msi\" \"TRANSFORMS\""},
        DataCase{
            "TransformsOfCommasAlone", L"de,PACKEDCODE,,", L" \"de\" \"C:\\\\Installer\\\\1a2b.msi\" \"TRANSFORMS\""},
        DataCase{"TransformsOfABlank", L"de,PACKEDCODE, ", L" \"de\" \"C:\\\\Installer\\\\1a2b.msi\" \"TRANSFORMS\""},
        DataCase{"EmptyLocale", L",PACKEDCODE,", L" \"\" \"C:\\\\Installer\\\\1a2b.msi\" \"NOTRANSFORM\""},
        DataCase{"EmptyProduct", L"de,,", kNoHelper}, DataCase{"OtherProduct", L"de,OTHER,", kNoHelper},
        DataCase{
            "BlankIsPartOfAField", L" de ,PACKEDCODE,", L" \" de \" \"C:\\\\Installer\\\\1a2b.msi\" \"NOTRANSFORM\""}),
    [](const auto& row) { return std::string(row.param.name); });

// An action that is not deferred: its data cannot be read.
class LocalPackageProperties : public LocalPackageAction
{
protected:
    LocalPackageProperties()
    {
        StorePackage(kSid);
        installer.Answer(L"MsiGetPropertyW CustomActionData size 0", ERROR_INVALID_HANDLE);
        installer.properties[L"UILOCALE"] = L"fr";
        installer.properties[L"ProductCodeFast"] = L"PACKEDCODE";
    }
};

TEST_F(LocalPackageProperties, AreReadWhenTheDataCannotBe)
{
    EXPECT_EQ(Run(), Arguments(L"fr"));
    const std::vector<std::wstring> expected = {L"MsiGetPropertyW UserSID size 0", L"MsiGetPropertyW UserSID size 51",
        L"MsiGetPropertyW CustomActionData size 0", L"MsiGetPropertyW UILOCALE size 0",
        L"MsiGetPropertyW UILOCALE size 34", L"MsiGetPropertyW ProductCodeFast size 0",
        L"MsiGetPropertyW ProductCodeFast size 42", L"MsiGetPropertyW TRANSFORMS size 0",
        L"MsiGetPropertyW TRANSFORMS size 32"};
    EXPECT_EQ(installer.Calls(), expected);
}

TEST_F(LocalPackageProperties, AreReadWhenTheDataFailsInItsSecondCall)
{
    installer.ForgetAnswers();
    installer.Answer(L"MsiGetPropertyW CustomActionData size 46", ERROR_INVALID_HANDLE);
    EXPECT_EQ(Run(), Arguments(L"fr"));
}

TEST_F(LocalPackageProperties, TellOfTransforms)
{
    installer.properties[L"TRANSFORMS"] = L"a,b.mst";
    EXPECT_EQ(Run(), Arguments(L"fr", kEscapedPath, L"TRANSFORMS"));
}

TEST_F(LocalPackageProperties, AreUsedWholeWhateverCommasTheyHold)
{
    installer.properties[L"UILOCALE"] = L"a,b";
    EXPECT_EQ(Run(), Arguments(L"a,b"));
}

TEST_F(LocalPackageProperties, NeedALocale)
{
    installer.properties[L"UILOCALE"] = L"";
    EXPECT_EQ(Run(), kNoHelper);
}

TEST_F(LocalPackageProperties, NeedAProduct)
{
    // A key that an empty code would lead to.
    StoreText(HKEY_LOCAL_MACHINE, PackageKey(kSystemSid, L"").c_str(), L"LocalPackage", kPath);
    installer.properties[L"ProductCodeFast"] = L"";
    EXPECT_EQ(Run(), kNoHelper);
}

TEST_F(LocalPackageProperties, AreAllNeeded)
{
    for (const wchar_t* const property : {L"UILOCALE", L"ProductCodeFast", L"TRANSFORMS"})
    {
        installer.ForgetAnswers();
        installer.Answer(L"MsiGetPropertyW CustomActionData size 0", ERROR_INVALID_HANDLE);
        installer.Answer(std::wstring(L"MsiGetPropertyW ") + property + L" size 0", ERROR_INVALID_HANDLE);
        EXPECT_EQ(Run(), kNoHelper);
    }
}

// ---- Where the package is.

TEST_F(LocalPackageAction, DoesNothingForAPackageThatIsNotRegistered)
{
    EXPECT_EQ(Run(), kNoHelper);
}

TEST_F(LocalPackageAction, FallsBackToAManagedPackageOfTheUser)
{
    StorePackage(kSid, L"ManagedLocalPackage");
    EXPECT_EQ(Run(), Arguments(L"de"));
}

TEST_F(LocalPackageAction, PrefersTheUsersPlainPackage)
{
    StorePackage(kSid, L"ManagedLocalPackage", L"C:\\managed.msi");
    StorePackage(kSid);
    EXPECT_EQ(Run(), Arguments(L"de"));
}

TEST_F(LocalPackageAction, AnEmptyPackageValueCountsAsNone)
{
    StorePackage(kSid, L"LocalPackage", L"");
    StorePackage(kSid, L"ManagedLocalPackage");
    EXPECT_EQ(Run(), Arguments(L"de"));
}

TEST_F(LocalPackageAction, FallsBackToThePackageOfTheMachine)
{
    StorePackage(kSystemSid);
    EXPECT_EQ(Run(), Arguments(L"de"));
}

TEST_F(LocalPackageAction, FallsBackToTheManagedPackageOfTheMachine)
{
    StorePackage(kSystemSid, L"ManagedLocalPackage");
    EXPECT_EQ(Run(), Arguments(L"de"));
}

TEST_F(LocalPackageAction, PrefersAnyPackageOfTheUserToTheMachines)
{
    StorePackage(kSystemSid, L"LocalPackage", L"C:\\machine.msi");
    StorePackage(kSid, L"ManagedLocalPackage");
    EXPECT_EQ(Run(), Arguments(L"de"));
}

TEST_F(LocalPackageAction, AnEmptyUserMeansTheMachine)
{
    installer.properties[L"UserSID"] = L"";
    StorePackage(kSystemSid);
    EXPECT_EQ(Run(), Arguments(L"de"));
}

TEST_F(LocalPackageAction, EscapesThePath)
{
    StorePackage(kSid, L"LocalPackage", L"C:\\In st\\\x65E5\"x.msi");
    EXPECT_EQ(Run(), Arguments(L"de", L"C:\\\\In st\\\\\\u65E5\\u0022x.msi"));
}

TEST_F(LocalPackageAction, CutsThePathAt259Characters)
{
    for (const size_t length : {259U, 260U, 300U})
    {
        helper.Forget();
        const std::wstring path(length, L'p');
        StorePackage(kSid, L"LocalPackage", path);
        EXPECT_EQ(ARVMUI_MSI_TranslateLocalPackage(StandInInstaller::kSession), 0U);
        ASSERT_EQ(helper.Lines().size(), 1U);
        EXPECT_NE(helper.Lines()[0].find(L"\"" + path.substr(0, 259) + L"\" \"NO"), std::wstring::npos);
    }
}

TEST_F(LocalPackageAction, NoLackOfMemoryLeavesAnythingBehind)
{
    StorePackage(kSid);
    ExpectEachLackOfMemory([] { return ARVMUI_MSI_TranslateLocalPackage(StandInInstaller::kSession); }, ERROR_SUCCESS);
}

TEST_F(LocalPackageAction, FailuresOfTheInstallerAreNeverTold)
{
    StorePackage(kSid);
    ExpectEachFailure([] { return ARVMUI_MSI_TranslateLocalPackage(StandInInstaller::kSession); }, ERROR_INVALID_HANDLE,
        arvmui_test::Always(ERROR_SUCCESS));
}

// ---- The view of the registry, which depends on the kind of process.

struct OpenedKey
{
    std::wstring path;
    REGSAM access;
    bool operator==(const OpenedKey&) const = default;
};

std::vector<OpenedKey> g_opened;
BOOL g_isWow64 = FALSE;
arvmui_test::ImportPatch* g_lookUp = nullptr;

LSTATUS WINAPI OpenKey(HKEY root, LPCWSTR subkey, DWORD options, REGSAM access, PHKEY key)
{
    EXPECT_EQ(root, HKEY_LOCAL_MACHINE);
    g_opened.push_back({subkey, access});
    return ARVMUI_REAL_FUNCTION(L"advapi32.dll", RegOpenKeyExW)(root, subkey, options, KEY_READ, key);
}

BOOL WINAPI TellWow64(HANDLE, PBOOL isWow64)
{
    *isWow64 = g_isWow64;
    return TRUE;
}

FARPROC WINAPI LookUp(HMODULE module, LPCSTR name)
{
    if (std::string(name) == "IsWow64Process") return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&TellWow64));
    return g_lookUp->Original<decltype(&::GetProcAddress)>()(module, name);
}

class LocalPackageView : public LocalPackageAction, public testing::WithParamInterface<bool>
{
protected:
    LocalPackageView()
    {
        g_opened.clear();
        g_lookUp = &lookUp_;
        g_isWow64 = GetParam();
    }

private:
    arvmui_test::ImportPatch open_{::GetModuleHandleW(nullptr), "RegOpenKeyExW", &OpenKey};
    arvmui_test::ImportPatch lookUp_{::GetModuleHandleW(nullptr), "GetProcAddress", &LookUp};
};

TEST_P(LocalPackageView, IsTheSystemsOwn)
{
    EXPECT_EQ(Run(), kNoHelper);
    const REGSAM access = GetParam() ? KEY_READ | KEY_WOW64_64KEY : KEY_READ;
    const OpenedKey user = {PackageKey(kSid), access};
    const OpenedKey machine = {PackageKey(kSystemSid), access};
    EXPECT_EQ(g_opened, (std::vector<OpenedKey>{user, user, machine, machine}));
}

INSTANTIATE_TEST_SUITE_P(Processes, LocalPackageView, testing::Bool(),
    [](const auto& row) { return std::string(row.param ? "Of32Bits" : "Of64Bits"); });

}  // namespace
