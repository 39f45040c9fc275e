// Languages that the registry of the machine holds for an installation.
#include "installer/session/installation_fixture.h"
#include "support/scratch_registry.h"

namespace
{

using arvmui_test::GermanTables;
using arvmui_test::InstallationTest;
using arvmui_test::StoreValue;
using arvmui_test::WithoutStreams;

class RecordedLanguage : public InstallationTest
{
protected:
    ~RecordedLanguage() override { ::RegDeleteKeyExW(HKEY_LOCAL_MACHINE, ProductKey().c_str(), KEY_WOW64_32KEY, 0); }

    std::wstring ProductKey() const { return L"SOFTWARE\\Pelkor\\MUI\\" + package.upgradeCode; }

    void Record(const wchar_t* name, const std::wstring& list) const
    {
        StoreValue(HKEY_LOCAL_MACHINE, ProductKey().c_str(), name, REG_SZ, list.c_str(),
            static_cast<DWORD>((list.size() + 1) * sizeof(wchar_t)), KEY_WOW64_32KEY);
    }
};

TEST_F(RecordedLanguage, OfTheUpgradeCodeIsSpokenAgain)
{
    Record(L"InstallUILocale", L"de");
    ASSERT_EQ(Install(L"/qn"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Report(L"execution").properties.at(L"UILOCALE"), L"de");
    EXPECT_EQ(WithoutStreams(Report(L"execution").tables), WithoutStreams(GermanTables()));
}

TEST_F(RecordedLanguage, OfTheUpgradeCodeGivesWayToTheCommandLine)
{
    Record(L"InstallUILocale", L"de");
    ASSERT_EQ(Install(L"/qn UILOCALE=zh-CN"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Report(L"execution").properties.at(L"UILOCALE"), L"zh-CN");
}

TEST_F(RecordedLanguage, AtALocationOfThePackageIsSpoken)
{
    Record(L"OtherValue", L"de");
    package.tables.Add(L"Property", {{L"ArvInstallUILocaleRegs", L"HKLM\\" + ProductKey() + L"\\OtherValue"}});
    ASSERT_EQ(Install(L"/qn"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Report(L"execution").properties.at(L"UILOCALE"), L"de");
}

TEST_F(RecordedLanguage, OfTheUpgradeCodeGoesBeforeThatOfALocation)
{
    Record(L"InstallUILocale", L"zh-CN");
    Record(L"OtherValue", L"de");
    package.tables.Add(L"Property", {{L"ArvInstallUILocaleRegs", L"HKLM\\" + ProductKey() + L"\\OtherValue"}});
    ASSERT_EQ(Install(L"/qn"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Report(L"execution").properties.at(L"UILOCALE"), L"zh-CN");
}

}  // namespace
