// The choice of dialog fonts in sessions of the system's installer.
#include "arvmui.h"
#include "support/msi_database.h"
#include "support/msi_package.h"
#include "support/scratch_registry.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace
{

using arvmui_test::SessionProperty;
using arvmui_test::StoreText;

constexpr wchar_t kDialogFont[] = L"DEFAULTCSFONT.5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17";
constexpr wchar_t kInterfaceFont[] = L"DEFAULTUIFONT.5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17";
constexpr wchar_t kFontSubstitutes[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\FontSubstitutes";
constexpr wchar_t kStyleColumns[] =
    L"`TextStyle` CHAR(72) NOT NULL, `FaceName` CHAR(32) NOT NULL, `Size` SHORT NOT NULL, `Color` LONG, "
    L"`StyleBits` SHORT PRIMARY KEY `TextStyle`";

class DialogFontSession : public testing::Test
{
protected:
    DialogFontSession()
    {
        auto package =
            arvmui_test::InstallablePackage(L"Arvmui Fonts", arvmui_test::NewMsiCode(), arvmui_test::NewMsiCode());
        package.Add({L"TextStyle", kStyleColumns,
            {{L"Normal", L"Tahoma", 8, {}, {}}, {L"Bold", L"Verdana", 8, {}, 1}, {L"It's", L"Quoted", 8, {}, {}}}});
        package.Add(L"Property", {{L"DefaultUIFont", L"Bold"}});
        package.Write(folder_.Path() / L"fonts.msi");
        session_ = arvmui_test::OpenMsiSession(folder_.Path() / L"fonts.msi");
        EXPECT_TRUE(registry_.ReplaceRoot(HKEY_LOCAL_MACHINE));
    }

    void Set(const wchar_t* property, const wchar_t* value) const
    {
        EXPECT_EQ(::MsiSetPropertyW(session_.Get(), property, value), static_cast<UINT>(ERROR_SUCCESS));
    }
    std::wstring Get(const wchar_t* property) const { return SessionProperty(session_.Get(), property); }
    UINT Run() const { return ARVMUI_MSI_SetDefaultCSFont(session_.Get()); }

private:
    arvmui_test::TemporaryFolder folder_;
    arvmui_test::MsiHandle session_;
    arvmui_test::ScratchRegistry registry_;
};

TEST_F(DialogFontSession, TakesTheFaceOfTheDefaultStyle)
{
    Set(kDialogFont, L"Some Face");
    EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(Get(kDialogFont), L"Some Face");
    EXPECT_EQ(Get(kInterfaceFont), L"Verdana");
}

TEST_F(DialogFontSession, TakesTheMachinesSubstitute)
{
    StoreText(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Pelkor\\MUI", L"InstalledFontSubstitute", L"Machine Face");
    EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(Get(kDialogFont), L"Machine Face");
    EXPECT_EQ(Get(kInterfaceFont), L"Verdana");
}

TEST_F(DialogFontSession, SwitchedOffLeavesTheStylesAlone)
{
    Set(kDialogFont, L"OFF");
    EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(Get(kDialogFont), L"none");
    EXPECT_EQ(Get(kInterfaceFont), L"");
}

TEST_F(DialogFontSession, KeepsAPresetInterfaceFont)
{
    Set(kDialogFont, L"Some Face");
    Set(kInterfaceFont, L"No such face");
    EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(Get(kInterfaceFont), L"No such face");
}

TEST_F(DialogFontSession, AStyleThatThePackageLacksIsTheDialogsFont)
{
    Set(kDialogFont, L"Some Face");
    StoreText(HKEY_LOCAL_MACHINE, kFontSubstitutes, L"MS Shell Dlg", L"Shell Face");
    for (const wchar_t* const style : {L"Missing", L"bold", L"It's", L""})
    {
        Set(kInterfaceFont, L"");
        Set(L"DefaultUIFont", style);
        EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
        EXPECT_EQ(Get(kInterfaceFont), L"Shell Face");
    }
}

TEST_F(DialogFontSession, EndsWithArial)
{
    Set(kDialogFont, L"Some Face");
    Set(L"DefaultUIFont", L"");
    EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(Get(kInterfaceFont), L"Arial");
}

TEST_F(DialogFontSession, FailsWithTheInstallersErrorWithoutASession)
{
    EXPECT_EQ(ARVMUI_MSI_SetDefaultCSFont(0xFFFFFF), static_cast<UINT>(ERROR_INVALID_HANDLE));
}

}  // namespace
