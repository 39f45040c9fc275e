// The merging of one localized table into its base table, call by call.
#include "installer/session_tables.h"

#include "unit/installer/installer_fixture.h"

namespace
{

using arvmui::MergeLocalizedTable;
using arvmui_test::Always;
using arvmui_test::InstallerTest;
using arvmui_test::StandInInstaller;
using Texts = std::vector<std::wstring>;

class MergeTable : public InstallerTest
{
protected:
    UINT Merge(const wchar_t* base, const wchar_t* suffix = L"de")
    {
        return MergeLocalizedTable(StandInInstaller::kSession, database, base, suffix);
    }

    // The calls that change something, and the statements, in their order.
    Texts Work() const
    {
        Texts work;
        for (const std::wstring& call : installer.Calls())
        {
            const std::wstring function = call.substr(0, call.find(L' '));
            if (function == L"MsiDatabaseOpenViewW") work.push_back(call.substr(function.size() + 1));
            if (function == L"MsiViewModify" || function == L"MsiSetPropertyW") work.push_back(call);
        }
        return work;
    }
};

// ---- Properties -----------------------------------------------------------------------------------------

class MergeProperties : public MergeTable
{
protected:
    MergeProperties()
    {
        installer.rows[L"SELECT * FROM `Property_en`"] = {{L"Title", L"Setup"}, {L"Folder", L"Program"}};
        installer.rows[L"SELECT * FROM `Property_de`"] = {
            {L"Folder", L"Programm"}, {L"New", L"Neu"}, {L"Title", L"Installation"}};
        installer.properties = {{L"Title", L"Setup"}, {L"Folder", L"Program"}};
    }
};

TEST_F(MergeProperties, SetsThemInTheSession)
{
    EXPECT_EQ(Merge(L"Property"), ERROR_SUCCESS);
    EXPECT_EQ(Work(), (Texts{
                          L"SELECT * FROM `Property_en`",
                          L"SELECT * FROM `Property_de`",
                          L"MsiSetPropertyW Folder=Programm",
                          L"MsiSetPropertyW New=Neu",
                          L"MsiSetPropertyW Title=Installation",
                      }));
}

TEST_F(MergeProperties, KeepsWhatHasBeenChanged)
{
    installer.properties[L"Folder"] = L"D:\\Mine";
    EXPECT_EQ(Merge(L"Property"), ERROR_SUCCESS);
    EXPECT_EQ(installer.CallsOf(L"MsiSetPropertyW"),
        (Texts{L"MsiSetPropertyW New=Neu", L"MsiSetPropertyW Title=Installation"}));
}

// All values are compared before the first one is set: a localized property may stand twice.
TEST_F(MergeProperties, ComparesWithTheSessionAsItWas)
{
    installer.rows[L"SELECT * FROM `Property_de`"] = {{L"Title", L"Eins"}, {L"Title", L"Zwei"}};
    EXPECT_EQ(Merge(L"Property"), ERROR_SUCCESS);
    EXPECT_EQ(installer.properties[L"Title"], L"Zwei");
}

TEST_F(MergeProperties, SetsAnEmptyValue)
{
    installer.rows[L"SELECT * FROM `Property_de`"] = {{L"Title", L""}};
    EXPECT_EQ(Merge(L"Property"), ERROR_SUCCESS);
    EXPECT_EQ(installer.CallsOf(L"MsiSetPropertyW"), Texts{L"MsiSetPropertyW Title="});
}

TEST_F(MergeProperties, ReadsTheTableOfTheSuffix)
{
    EXPECT_EQ(Merge(L"Property", L"zh_CN"), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements(), (Texts{L"SELECT * FROM `Property_en`", L"SELECT * FROM `Property_zh_CN`"}));
}

TEST_F(MergeProperties, NeedsTheEnglishOnes)
{
    installer.Answer(L"MsiDatabaseOpenViewW SELECT * FROM `Property_en`", ERROR_BAD_QUERY_SYNTAX);
    EXPECT_EQ(Merge(L"Property"), UINT{ERROR_BAD_QUERY_SYNTAX});
    EXPECT_EQ(installer.Statements().size(), 1U);
}

TEST_F(MergeProperties, StopsAtAPropertyThatCannotBeSet)
{
    installer.Answer(L"MsiSetPropertyW New=Neu", ERROR_ACCESS_DENIED);
    EXPECT_EQ(Merge(L"Property"), UINT{ERROR_ACCESS_DENIED});
    EXPECT_EQ(
        installer.CallsOf(L"MsiSetPropertyW"), (Texts{L"MsiSetPropertyW Folder=Programm", L"MsiSetPropertyW New=Neu"}));
}

TEST_F(MergeProperties, HasTheErrorOfTheFailingStep)
{
    ExpectEachFailure([this] { return Merge(L"Property"); }, ERROR_ACCESS_DENIED, Always(ERROR_ACCESS_DENIED));
}

TEST_F(MergeProperties, FailsWithoutMemory)
{
    const auto before = installer.properties;
    ExpectEachLackOfMemory(
        [this, before]
        {
            installer.properties = before;
            return Merge(L"Property");
        },
        ERROR_FUNCTION_FAILED);
}

// ---- Streams --------------------------------------------------------------------------------------------

class MergeBinary : public MergeTable
{
protected:
    MergeBinary()
    {
        installer.rows[L"SELECT * FROM `Binary_de`"] = {{L"Banner", L"German banner"}, {L"New", L"German stream"}};
        installer.rows[L"SELECT * FROM `Binary` WHERE `Name`='Banner'"] = {{L"Banner", L"English banner"}};
    }
};

TEST_F(MergeBinary, ReplacesRowsOfTheSameName)
{
    EXPECT_EQ(Merge(L"Binary"), ERROR_SUCCESS);
    EXPECT_EQ(Work(), (Texts{
                          L"SELECT * FROM `Binary_de`",
                          L"SELECT * FROM `Binary` WHERE `Name`='Banner'",
                          L"MsiViewModify 6 Banner|English banner into SELECT * FROM `Binary` WHERE `Name`='Banner'",
                          L"MsiViewModify 7 Banner|German banner into SELECT * FROM `Binary` WHERE `Name`='Banner'",
                          L"SELECT * FROM `Binary` WHERE `Name`='New'",
                          L"MsiViewModify 7 New|German stream into SELECT * FROM `Binary` WHERE `Name`='New'",
                      }));
}

TEST_F(MergeBinary, DeletesEveryRowOfTheName)
{
    installer.rows[L"SELECT * FROM `Binary_de`"] = {{L"Banner", L"German banner"}};
    installer.rows[L"SELECT * FROM `Binary` WHERE `Name`='Banner'"] = {
        {L"Banner", L"English banner"}, {L"Banner", L"Another banner"}};
    EXPECT_EQ(Merge(L"Binary"), ERROR_SUCCESS);
    EXPECT_EQ(installer.CallsOf(L"MsiViewModify"),
        (Texts{
            L"MsiViewModify 6 Banner|English banner into SELECT * FROM `Binary` WHERE `Name`='Banner'",
            L"MsiViewModify 6 Banner|Another banner into SELECT * FROM `Binary` WHERE `Name`='Banner'",
            L"MsiViewModify 7 Banner|German banner into SELECT * FROM `Binary` WHERE `Name`='Banner'",
        }));
}

// Some installers go on to other rows once one of the wanted rows has been deleted. Names that differ in case only
// are different ones.
TEST_F(MergeBinary, SparesRowsOfOtherNames)
{
    installer.rows[L"SELECT * FROM `Binary_de`"] = {{L"Banner", L"German banner"}};
    for (const wchar_t* other : {L"Dialog", L"BANNER", L"Banner2"})
        installer.rows[L"SELECT * FROM `Binary` WHERE `Name`='Banner'"].push_back({other, L"English picture"});
    EXPECT_EQ(Merge(L"Binary"), ERROR_SUCCESS);
    EXPECT_EQ(installer.CallsOf(L"MsiViewModify"),
        (Texts{
            L"MsiViewModify 6 Banner|English banner into SELECT * FROM `Binary` WHERE `Name`='Banner'",
            L"MsiViewModify 7 Banner|German banner into SELECT * FROM `Binary` WHERE `Name`='Banner'",
        }));
}

TEST_F(MergeBinary, HasTheErrorOfARowThatCannotBeInserted)
{
    installer.Answer(L"MsiViewModify 7 Banner|German banner into SELECT * FROM `Binary` WHERE `Name`='Banner'",
        ERROR_FUNCTION_FAILED);
    EXPECT_EQ(Merge(L"Binary"), UINT{ERROR_FUNCTION_FAILED});
    EXPECT_EQ(installer.CallsOf(L"MsiViewModify").size(), 2U);
}

TEST_F(MergeBinary, HasTheErrorOfARowThatCannotBeDeleted)
{
    installer.Answer(L"MsiViewModify 6 Banner|English banner into SELECT * FROM `Binary` WHERE `Name`='Banner'",
        ERROR_ACCESS_DENIED);
    EXPECT_EQ(Merge(L"Binary"), UINT{ERROR_ACCESS_DENIED});
    EXPECT_EQ(installer.CallsOf(L"MsiViewModify").size(), 1U);
}

// A base row whose name cannot be read is taken for the one that was asked for.
TEST_F(MergeBinary, HasTheErrorOfTheFailingStep)
{
    ExpectEachFailure([this] { return Merge(L"Binary"); }, ERROR_ACCESS_DENIED,
        [](const std::wstring& call)
        {
            const bool readsBaseRow = call.starts_with(L"MsiRecordGetStringW 1 of Banner|English banner");
            return readsBaseRow ? UINT{ERROR_SUCCESS} : UINT{ERROR_ACCESS_DENIED};
        });
}

// ---- Other tables ---------------------------------------------------------------------------------------

class MergeRows : public MergeTable
{
protected:
    MergeRows()
    {
        installer.rows[L"SELECT * FROM `Control`"] = {{L"Next", L"&Next"}, {L"Back", L"&Back"}};
        installer.rows[L"SELECT * FROM `Control_de`"] = {{L"Next", L"&Weiter"}, {L"Help", L"&Hilfe"}};
    }
};

TEST_F(MergeRows, CompletesTheLocalizedTableAndRefillsTheBaseTable)
{
    EXPECT_EQ(Merge(L"Control"), ERROR_SUCCESS);
    EXPECT_EQ(Work(), (Texts{
                          // (a) The base rows go into the localized table.
                          L"SELECT * FROM `Control_de`",
                          L"SELECT * FROM `Control`",
                          L"MsiViewModify 7 Next|&Next into SELECT * FROM `Control_de`",
                          L"MsiViewModify 7 Back|&Back into SELECT * FROM `Control_de`",
                          // (b) The localized rows replace those of the base table.
                          L"SELECT * FROM `Control`",
                          L"MsiViewModify 6 Next|&Next into SELECT * FROM `Control`",
                          L"MsiViewModify 6 Back|&Back into SELECT * FROM `Control`",
                          L"SELECT * FROM `Control_de`",
                          L"MsiViewModify 7 Next|&Weiter into SELECT * FROM `Control`",
                          L"MsiViewModify 7 Help|&Hilfe into SELECT * FROM `Control`",
                      }));
}

// The view that takes rows is open and executed, but not fetched from, while those rows are read.
TEST_F(MergeRows, KeepsTheReceivingViewOpen)
{
    installer.rows[L"SELECT * FROM `Control`"] = {{L"Next", L"&Next"}};
    installer.rows[L"SELECT * FROM `Control_de`"] = {{L"Next", L"&Weiter"}};
    EXPECT_EQ(Merge(L"Control"), ERROR_SUCCESS);
    EXPECT_EQ(installer.Calls(), (Texts{
                                     L"MsiDatabaseOpenViewW SELECT * FROM `Control_de`",
                                     L"MsiViewExecute SELECT * FROM `Control_de`",
                                     L"MsiDatabaseOpenViewW SELECT * FROM `Control`",
                                     L"MsiViewExecute SELECT * FROM `Control`",
                                     L"MsiViewFetch SELECT * FROM `Control`",
                                     L"MsiViewModify 7 Next|&Next into SELECT * FROM `Control_de`",
                                     L"MsiCloseHandle record Next|&Next",
                                     L"MsiViewFetch SELECT * FROM `Control`",
                                     L"MsiViewClose SELECT * FROM `Control`",
                                     L"MsiCloseHandle view SELECT * FROM `Control`",
                                     L"MsiViewClose SELECT * FROM `Control_de`",
                                     L"MsiCloseHandle view SELECT * FROM `Control_de`",
                                     L"MsiDatabaseOpenViewW SELECT * FROM `Control`",
                                     L"MsiViewExecute SELECT * FROM `Control`",
                                     L"MsiViewFetch SELECT * FROM `Control`",
                                     L"MsiViewModify 6 Next|&Next into SELECT * FROM `Control`",
                                     L"MsiCloseHandle record Next|&Next",
                                     L"MsiViewFetch SELECT * FROM `Control`",
                                     L"MsiDatabaseOpenViewW SELECT * FROM `Control_de`",
                                     L"MsiViewExecute SELECT * FROM `Control_de`",
                                     L"MsiViewFetch SELECT * FROM `Control_de`",
                                     L"MsiViewModify 7 Next|&Weiter into SELECT * FROM `Control`",
                                     L"MsiCloseHandle record Next|&Weiter",
                                     L"MsiViewFetch SELECT * FROM `Control_de`",
                                     L"MsiViewClose SELECT * FROM `Control_de`",
                                     L"MsiCloseHandle view SELECT * FROM `Control_de`",
                                     L"MsiViewClose SELECT * FROM `Control`",
                                     L"MsiCloseHandle view SELECT * FROM `Control`",
                                 }));
}

TEST_F(MergeRows, LeavesOutBaseRowsWhoseKeyIsLocalized)
{
    installer.Answer(L"MsiViewModify 7 Next|&Next into SELECT * FROM `Control_de`", ERROR_FUNCTION_FAILED);
    EXPECT_EQ(Merge(L"Control"), ERROR_SUCCESS);
    EXPECT_EQ(installer.CountCalls(L"MsiViewModify 7 Back|&Back into SELECT * FROM `Control_de`"), 1U);
    EXPECT_EQ(installer.CountCalls(L"MsiViewModify 7 Next|&Weiter into SELECT * FROM `Control`"), 1U);
}

TEST_F(MergeRows, FailsWhereABaseRowCannotBeInsertedForAnotherReason)
{
    installer.Answer(L"MsiViewModify 7 Next|&Next into SELECT * FROM `Control_de`", ERROR_ACCESS_DENIED);
    EXPECT_EQ(Merge(L"Control"), UINT{ERROR_ACCESS_DENIED});
    EXPECT_EQ(installer.CallsOf(L"MsiViewModify").size(), 1U);
}

TEST_F(MergeRows, FailsWhereALocalizedRowCannotBeInserted)
{
    installer.Answer(L"MsiViewModify 7 Next|&Weiter into SELECT * FROM `Control`", ERROR_FUNCTION_FAILED);
    EXPECT_EQ(Merge(L"Control"), UINT{ERROR_FUNCTION_FAILED});
}

TEST_F(MergeRows, FailsWhereABaseRowCannotBeDeleted)
{
    installer.Answer(L"MsiViewModify 6 Next|&Next into SELECT * FROM `Control`", ERROR_FUNCTION_FAILED);
    EXPECT_EQ(Merge(L"Control"), UINT{ERROR_FUNCTION_FAILED});
    EXPECT_EQ(installer.CountCalls(L"MsiViewModify 6 Back|&Back into SELECT * FROM `Control`"), 0U);
    EXPECT_EQ(installer.CountCalls(L"MsiViewModify 7 Next|&Weiter into SELECT * FROM `Control`"), 0U);
}

// The insertion is not what is ignored when a row cannot be fetched.
TEST_F(MergeRows, FailsWhereBaseRowsCannotBeRead)
{
    installer.Answer(L"MsiViewFetch SELECT * FROM `Control`", ERROR_FUNCTION_FAILED, 1);
    EXPECT_EQ(Merge(L"Control"), UINT{ERROR_FUNCTION_FAILED});
    EXPECT_TRUE(installer.CallsOf(L"MsiViewModify").empty());
}

TEST_F(MergeRows, HasTheErrorOfTheFailingStep)
{
    ExpectEachFailure([this] { return Merge(L"Control"); }, ERROR_ACCESS_DENIED, Always(ERROR_ACCESS_DENIED));
}

// The one failure that is ignored is a key that the localized table has already.
TEST_F(MergeRows, HasAFailureOfTheInstallerUnlessItIsAKeyThatIsThere)
{
    ExpectEachFailure([this] { return Merge(L"Control"); }, ERROR_FUNCTION_FAILED,
        [](const std::wstring& call)
        {
            const bool isKept = call.starts_with(L"MsiViewModify 7") && call.ends_with(L"`Control_de`");
            return isKept ? UINT{ERROR_SUCCESS} : UINT{ERROR_FUNCTION_FAILED};
        });
}

TEST_F(MergeRows, FailsWithoutMemory)
{
    ExpectEachLackOfMemory([this] { return Merge(L"Control"); }, ERROR_FUNCTION_FAILED);
}

TEST_F(MergeRows, AsksForTheTablesByTheirNames)
{
    EXPECT_EQ(Merge(L"Control", L"zh_CN"), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements(), (Texts{L"SELECT * FROM `Control_zh_CN`", L"SELECT * FROM `Control`",
                                          L"SELECT * FROM `Control`", L"SELECT * FROM `Control_zh_CN`"}));
}

// Only the installer's own tables are treated in their own way, and only by their exact name.
TEST_F(MergeRows, TreatsOtherSpellingsAsTablesOfThePackage)
{
    for (const wchar_t* base : {L"property", L"PROPERTY", L"binary", L"BINARY", L"Properties", L"Binar"})
    {
        installer.ForgetCalls();
        EXPECT_EQ(Merge(base), ERROR_SUCCESS);
        const std::wstring baseQuery = L"SELECT * FROM `" + std::wstring(base) + L"`";
        const std::wstring localizedQuery = L"SELECT * FROM `" + std::wstring(base) + L"_de`";
        EXPECT_EQ(installer.Statements(), (Texts{localizedQuery, baseQuery, baseQuery, localizedQuery}));
    }
}

// Long names of tables need more room than the first guess.
TEST_F(MergeRows, TakesLongNames)
{
    const std::wstring base(3000, L'T');
    EXPECT_EQ(Merge(base.c_str()), ERROR_SUCCESS);
    EXPECT_EQ(installer.Statements().front(), L"SELECT * FROM `" + base + L"_de`");
}

}  // namespace
