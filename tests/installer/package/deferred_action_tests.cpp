// The action that has the cached package translated, in a session of this process: it finds the
// package in the registry, starts the helper and comes back when the package is translated.
#include "arvmui.h"
#include "installer/package/translation_package.h"
#include "support/scratch_registry.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace
{

using arvmui_test::BytesOf;
using arvmui_test::ContentsIn;
using arvmui_test::LanguageOf;
using arvmui_test::OpenMsiDatabase;
using arvmui_test::ReadContents;

constexpr wchar_t kUser[] = L"S-1-5-21-0-0-0-4711";
constexpr wchar_t kMachine[] = L"S-1-5-18";

class DeferredAction : public testing::Test
{
protected:
    DeferredAction()
    {
        auto package = arvmui_test::TranslationPackage(L"Arvmui Deferred");
        package.Write(file);
        package.Write(folder_.Path() / L"session.msi");
        session_ = arvmui_test::OpenMsiSession(folder_.Path() / L"session.msi");
        bytes = BytesOf(file);
        EXPECT_TRUE(registry_.ReplaceRoot(HKEY_LOCAL_MACHINE));
        Set(L"UserSID", kUser);
    }

    void Set(const wchar_t* property, const std::wstring& value) const
    {
        EXPECT_EQ(::MsiSetPropertyW(session_.Get(), property, value.c_str()), static_cast<UINT>(ERROR_SUCCESS));
    }
    void Register(const std::wstring& sid, const wchar_t* value = L"LocalPackage") const
    {
        const std::wstring key = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\" + sid
                                 + L"\\Products\\PACKED\\InstallProperties";
        arvmui_test::StoreText(HKEY_LOCAL_MACHINE, key.c_str(), value, file.wstring());
    }
    void Run() const { EXPECT_EQ(ARVMUI_MSI_TranslateLocalPackage(session_.Get()), 0U); }

    bool IsUnchanged() const { return BytesOf(file) == bytes; }
    size_t CountFontActions() const
    {
        const std::wstring id = L".5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17'";
        return arvmui_test::ReadMsiRows(OpenMsiDatabase(file).Get(),
            L"SELECT `Action` FROM `InstallExecuteSequence` WHERE `Action`='ARV_MUI_StartFontResetter" + id
                + L" OR `Action`='ARV_MUI_StopFontResetter" + id)
            .size();
    }

private:
    arvmui_test::TemporaryFolder folder_;
    arvmui_test::MsiHandle session_;
    arvmui_test::ScratchRegistry registry_;

protected:
    std::filesystem::path file = folder_.Path() / L"cached package.msi";
    std::string bytes;
};

TEST_F(DeferredAction, HasThePackageOfTheUserTranslatedWhenItComesBack)
{
    Register(kUser);
    Set(L"CustomActionData", L"de,PACKED,");
    Run();
    EXPECT_EQ(ReadContents(OpenMsiDatabase(file).Get()), ContentsIn(LanguageOf(L"de")));
    EXPECT_EQ(CountFontActions(), 0U);
}

TEST_F(DeferredAction, KeepsTheFontActionsWithTransforms)
{
    Register(kUser);
    Set(L"CustomActionData", L"fr,PACKED,one.mst,two.mst");
    Run();
    EXPECT_EQ(ReadContents(OpenMsiDatabase(file).Get()), ContentsIn(LanguageOf(L"fr")));
    EXPECT_EQ(CountFontActions(), 2U);
}

TEST_F(DeferredAction, FindsThePackageOfTheMachine)
{
    Register(kMachine);
    Set(L"CustomActionData", L"ja,PACKED,");
    Run();
    EXPECT_EQ(ReadContents(OpenMsiDatabase(file).Get()), ContentsIn(LanguageOf(L"ja")));
}

TEST_F(DeferredAction, FindsAManagedPackageOfTheMachineForNoUser)
{
    Register(kMachine, L"ManagedLocalPackage");
    Set(L"UserSID", L"");
    Set(L"CustomActionData", L"zh-CN,PACKED,");
    Run();
    EXPECT_EQ(ReadContents(OpenMsiDatabase(file).Get()), ContentsIn(LanguageOf(L"zh-CN")));
}

TEST_F(DeferredAction, DoesNothingWithoutASecondComma)
{
    Register(kUser);
    Set(L"CustomActionData", L"de,PACKED");
    Run();
    EXPECT_TRUE(IsUnchanged());
}

TEST_F(DeferredAction, DoesNothingForAPackageThatIsNotRegistered)
{
    Set(L"CustomActionData", L"de,PACKED,");
    Run();
    EXPECT_TRUE(IsUnchanged());
}

TEST_F(DeferredAction, LeavesThePackageForALocaleThatItLacks)
{
    Register(kUser);
    Set(L"CustomActionData", L"es,PACKED,");
    Run();
    EXPECT_TRUE(IsUnchanged());
}

TEST_F(DeferredAction, DoesNothingWithoutASession)
{
    Register(kUser);
    EXPECT_EQ(ARVMUI_MSI_TranslateLocalPackage(0), 0U);
    EXPECT_EQ(ARVMUI_MSI_TranslateLocalPackage(0xFFFFFF), 0U);
    EXPECT_TRUE(IsUnchanged());
}

}  // namespace
