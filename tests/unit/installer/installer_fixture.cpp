#include "unit/installer/installer_fixture.h"

#include <algorithm>

namespace arvmui_test
{
namespace
{

constexpr size_t kMostAllocations = 10000;  // of one call; more means that it does not end

std::string Narrow(const std::wstring& text)
{
    return std::string(text.begin(), text.end());
}

// Closing is done whatever comes of it, and an integer is read without a result.
bool CanFail(const std::wstring& call)
{
    const std::wstring function = call.substr(0, call.find(L' '));
    return function != L"MsiCloseHandle" && function != L"MsiViewClose" && function != L"MsiRecordGetInteger";
}

}  // namespace

InstallerTest::InstallerTest()
{
    EXPECT_EQ(arvmui::BindInstallerLibrary(installer.Module()), ERROR_SUCCESS);
    database = installer.MakeDatabase();
    installer.ForgetCalls();
}

void InstallerTest::TearDown()
{
    ExpectNothingLeft("at the end");
}

void InstallerTest::ExpectNothingLeft(const std::string& when)
{
    EXPECT_EQ(installer.OpenHandles(), 1U) << when;
    EXPECT_EQ(heap.LiveBlocks(), 0U) << when;
}

void InstallerTest::ExpectEachFailure(
    const std::function<UINT()>& call, UINT error, const std::function<UINT(const std::wstring& failingCall)>& expected)
{
    const auto properties = installer.properties;  // each run begins with them
    installer.ForgetCalls();
    ASSERT_EQ(call(), ERROR_SUCCESS);
    const std::vector<std::wstring> calls = installer.Calls();
    ASSERT_FALSE(calls.empty());

    for (size_t i = 0; i < calls.size(); ++i)
    {
        if (!CanFail(calls[i])) continue;
        const auto same = std::count(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(i) + 1, calls[i]);
        installer.properties = properties;
        installer.ForgetCalls();
        // Answers of earlier runs are spent by now.
        installer.Answer(calls[i], error, static_cast<unsigned>(same));
        const std::string when = "call " + std::to_string(i) + ": " + Narrow(calls[i]);
        EXPECT_EQ(call(), expected(calls[i])) << when;
        ExpectNothingLeft(when);
    }
}

void InstallerTest::ExpectEachLackOfMemory(const std::function<UINT()>& call, UINT expected)
{
    for (size_t number = 0; number < kMostAllocations; ++number)
    {
        heap.FailAt(number);
        const UINT result = call();
        const bool hasFailed = heap.HasFailed();
        heap.FailNever();
        const std::string when = "allocation " + std::to_string(number);
        EXPECT_EQ(result, hasFailed ? expected : ERROR_SUCCESS) << when;
        ExpectNothingLeft(when);
        if (!hasFailed)
        {
            EXPECT_GT(number, 0U) << "nothing was allocated";
            return;
        }
    }
    FAIL() << "the call does not end";
}

}  // namespace arvmui_test
