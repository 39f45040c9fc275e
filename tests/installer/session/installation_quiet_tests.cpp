// Installations without a user interface.
#include "installer/session/installation_fixture.h"

namespace
{

using arvmui_test::ChineseTables;
using arvmui_test::EnglishTables;
using arvmui_test::GermanTables;
using arvmui_test::InstallationTest;
using arvmui_test::kLocaleColumns;
using arvmui_test::SessionReport;
using arvmui_test::WithoutStreams;

using QuietInstallation = InstallationTest;

TEST_F(QuietInstallation, SpeaksTheLanguageOfItsCommandLine)
{
    ASSERT_EQ(Install(L"/qn UILOCALE=de"), DWORD{ERROR_SUCCESS});
    const SessionReport report = Report(L"execution");
    EXPECT_EQ(WithoutStreams(report.tables), WithoutStreams(GermanTables()));
    EXPECT_EQ(report.properties.at(L"UILOCALE"), L"de");
    EXPECT_EQ(report.properties.at(L"GREETING"), L"Guten Tag");
    EXPECT_EQ(report.properties.at(L"ONLYGERMAN"), L"Zusatz");
}

TEST_F(QuietInstallation, SpeaksALanguageWhoseTagHasAHyphen)
{
    ASSERT_EQ(Install(L"/qn UILOCALE=zh-CN"), DWORD{ERROR_SUCCESS});
    const SessionReport report = Report(L"execution");
    EXPECT_EQ(WithoutStreams(report.tables), WithoutStreams(ChineseTables()));
    EXPECT_EQ(report.properties.at(L"UILOCALE"), L"zh-CN");
    EXPECT_EQ(report.properties.at(L"GREETING"), L"\u4F60\u597D");
}

TEST_F(QuietInstallation, SpeaksEnglishAsThePackageDoes)
{
    ASSERT_EQ(Install(L"/qn UILOCALE=en"), DWORD{ERROR_SUCCESS});
    const SessionReport report = Report(L"execution");
    EXPECT_EQ(report.tables, EnglishTables());
    EXPECT_EQ(report.properties.at(L"UILOCALE"), L"en");
    EXPECT_EQ(report.properties.at(L"GREETING"), L"Hello");
}

TEST_F(QuietInstallation, KeepsAPropertyOfItsCommandLine)
{
    ASSERT_EQ(Install(L"/qn UILOCALE=de GREETING=\"Good morning\""), DWORD{ERROR_SUCCESS});
    const SessionReport report = Report(L"execution");
    EXPECT_EQ(report.properties.at(L"GREETING"), L"Good morning");
    EXPECT_EQ(report.properties.at(L"FAREWELL"), L"Auf Wiedersehen");
}

// No dialog asks, and no language of the machine matters: the package has the last of the default list.
TEST_F(QuietInstallation, FindsItsLanguageByItself)
{
    package.tables.Remove(L"ARVUILocale")
        .Add({L"ARVUILocale", kLocaleColumns, {{L"ja", 1041, L"Japanese", L"Japanese", 1}}});
    ASSERT_EQ(Install(L"/qn"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Report(L"execution").properties.at(L"UILOCALE"), L"ja");
}

TEST_F(QuietInstallation, FailsInALanguageThatThePackageLacks)
{
    package.tables.Remove(L"ARVUILocale")
        .Add({L"ARVUILocale", kLocaleColumns, {{L"de", 1031, L"German", L"Deutsch", 1}}});
    EXPECT_EQ(Install(L"/qn UILOCALE=fr"), DWORD{ERROR_INSTALL_FAILURE});
    EXPECT_FALSE(HasReport(L"execution"));
}

TEST_F(QuietInstallation, FailsWithoutEnglishProperties)
{
    package.tables.Remove(L"Property_en");
    EXPECT_EQ(Install(L"/qn UILOCALE=de"), DWORD{ERROR_INSTALL_FAILURE});
    EXPECT_FALSE(HasReport(L"execution"));
}

}  // namespace
