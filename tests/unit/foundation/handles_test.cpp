// The guards that own one system resource each.
#include "foundation/handles.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace
{

using namespace arvmui;

std::vector<int> g_closed;

// Numbers in place of resources; -1 is none.
struct NumberPolicy
{
    using Value = int;
    static Value Invalid() noexcept { return -1; }
    static void Close(Value value) noexcept
    {
        g_closed.push_back(value);
        ::SetLastError(99);
    }
};

using Number = UniqueResource<NumberPolicy>;
using Closed = std::vector<int>;

class Guard : public testing::Test
{
protected:
    Guard()
    {
        g_closed.clear();
        ::SetLastError(4711);
    }
};

TEST_F(Guard, ClosesItsResourceAndKeepsTheLastErrorCode)
{
    {
        const Number number(7);
        EXPECT_TRUE(number);
        EXPECT_EQ(number.Get(), 7);
        EXPECT_EQ(g_closed, Closed{});
    }
    EXPECT_EQ(g_closed, Closed{7});
    EXPECT_EQ(::GetLastError(), 4711u);
}

TEST_F(Guard, ClosesZeroWhereZeroIsAResource)
{
    {
        const Number number(0);
        EXPECT_TRUE(number);
    }
    EXPECT_EQ(g_closed, Closed{0});
}

TEST_F(Guard, WithoutAResourceClosesNothing)
{
    {
        const Number none;
        EXPECT_FALSE(none);
        const Number invalid(-1);
        EXPECT_FALSE(invalid);
    }
    EXPECT_EQ(g_closed, Closed{});
}

TEST_F(Guard, ReleasedResourceIsTheCallers)
{
    {
        Number number(7);
        EXPECT_EQ(number.Release(), 7);
        EXPECT_FALSE(number);
    }
    EXPECT_EQ(g_closed, Closed{});
}

TEST_F(Guard, TakesAResourceThroughItsSlot)
{
    {
        Number number;
        *number.Slot() = 8;
        EXPECT_TRUE(number);
    }
    EXPECT_EQ(g_closed, Closed{8});
}

TEST_F(Guard, MovesItsResource)
{
    {
        Number first(1);
        Number second(std::move(first));
        EXPECT_EQ(second.Get(), 1);
        Number third(3);
        third = std::move(second);
        EXPECT_EQ(third.Get(), 1);
        EXPECT_EQ(g_closed, Closed{3});
    }
    EXPECT_EQ(g_closed, (Closed{3, 1}));
}

TEST_F(Guard, ClosesRealResources)
{
    const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    {
        const UniqueHandle guard(event);
    }
    DWORD flags = 0;
    EXPECT_FALSE(::GetHandleInformation(event, &flags));
}

TEST_F(Guard, FindHandlesHaveAnInvalidValueOfTheirOwn)
{
    EXPECT_FALSE(UniqueFind(INVALID_HANDLE_VALUE));
    EXPECT_EQ(UniqueFind().Get(), INVALID_HANDLE_VALUE);
}

TEST(LastErrorKeeper, RestoresTheCodeThatWasInForce)
{
    ::SetLastError(4711);
    {
        const LastErrorKeeper keep;
        ::SetLastError(5);
    }
    EXPECT_EQ(::GetLastError(), 4711u);
}

TEST(QuietSystemErrors, AddsToTheThreadsErrorModeAndRestoresIt)
{
    DWORD before = 0;
    ASSERT_TRUE(::SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, &before));
    {
        const QuietSystemErrors quiet;
        EXPECT_EQ(
            ::GetThreadErrorMode(), DWORD{SEM_NOGPFAULTERRORBOX | SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX});
        ::SetLastError(4711);
    }
    EXPECT_EQ(::GetLastError(), 4711u);
    EXPECT_EQ(::GetThreadErrorMode(), DWORD{SEM_NOGPFAULTERRORBOX});
    ::SetThreadErrorMode(before, nullptr);
}

}  // namespace
