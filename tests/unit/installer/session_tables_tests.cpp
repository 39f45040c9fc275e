// The walk over a session's tables.
#include "installer/session_tables.h"

#include "unit/installer/installer_fixture.h"

namespace
{

using arvmui::TranslateSessionTables;
using arvmui_test::Always;
using arvmui_test::InstallerTest;
using arvmui_test::StandInInstaller;
using Texts = std::vector<std::wstring>;

constexpr wchar_t kTables[] = L"SELECT `Name` FROM `_Tables`";

LocaleEntry EntryOf(const std::wstring& locale)
{
    LocaleEntry entry = {};
    locale.copy(entry.Locale, ARVMUI_TAG_CHARS - 1);
    entry.LocaleLength = static_cast<DWORD>(locale.size());
    return entry;
}

class SessionTables : public InstallerTest
{
protected:
    UINT Translate(const std::wstring& locale = L"de")
    {
        return TranslateSessionTables(StandInInstaller::kSession, database, EntryOf(locale));
    }

    void ProvideTables(const Texts& names)
    {
        for (const std::wstring& name : names) installer.rows[kTables].push_back({name});
    }

    // The statements behind the walk's own, of which each merged table has four.
    Texts StatementsOfTables() const
    {
        Texts statements = installer.Statements();
        statements.erase(statements.begin(), statements.begin() + 2);
        return statements;
    }
};

Texts StatementsFor(const Texts& bases, const std::wstring& suffix)
{
    Texts statements;
    for (const std::wstring& base : bases)
    {
        const std::wstring baseQuery = L"SELECT * FROM `" + base + L"`";
        const std::wstring localizedQuery = L"SELECT * FROM `" + base + L"_" + suffix + L"`";
        for (const std::wstring& statement : {localizedQuery, baseQuery, baseQuery, localizedQuery})
            statements.push_back(statement);
    }
    return statements;
}

TEST_F(SessionTables, BeginWithTheStreams)
{
    ProvideTables({L"Binary", L"Binary_de", L"Control", L"Control_de"});
    EXPECT_EQ(Translate(), ERROR_SUCCESS);
    const Texts statements = installer.Statements();
    EXPECT_EQ(statements[0], L"SELECT * FROM `Binary_de`");
    EXPECT_EQ(statements[1], kTables);
}

TEST_F(SessionTables, MergeTheStreamsOnce)
{
    ProvideTables({L"Binary_de", L"Control_de"});
    EXPECT_EQ(Translate(), ERROR_SUCCESS);
    EXPECT_EQ(StatementsOfTables(), StatementsFor({L"Control"}, L"de"));
}

TEST_F(SessionTables, TakeTheLocalizedTablesInTheirOrder)
{
    ProvideTables({L"UIText_de", L"Control", L"Control_fr", L"Control_de", L"de", L"_de", L"ActionText_de",
        L"ActionText_de_x", L"TextStylede"});
    EXPECT_EQ(Translate(), ERROR_SUCCESS);
    EXPECT_EQ(StatementsOfTables(), StatementsFor({L"UIText", L"Control", L"ActionText"}, L"de"));
}

TEST_F(SessionTables, HaveTheLocaleInItsTableForm)
{
    ProvideTables({L"Control_zh_CN", L"Control_zh-CN", L"Control_zh", L"Control_CN"});
    EXPECT_EQ(Translate(L"zh-CN"), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements().front(), L"SELECT * FROM `Binary_zh_CN`");
    EXPECT_EQ(StatementsOfTables(), StatementsFor({L"Control"}, L"zh_CN"));
}

// The statements have the package's locale, whatever the spelling of the table.
TEST_F(SessionTables, FindSuffixesOfAnyCase)
{
    ProvideTables({L"Control_ZH_cn"});
    EXPECT_EQ(Translate(L"zh-CN"), ERROR_SUCCESS);
    EXPECT_EQ(StatementsOfTables(), StatementsFor({L"Control"}, L"zh_CN"));
}

TEST_F(SessionTables, WithSeveralUnderscoresAreCutAtTheLocale)
{
    ProvideTables({L"My_Own_Table_de"});
    EXPECT_EQ(Translate(), ERROR_SUCCESS);
    EXPECT_EQ(StatementsOfTables(), StatementsFor({L"My_Own_Table"}, L"de"));
}

// Only the installer's own table of streams has been merged before.
TEST_F(SessionTables, NamedLikeTheStreamsInOtherCaseAreMergedAsOthers)
{
    ProvideTables({L"BINARY_de", L"binary_de"});
    EXPECT_EQ(Translate(), ERROR_SUCCESS);
    EXPECT_EQ(StatementsOfTables(), StatementsFor({L"BINARY", L"binary"}, L"de"));
}

TEST_F(SessionTables, IncludeTheProperties)
{
    ProvideTables({L"Property_de"});
    installer.rows[L"SELECT * FROM `Property_de`"] = {{L"Title", L"Installation"}};
    EXPECT_EQ(Translate(), ERROR_SUCCESS);
    EXPECT_EQ(StatementsOfTables(), (Texts{L"SELECT * FROM `Property_en`", L"SELECT * FROM `Property_de`"}));
    EXPECT_EQ(installer.properties[L"Title"], L"Installation");
}

TEST_F(SessionTables, LengthOfTheSuffixIsTheEntrys)
{
    ProvideTables({L"Control_de", L"Control_d"});
    LocaleEntry entry = EntryOf(L"de");
    entry.LocaleLength = 1;
    EXPECT_EQ(TranslateSessionTables(StandInInstaller::kSession, database, entry), ERROR_SUCCESS);
    EXPECT_EQ(StatementsOfTables(), StatementsFor({L"Control"}, L"de"));
}

// ---- Results --------------------------------------------------------------------------------------------

TEST_F(SessionTables, NeedNoLocalizedStreams)
{
    installer.Answer(L"MsiDatabaseOpenViewW SELECT * FROM `Binary_de`", ERROR_BAD_QUERY_SYNTAX);
    ProvideTables({L"Control_de"});
    EXPECT_EQ(Translate(), ERROR_SUCCESS);
    EXPECT_EQ(StatementsOfTables(), StatementsFor({L"Control"}, L"de"));
}

TEST_F(SessionTables, GoOnBehindStreamsThatCannotBeMerged)
{
    installer.rows[L"SELECT * FROM `Binary_de`"] = {{L"Banner", L"stream"}};
    installer.Answer(
        L"MsiViewModify 7 Banner|stream into SELECT * FROM `Binary` WHERE `Name`='Banner'", ERROR_FUNCTION_FAILED);
    EXPECT_EQ(Translate(), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements().back(), kTables);
}

TEST_F(SessionTables, StopAtATableThatCannotBeMerged)
{
    ProvideTables({L"ActionText_de", L"Control_de", L"UIText_de"});
    installer.Answer(L"MsiDatabaseOpenViewW SELECT * FROM `Control`", ERROR_BAD_QUERY_SYNTAX);
    EXPECT_EQ(Translate(), UINT{ERROR_BAD_QUERY_SYNTAX});
    EXPECT_EQ(installer.Statements().back(), L"SELECT * FROM `Control`");
}

TEST_F(SessionTables, HaveTheErrorOfTheFailingStepUnlessItIsTheStreams)
{
    ProvideTables({L"Control_de", L"Property_de", L"Feature"});
    installer.rows[L"SELECT * FROM `Binary_de`"] = {{L"Banner", L"German banner"}};
    installer.rows[L"SELECT * FROM `Binary` WHERE `Name`='Banner'"] = {{L"Banner", L"English banner"}};
    installer.rows[L"SELECT * FROM `Control`"] = {{L"Next", L"&Next"}};
    installer.rows[L"SELECT * FROM `Control_de`"] = {{L"Next", L"&Weiter"}};
    installer.rows[L"SELECT * FROM `Property_en`"] = {{L"Title", L"Setup"}};
    installer.rows[L"SELECT * FROM `Property_de`"] = {{L"Title", L"Installation"}};
    installer.properties = {{L"Title", L"Setup"}};
    ExpectEachFailure([this] { return Translate(); }, ERROR_ACCESS_DENIED,
        [](const std::wstring& call)
        {
            const bool isStreams =
                call.find(L"anner") != std::wstring::npos || call.find(L"FROM `Binary") != std::wstring::npos;
            return isStreams ? UINT{ERROR_SUCCESS} : UINT{ERROR_ACCESS_DENIED};
        });
}

}  // namespace
