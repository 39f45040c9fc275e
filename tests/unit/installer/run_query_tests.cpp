// Queries: their steps, what their callbacks see, and what is closed.
#include "unit/installer/installer_fixture.h"

namespace
{

using arvmui::QUERY_EXECUTE_ONLY;
using arvmui::QUERY_NOTIFY_END;
using arvmui::QUERY_TOLERATE_BAD_SYNTAX;
using arvmui::RunQuery;
using arvmui_test::InstallerTest;

constexpr wchar_t kQuery[] = L"SELECT * FROM `T`";
constexpr UINT kStopped = 4711;  // no code of the installer's

class Query : public InstallerTest
{
protected:
    Query()
    {
        installer.rows[kQuery] = {{L"a"}, {L"b"}};
        installer.onCall = [this](const std::wstring& call) { events_.push_back(call); };
    }

    UINT Run(DWORD flags) { return RunQuery(database, kQuery, flags, Note, this); }

    // The calls of the installer and of the callback in their order.
    std::vector<std::wstring> events_;
    std::wstring stopAt_ = L"nowhere";
    std::vector<MSIHANDLE> views_;  // those that the callback was given

private:
    static UINT Note(MSIHANDLE database, MSIHANDLE view, MSIHANDLE record, void* context)
    {
        Query& test = *static_cast<Query*>(context);
        EXPECT_EQ(database, test.database);
        test.views_.push_back(view);
        const std::wstring event = record == 0 ? L"callback at the end" : L"callback with " + test.NameOf(record);
        test.events_.push_back(event);
        return event == test.stopAt_ ? kStopped : ERROR_SUCCESS;
    }

    std::wstring NameOf(MSIHANDLE record)
    {
        const auto events = events_.size();
        wchar_t name[8] = L"";
        DWORD size = 8;
        EXPECT_EQ(arvmui::Installer().MsiRecordGetStringW(record, 1, name, &size), ERROR_SUCCESS);
        events_.resize(events);
        return name;
    }
};

using Events = std::vector<std::wstring>;

TEST_F(Query, FetchesRowsAndClosesEachBeforeTheNext)
{
    EXPECT_EQ(Run(0), ERROR_SUCCESS);
    EXPECT_EQ(events_, (Events{
                           L"MsiDatabaseOpenViewW SELECT * FROM `T`",
                           L"MsiViewExecute SELECT * FROM `T`",
                           L"MsiViewFetch SELECT * FROM `T`",
                           L"callback with a",
                           L"MsiCloseHandle record a",
                           L"MsiViewFetch SELECT * FROM `T`",
                           L"callback with b",
                           L"MsiCloseHandle record b",
                           L"MsiViewFetch SELECT * FROM `T`",
                           L"MsiViewClose SELECT * FROM `T`",
                           L"MsiCloseHandle view SELECT * FROM `T`",
                       }));
}

TEST_F(Query, WithoutRowsCallsNobody)
{
    installer.rows.clear();
    EXPECT_EQ(Run(0), ERROR_SUCCESS);
    EXPECT_TRUE(views_.empty());
}

TEST_F(Query, HandsTheOpenViewToItsCallback)
{
    installer.onCall = nullptr;
    ASSERT_EQ(RunQuery(
                  database, kQuery, 0,
                  [](MSIHANDLE, MSIHANDLE view, MSIHANDLE record, void*)
                  { return arvmui::Installer().MsiViewModify(view, MSIMODIFY_DELETE, record); },
                  nullptr),
        ERROR_SUCCESS);
    EXPECT_EQ(installer.CallsOf(L"MsiViewModify"),
        (Events{L"MsiViewModify 6 a into SELECT * FROM `T`", L"MsiViewModify 6 b into SELECT * FROM `T`"}));
}

TEST_F(Query, EndsWithTheErrorOfItsCallback)
{
    stopAt_ = L"callback with a";
    EXPECT_EQ(Run(QUERY_NOTIFY_END), kStopped);
    EXPECT_EQ(events_, (Events{
                           L"MsiDatabaseOpenViewW SELECT * FROM `T`",
                           L"MsiViewExecute SELECT * FROM `T`",
                           L"MsiViewFetch SELECT * FROM `T`",
                           L"callback with a",
                           L"MsiCloseHandle record a",
                           L"MsiViewClose SELECT * FROM `T`",
                           L"MsiCloseHandle view SELECT * FROM `T`",
                       }));
}

// Although that code, from the installer, is the end of the rows.
TEST_F(Query, EndsWithACallbacksEndOfRowsAsWithAnyError)
{
    installer.onCall = nullptr;
    EXPECT_EQ(RunQuery(
                  database, kQuery, QUERY_NOTIFY_END,
                  [](MSIHANDLE, MSIHANDLE, MSIHANDLE, void*) -> UINT { return ERROR_NO_MORE_ITEMS; }, nullptr),
        UINT{ERROR_NO_MORE_ITEMS});
    EXPECT_EQ(installer.CallsOf(L"MsiViewFetch").size(), 1U);
}

// ---- Flags ----------------------------------------------------------------------------------------------

TEST_F(Query, ThatIsOnlyExecutedCallsOnceWithoutARow)
{
    EXPECT_EQ(Run(QUERY_EXECUTE_ONLY), ERROR_SUCCESS);
    EXPECT_EQ(events_, (Events{
                           L"MsiDatabaseOpenViewW SELECT * FROM `T`",
                           L"MsiViewExecute SELECT * FROM `T`",
                           L"callback at the end",
                           L"MsiViewClose SELECT * FROM `T`",
                           L"MsiCloseHandle view SELECT * FROM `T`",
                       }));
}

TEST_F(Query, ThatIsOnlyExecutedNeedsNoCallback)
{
    EXPECT_EQ(RunQuery(database, kQuery, QUERY_EXECUTE_ONLY, nullptr, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(events_, (Events{
                           L"MsiDatabaseOpenViewW SELECT * FROM `T`",
                           L"MsiViewExecute SELECT * FROM `T`",
                           L"MsiViewClose SELECT * FROM `T`",
                           L"MsiCloseHandle view SELECT * FROM `T`",
                       }));
}

TEST_F(Query, ThatIsOnlyExecutedEndsWithTheErrorOfItsCallback)
{
    stopAt_ = L"callback at the end";
    EXPECT_EQ(Run(QUERY_EXECUTE_ONLY), kStopped);
}

TEST_F(Query, NotifiesOfTheEndOnce)
{
    EXPECT_EQ(Run(QUERY_NOTIFY_END), ERROR_SUCCESS);
    EXPECT_EQ(events_, (Events{
                           L"MsiDatabaseOpenViewW SELECT * FROM `T`",
                           L"MsiViewExecute SELECT * FROM `T`",
                           L"MsiViewFetch SELECT * FROM `T`",
                           L"callback with a",
                           L"MsiCloseHandle record a",
                           L"MsiViewFetch SELECT * FROM `T`",
                           L"callback with b",
                           L"MsiCloseHandle record b",
                           L"MsiViewFetch SELECT * FROM `T`",
                           L"callback at the end",
                           L"MsiViewClose SELECT * FROM `T`",
                           L"MsiCloseHandle view SELECT * FROM `T`",
                       }));
}

TEST_F(Query, NotifiesOfTheEndInTheSameView)
{
    EXPECT_EQ(Run(QUERY_NOTIFY_END), ERROR_SUCCESS);
    ASSERT_EQ(views_.size(), 3U);
    EXPECT_EQ(views_[2], views_[0]);
}

TEST_F(Query, EndsWithTheErrorOfTheNotification)
{
    stopAt_ = L"callback at the end";
    EXPECT_EQ(Run(QUERY_NOTIFY_END), kStopped);
}

TEST_F(Query, ThatIsOnlyExecutedHasNoEndToNotifyOf)
{
    EXPECT_EQ(Run(QUERY_EXECUTE_ONLY | QUERY_NOTIFY_END), ERROR_SUCCESS);
    EXPECT_EQ(views_.size(), 1U);
}

struct SyntaxCase
{
    const char* name;
    DWORD flags;
    UINT error;
    UINT result;
};

void PrintTo(const SyntaxCase& value, std::ostream* output)
{
    *output << value.name;
}

class UnopenedQuery : public Query, public testing::WithParamInterface<SyntaxCase>
{
};

TEST_P(UnopenedQuery, HasNothingToClose)
{
    const SyntaxCase& parameter = GetParam();
    installer.Answer(L"MsiDatabaseOpenViewW SELECT * FROM `T`", parameter.error);
    EXPECT_EQ(Run(parameter.flags), parameter.result);
    EXPECT_EQ(events_, Events{L"MsiDatabaseOpenViewW SELECT * FROM `T`"});
}

const SyntaxCase kSyntaxCases[] = {
    {"BadSyntax", 0, ERROR_BAD_QUERY_SYNTAX, ERROR_BAD_QUERY_SYNTAX},
    {"BadSyntaxNotifying", QUERY_NOTIFY_END, ERROR_BAD_QUERY_SYNTAX, ERROR_BAD_QUERY_SYNTAX},
    {"BadSyntaxTolerated", QUERY_TOLERATE_BAD_SYNTAX, ERROR_BAD_QUERY_SYNTAX, ERROR_SUCCESS},
    {"BadSyntaxToleratedOnExecution", QUERY_TOLERATE_BAD_SYNTAX | QUERY_EXECUTE_ONLY, ERROR_BAD_QUERY_SYNTAX,
        ERROR_SUCCESS},
    {"OtherErrorNotTolerated", QUERY_TOLERATE_BAD_SYNTAX, ERROR_INVALID_HANDLE, ERROR_INVALID_HANDLE},
    {"FailureNotTolerated", QUERY_TOLERATE_BAD_SYNTAX, ERROR_FUNCTION_FAILED, ERROR_FUNCTION_FAILED},
};

INSTANTIATE_TEST_SUITE_P(Errors, UnopenedQuery, testing::ValuesIn(kSyntaxCases),
    [](const testing::TestParamInfo<SyntaxCase>& parameter) { return std::string(parameter.param.name); });

// ---- Failing steps --------------------------------------------------------------------------------------

TEST_F(Query, ThatCannotBeExecutedIsClosed)
{
    installer.Answer(L"MsiViewExecute SELECT * FROM `T`", ERROR_ACCESS_DENIED);
    for (const DWORD flags : {DWORD{0}, QUERY_EXECUTE_ONLY, QUERY_NOTIFY_END, QUERY_TOLERATE_BAD_SYNTAX})
    {
        events_.clear();
        EXPECT_EQ(Run(flags), UINT{ERROR_ACCESS_DENIED});
        EXPECT_EQ(events_, (Events{
                               L"MsiDatabaseOpenViewW SELECT * FROM `T`",
                               L"MsiViewExecute SELECT * FROM `T`",
                               L"MsiViewClose SELECT * FROM `T`",
                               L"MsiCloseHandle view SELECT * FROM `T`",
                           }));
    }
}

// Bad syntax is tolerated where a view is opened only.
TEST_F(Query, ThatCannotBeExecutedIsNeverTolerated)
{
    installer.Answer(L"MsiViewExecute SELECT * FROM `T`", ERROR_BAD_QUERY_SYNTAX);
    EXPECT_EQ(Run(QUERY_TOLERATE_BAD_SYNTAX | QUERY_EXECUTE_ONLY), UINT{ERROR_BAD_QUERY_SYNTAX});
}

TEST_F(Query, EndsWithTheErrorOfAFetch)
{
    installer.Answer(L"MsiViewFetch SELECT * FROM `T`", ERROR_ACCESS_DENIED, 2);
    EXPECT_EQ(Run(QUERY_NOTIFY_END), UINT{ERROR_ACCESS_DENIED});
    EXPECT_EQ(events_, (Events{
                           L"MsiDatabaseOpenViewW SELECT * FROM `T`",
                           L"MsiViewExecute SELECT * FROM `T`",
                           L"MsiViewFetch SELECT * FROM `T`",
                           L"callback with a",
                           L"MsiCloseHandle record a",
                           L"MsiViewFetch SELECT * FROM `T`",
                           L"MsiViewClose SELECT * FROM `T`",
                           L"MsiCloseHandle view SELECT * FROM `T`",
                       }));
}

TEST_F(Query, IsNotHurtByWhatCannotBeClosed)
{
    installer.Answer(L"MsiViewClose SELECT * FROM `T`", ERROR_FUNCTION_FAILED);
    installer.Answer(L"MsiCloseHandle view SELECT * FROM `T`", ERROR_INVALID_HANDLE);
    installer.Answer(L"MsiCloseHandle record a", ERROR_INVALID_HANDLE);
    EXPECT_EQ(Run(0), ERROR_SUCCESS);
    EXPECT_EQ(views_.size(), 2U);
}

}  // namespace
