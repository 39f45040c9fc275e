// Which failures end the walk over the tables of a cached package, and which are passed over.
#include "unit/installer/package_translation_fixture.h"

#include <algorithm>

namespace
{

using arvmui_test::FinalStatements;
using arvmui_test::kTableQuery;
using arvmui_test::Statements;

constexpr UINT kError = ERROR_INVALID_DATA;  // none that the library makes itself

class PackageTranslationFailure : public arvmui_test::PackageTranslationTest
{
protected:
    PackageTranslationFailure()
    {
        SetTables({L"Control_de", L"Control_fr", L"Next_de"});
        installer.rows[L"SELECT * FROM `Control_de`"] = {{L"key", L"text"}};
    }
};

struct Failure
{
    const char* name;
    const wchar_t* locale;
    const wchar_t* call;
    Statements statements;  // about tables, of which there are Control_de, Control_fr and Next_de
};

class FailingCall : public PackageTranslationFailure, public testing::WithParamInterface<Failure>
{
};

TEST_P(FailingCall, LeavesTheseStatementsAndTheFinalOnes)
{
    installer.Answer(GetParam().call, kError);
    EXPECT_EQ(TranslateTables(GetParam().locale), GetParam().statements);
    EXPECT_EQ(installer.CountCalls(GetParam().call), 1U) << "the call that fails does not occur";
}

const Statements kNothing;
const Statements kBaseOnly = {L"SELECT * FROM `Control`"};
const Statements kBothQueries = {L"SELECT * FROM `Control`", L"SELECT * FROM `Control_de`"};
const Statements kFirstTable = {L"SELECT * FROM `Control`", L"SELECT * FROM `Control_de`", L"DROP TABLE `Control_de`",
    L"DELETE FROM `_Validation` WHERE `Table`='Control_de'"};
const Statements kTwoTables = {L"SELECT * FROM `Control`", L"SELECT * FROM `Control_de`", L"DROP TABLE `Control_de`",
    L"DELETE FROM `_Validation` WHERE `Table`='Control_de'", L"DROP TABLE `Control_fr`",
    L"DELETE FROM `_Validation` WHERE `Table`='Control_fr'"};
const Statements kAll = {L"SELECT * FROM `Control`", L"SELECT * FROM `Control_de`", L"DROP TABLE `Control_de`",
    L"DELETE FROM `_Validation` WHERE `Table`='Control_de'", L"DROP TABLE `Control_fr`",
    L"DELETE FROM `_Validation` WHERE `Table`='Control_fr'", L"SELECT * FROM `Next`", L"SELECT * FROM `Next_de`",
    L"DROP TABLE `Next_de`", L"DELETE FROM `_Validation` WHERE `Table`='Next_de'"};
const Statements kEnglishFirstTable = {
    L"DROP TABLE `Control_de`", L"DELETE FROM `_Validation` WHERE `Table`='Control_de'"};
const Statements kEnglishAll = {L"DROP TABLE `Control_de`", L"DELETE FROM `_Validation` WHERE `Table`='Control_de'",
    L"DROP TABLE `Control_fr`", L"DELETE FROM `_Validation` WHERE `Table`='Control_fr'", L"DROP TABLE `Next_de`",
    L"DELETE FROM `_Validation` WHERE `Table`='Next_de'"};

INSTANTIATE_TEST_SUITE_P(Copying, FailingCall,
    testing::Values(Failure{"OpeningTheBase", L"de", L"MsiDatabaseOpenViewW SELECT * FROM `Control`", kBaseOnly},
        Failure{"ExecutingTheBase", L"de", L"MsiViewExecute SELECT * FROM `Control`", kBaseOnly},
        Failure{"OpeningTheLocalized", L"de", L"MsiDatabaseOpenViewW SELECT * FROM `Control_de`", kBothQueries},
        Failure{"ExecutingTheLocalized", L"de", L"MsiViewExecute SELECT * FROM `Control_de`", kBothQueries},
        Failure{"FetchingTheLocalized", L"de", L"MsiViewFetch SELECT * FROM `Control_de`", kBothQueries},
        Failure{"WritingTheRow", L"de", L"MsiViewModify 3 key|text into SELECT * FROM `Control`", kBothQueries}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(Dropping, FailingCall,
    testing::Values(Failure{"OpeningOfTheChosen", L"de", L"MsiDatabaseOpenViewW DROP TABLE `Control_de`", kAll},
        Failure{"ExecutingOfTheChosen", L"de", L"MsiViewExecute DROP TABLE `Control_de`", kAll},
        Failure{"OpeningOfAnother", L"de", L"MsiDatabaseOpenViewW DROP TABLE `Control_fr`", kAll},
        Failure{"ExecutingOfAnother", L"de", L"MsiViewExecute DROP TABLE `Control_fr`", kAll},
        Failure{"OfTheLast", L"de", L"MsiViewExecute DROP TABLE `Next_de`", kAll},
        Failure{"OfTheFirstInEnglish", L"en", L"MsiViewExecute DROP TABLE `Control_de`", kEnglishAll},
        Failure{"OfTheChosenInEnglish", L"en", L"MsiDatabaseOpenViewW DROP TABLE `Next_de`", kEnglishAll}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(Validation, FailingCall,
    testing::Values(Failure{"OpeningOfTheChosen", L"de",
                        L"MsiDatabaseOpenViewW DELETE FROM `_Validation` WHERE `Table`='Control_de'", kFirstTable},
        Failure{"ExecutingOfTheChosen", L"de", L"MsiViewExecute DELETE FROM `_Validation` WHERE `Table`='Control_de'",
            kFirstTable},
        Failure{"OpeningOfAnother", L"de", L"MsiDatabaseOpenViewW DELETE FROM `_Validation` WHERE `Table`='Control_fr'",
            kTwoTables},
        Failure{"ExecutingOfAnother", L"de", L"MsiViewExecute DELETE FROM `_Validation` WHERE `Table`='Control_fr'",
            kTwoTables},
        Failure{"OfTheLast", L"de", L"MsiViewExecute DELETE FROM `_Validation` WHERE `Table`='Next_de'", kAll},
        Failure{"OfAnotherInEnglish", L"en", L"MsiViewExecute DELETE FROM `_Validation` WHERE `Table`='Control_de'",
            kEnglishFirstTable}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(Walk, FailingCall,
    testing::Values(
        Failure{"OpeningTheCatalogue", L"de", L"MsiDatabaseOpenViewW SELECT `Name` FROM `_Tables`", kNothing},
        Failure{"ExecutingTheCatalogue", L"de", L"MsiViewExecute SELECT `Name` FROM `_Tables`", kNothing}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(PackageTranslationFailure, TablesBeforeAFailingFetchAreTreated)
{
    installer.Answer(std::wstring(L"MsiViewFetch ") + kTableQuery, kError, 3);
    EXPECT_EQ(TranslateTables(L"de"), kTwoTables);
}

TEST_F(PackageTranslationFailure, TablesBeforeANameThatCannotBeReadAreTreated)
{
    installer.Answer(L"MsiRecordGetStringW 1 of Next_de size 0", kError);
    EXPECT_EQ(TranslateTables(L"de"), kTwoTables);
}

TEST_F(PackageTranslationFailure, TheChosenTableInEnglishCanEndTheWalkToo)
{
    SetTables({L"Control_en", L"Next_en"});
    installer.Answer(L"MsiViewExecute DELETE FROM `_Validation` WHERE `Table`='Control_en'", kError);
    EXPECT_EQ(TranslateTables(L"en"),
        (Statements{L"DROP TABLE `Control_en`", L"DELETE FROM `_Validation` WHERE `Table`='Control_en'"}));
}

TEST_F(PackageTranslationFailure, ARowThatExistsIsNoExceptionWhenItCannotBeWritten)
{
    installer.Answer(L"MsiViewModify 3 key|text into SELECT * FROM `Control`", ERROR_FUNCTION_FAILED);
    EXPECT_EQ(TranslateTables(L"de"), kBothQueries);
}

TEST_F(PackageTranslationFailure, RowsAfterAFailingOneAreNotWritten)
{
    installer.rows[L"SELECT * FROM `Control_de`"] = {{L"a", L"1"}, {L"b", L"2"}, {L"c", L"3"}};
    installer.Answer(L"MsiViewModify 3 b|2 into SELECT * FROM `Control`", kError);
    TranslateTables(L"de");
    EXPECT_EQ(installer.CountCalls(L"MsiViewModify 3 a|1 into SELECT * FROM `Control`"), 1U);
    EXPECT_EQ(installer.CountCalls(L"MsiViewModify 3 c|3 into SELECT * FROM `Control`"), 0U);
}

TEST_F(PackageTranslationFailure, NoFinalStatementKeepsTheOthersFromBeingExecuted)
{
    const Statements last = FinalStatements(L"de", false);
    for (const std::wstring& failing : last)
    {
        for (const wchar_t* const step : {L"MsiDatabaseOpenViewW ", L"MsiViewExecute ", L"MsiViewClose "})
        {
            installer.ForgetAnswers();
            installer.Answer(step + failing, kError);
            TranslateTables(L"de");  // checks the final statements
            EXPECT_EQ(installer.CallsOf(L"MsiViewExecute").size(),
                installer.Statements().size() - (std::wstring(step) == L"MsiDatabaseOpenViewW " ? 1U : 0U));
        }
    }
}

// Whatever fails while the locales are read is the result; whatever fails later is none.
TEST_F(PackageTranslationFailure, OnlyTheLocalesDecideAboutTheResult)
{
    ExpectEachFailure([this] { return Translate(L"de"); }, kError,
        [](const std::wstring& call)
        {
            const bool isOfLocales = call.find(L"ARVUILocale` ORDER BY") != std::wstring::npos
                                     || call.find(L"English name") != std::wstring::npos;
            return isOfLocales ? kError : static_cast<UINT>(ERROR_SUCCESS);
        });
}

// Without memory either nothing has been changed, or the translation went on as far as it could.
TEST_F(PackageTranslationFailure, NothingIsLeftBehindWhenMemoryIsShort)
{
    UINT result = ERROR_SUCCESS;
    size_t number = 0;
    do
    {
        heap.FailAt(number++);
        result = Translate(L"de");
        EXPECT_EQ(installer.OpenHandles(), 1U) << "allocation " << number;
        EXPECT_EQ(heap.LiveBlocks(), 0U) << "allocation " << number;
        EXPECT_TRUE(result == ERROR_SUCCESS || installer.Statements().size() == 1) << "allocation " << number;
    } while (heap.HasFailed() && number < 10000);
    EXPECT_GT(number, 10U);
    EXPECT_EQ(result, ERROR_SUCCESS);
}

// An INSERT without its locale would be worse than none.
TEST_F(PackageTranslationFailure, AStatementThatCannotBeFormattedIsLeftOut)
{
    Statements complete;
    size_t number = 0;
    TranslateTables(L"de");
    complete = installer.Statements();
    for (;;)
    {
        heap.FailAt(number++);
        const UINT result = Translate(L"de");
        const bool failed = heap.HasFailed();
        heap.FailNever();
        if (!failed) break;
        if (result != ERROR_SUCCESS) continue;
        for (const std::wstring& statement : installer.Statements())
            EXPECT_NE(std::find(complete.begin(), complete.end(), statement), complete.end());
        EXPECT_LT(installer.Statements().size(), complete.size());
    }
}

}  // namespace
