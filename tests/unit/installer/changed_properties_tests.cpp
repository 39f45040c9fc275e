// Which properties of a session count as changed.
#include "installer/changed_properties.h"

#include "unit/installer/installer_fixture.h"

#include <optional>
#include <utility>

namespace
{

using arvmui::ChangedPropertySet;
using arvmui_test::InstallerRow;
using arvmui_test::InstallerTest;
using arvmui_test::StandInInstaller;

constexpr wchar_t kEnglishQuery[] = L"SELECT * FROM `Property_en`";

class ChangedProperties : public InstallerTest
{
protected:
    UINT Read() { return changed_->Read(StandInInstaller::kSession, database); }

    void Provide(std::vector<InstallerRow> rows) { installer.rows[kEnglishQuery] = std::move(rows); }

    void TearDown() override
    {
        changed_.reset();
        InstallerTest::TearDown();
    }

    std::optional<ChangedPropertySet> changed_{std::in_place};
};

TEST_F(ChangedProperties, AreThoseThatDifferFromTheirEnglishValue)
{
    Provide({{L"Title", L"Setup"}, {L"Folder", L"Program"}, {L"Button", L"&Next"}});
    installer.properties = {{L"Title", L"Setup"}, {L"Folder", L"Other"}, {L"Button", L"&Next"}};
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_FALSE(changed_->Contains(L"Title"));
    EXPECT_TRUE(changed_->Contains(L"Folder"));
    EXPECT_FALSE(changed_->Contains(L"Button"));
}

TEST_F(ChangedProperties, AreReadFromOneQuery)
{
    Provide({{L"Title", L"Setup"}});
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements(), std::vector<std::wstring>{kEnglishQuery});
    EXPECT_EQ(installer.CallsOf(L"MsiGetPropertyW").front(), L"MsiGetPropertyW Title size 0");
}

TEST_F(ChangedProperties, IncludeThoseThatDifferInCaseOnly)
{
    Provide({{L"Title", L"Setup"}});
    installer.properties = {{L"Title", L"setup"}};
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_TRUE(changed_->Contains(L"Title"));
}

TEST_F(ChangedProperties, IncludeThoseThatAreUnset)
{
    Provide({{L"Title", L"Setup"}, {L"Empty", L""}});
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_TRUE(changed_->Contains(L"Title"));
    EXPECT_FALSE(changed_->Contains(L"Empty"));
}

TEST_F(ChangedProperties, AreNamedExactly)
{
    Provide({{L"Title", L"Setup"}});
    installer.properties = {{L"Title", L"Other"}};
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_FALSE(changed_->Contains(L"TITLE"));
    EXPECT_FALSE(changed_->Contains(L"Titl"));
    EXPECT_FALSE(changed_->Contains(L"Title1"));
    EXPECT_FALSE(changed_->Contains(L""));
}

TEST_F(ChangedProperties, OfAPackageWithoutPropertiesAreNone)
{
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    EXPECT_FALSE(changed_->Contains(L"Title"));
}

// In an order that is none, so that names are inserted everywhere; every other one is unchanged.
TEST_F(ChangedProperties, AreAllFoundAmongMany)
{
    constexpr int kCount = 997;  // a prime, so that the steps reach every number
    std::vector<InstallerRow> rows;
    for (int i = 0; i < kCount; ++i)
    {
        const int number = i * 331 % kCount;
        const std::wstring name = L"Property" + std::to_wstring(number);
        rows.push_back({name, L"English"});
        installer.properties[name] = number % 2 != 0 ? L"Changed" : L"English";
    }
    Provide(rows);
    ASSERT_EQ(Read(), ERROR_SUCCESS);
    for (int number = 0; number < kCount; ++number)
        EXPECT_EQ(changed_->Contains((L"Property" + std::to_wstring(number)).c_str()), number % 2 != 0) << number;
}

TEST_F(ChangedProperties, NeedTheEnglishTable)
{
    installer.Answer(L"MsiDatabaseOpenViewW SELECT * FROM `Property_en`", ERROR_BAD_QUERY_SYNTAX);
    EXPECT_EQ(Read(), UINT{ERROR_BAD_QUERY_SYNTAX});
}

// ---- Failures -------------------------------------------------------------------------------------------

class FailingChangedProperties : public InstallerTest
{
protected:
    FailingChangedProperties()
    {
        installer.rows[kEnglishQuery] = {{L"Title", L"Setup"}, {L"Folder", L"Program"}, {L"Button", L"&Next"}};
        installer.properties = {{L"Title", L"Setup"}, {L"Folder", L"Other"}, {L"Button", L"Later"}};
    }

    UINT Read()
    {
        ChangedPropertySet changed;
        return changed.Read(StandInInstaller::kSession, database);
    }
};

TEST_F(FailingChangedProperties, HaveTheErrorOfTheFailingStep)
{
    ExpectEachFailure([this] { return Read(); }, ERROR_ACCESS_DENIED, arvmui_test::Always(ERROR_ACCESS_DENIED));
}

TEST_F(FailingChangedProperties, FailWithoutMemory)
{
    ExpectEachLackOfMemory([this] { return Read(); }, ERROR_FUNCTION_FAILED);
}

}  // namespace
