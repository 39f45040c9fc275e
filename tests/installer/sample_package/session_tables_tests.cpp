// What the library makes of the package's tables in a session, without installing anything.

#include "installer/sample_package/sample_package.h"
#include "support/temporary_folder.h"

#include <arvmui.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>

using namespace arvmui_test;

namespace
{

std::string FileBytes(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A session whose language is forced, on a copy of the package.
class Session
{
public:
    explicit Session(const std::wstring& locale)
        : package_(folder_.CopyIn(SamplePackagePath(), L"phrasebook.msi")), session_(OpenMsiSession(package_))
    {
        ::MsiSetPropertyW(session_.Get(), L"UILOCALE", locale.c_str());
        result_ = ARVMUI_MSI_SetLocale(session_.Get());
    }

    UINT Result() const { return result_; }
    const std::filesystem::path& Package() const { return package_; }
    std::wstring Property(const std::wstring& name) const { return SessionProperty(session_.Get(), name); }
    MSIHANDLE Handle() const { return session_.Get(); }

    // The rows of a table by their keys.
    std::map<std::wstring, PackageRow> Rows(const PackageTable& table) const
    {
        const MsiHandle database = ActiveDatabase(session_.Get());
        std::map<std::wstring, PackageRow> rows;
        for (const auto& fields : ReadMsiRows(database.Get(), L"SELECT * FROM `" + table.name + L"`"))
        {
            PackageRow row;
            for (size_t i = 0; i < fields.size(); ++i) row[table.columns[i]] = fields[i];
            rows[table.KeyOf(row)] = row;
        }
        return rows;
    }

private:
    TemporaryFolder folder_;
    std::filesystem::path package_;
    MsiHandle session_;
    UINT result_ = ERROR_SUCCESS;
};

std::map<std::wstring, PackageRow> RowsByKey(const PackageTable& table)
{
    std::map<std::wstring, PackageRow> rows;
    for (const PackageRow& row : table.rows) rows[table.KeyOf(row)] = row;
    return rows;
}

}  // namespace

class SamplePackageSession : public testing::TestWithParam<const wchar_t*>
{
};

TEST_P(SamplePackageSession, EveryTableSpeaksTheLanguage)
{
    const Session session(GetParam());
    ASSERT_EQ(session.Result(), static_cast<UINT>(ERROR_SUCCESS));
    const PackageLocale& locale = Sample().Locale(GetParam());
    for (const PackageTable& table : Sample().Tables())
    {
        // Properties are set in the session; their table stays.
        if (Sample().BaseOf(table) || table.name == L"Property") continue;
        EXPECT_EQ(session.Rows(table), RowsByKey(Sample().Localized(table.name, locale))) << Narrow(table.name);
    }
}

TEST_P(SamplePackageSession, PropertiesSpeakTheLanguage)
{
    const Session session(GetParam());
    const PackageLocale& locale = Sample().Locale(GetParam());
    for (const PackageRow& row : Sample().Table(L"Property_en").rows)
    {
        const std::wstring& name = row.at(L"Property");
        EXPECT_EQ(session.Property(name), Sample().Property(name, locale)) << Narrow(name);
    }
    EXPECT_EQ(session.Property(L"UILOCALE"), GetParam());
}

TEST_P(SamplePackageSession, PackageFileStaysAsItIs)
{
    const Session session(GetParam());
    ASSERT_EQ(session.Result(), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(FileBytes(session.Package()), FileBytes(SamplePackagePath()));
}

TEST_P(SamplePackageSession, DefaultFontIsTheLanguagesOwn)
{
    const wchar_t* const identifier = L".5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17";
    const Session session(GetParam());
    ::MsiSetPropertyW(session.Handle(), (std::wstring(L"DEFAULTCSFONT") + identifier).c_str(), L"Some Substitute");
    ASSERT_EQ(ARVMUI_MSI_SetDefaultCSFont(session.Handle()), static_cast<UINT>(ERROR_SUCCESS));
    const PackageTable styles = Sample().Localized(L"TextStyle", Sample().Locale(GetParam()));
    EXPECT_EQ(session.Property(std::wstring(L"DEFAULTUIFONT") + identifier), styles.FindRow(L"Body")->at(L"FaceName"));
}

INSTANTIATE_TEST_SUITE_P(Locales, SamplePackageSession, testing::Values(L"en", L"de", L"fr", L"ja", L"zh-CN"),
    [](const auto& parameter)
    {
        std::string name = Narrow(parameter.param);
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });

TEST(SamplePackageSessions, AFurtherLanguageOfTheListIsTakenWhenTheFirstIsNotThere)
{
    const Session session(L"pt-BR,ja-JP");
    EXPECT_EQ(session.Result(), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(session.Property(L"UILOCALE"), L"ja");
}

TEST(SamplePackageSessions, RepeatingTheActionChangesNothing)
{
    const Session session(L"zh-CN");
    const PackageTable& controls = Sample().Table(L"Control");
    const auto before = session.Rows(controls);
    ASSERT_EQ(ARVMUI_MSI_SetLocale(session.Handle()), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(session.Rows(controls), before);
}
