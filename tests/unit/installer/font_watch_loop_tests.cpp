// How long the font watch lasts and what ends it. Nothing here really waits.
#include "installer/font_watch.h"
#include "unit/installer/watch_clock.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using arvmui::RunFontResetterLoop;

const HANDLE kHandle = reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(0x7777));

class FontWatchLoop : public testing::Test
{
protected:
    FontWatchLoop() { clock.handles = {kHandle}; }

    bool Run(HANDLE handle, DWORD interval, DWORD total) { return RunFontResetterLoop(handle, interval, total, names); }

    arvmui_test::WatchClock clock;
    arvmui::FontResetterNames names;
};

using Events = std::vector<std::string>;

TEST_F(FontWatchLoop, EndsBeforeTheFirstPassWhenTheHandleIsSignalled)
{
    clock.answers = {WAIT_OBJECT_0};
    EXPECT_TRUE(Run(kHandle, 100, 1000));
    EXPECT_EQ(clock.Events(), (Events{"wait 0"}));
}

TEST_F(FontWatchLoop, EndsBeforeTheFirstPassWhenTheHandleCannotBeTested)
{
    for (const DWORD answer : {WAIT_FAILED, static_cast<DWORD>(WAIT_ABANDONED)})
    {
        clock.Restart({answer});
        EXPECT_FALSE(Run(kHandle, 100, 1000));
        EXPECT_EQ(clock.Events(), (Events{"wait 0"}));
    }
}

TEST_F(FontWatchLoop, LooksThenWaitsUntilTheHandleIsSignalled)
{
    clock.answers = {WAIT_TIMEOUT, WAIT_TIMEOUT, WAIT_TIMEOUT, WAIT_OBJECT_0};
    EXPECT_TRUE(Run(kHandle, 100, 1000));
    EXPECT_EQ(clock.Events(), (Events{"wait 0", "look", "wait 100", "look", "wait 100", "look", "wait 100"}));
}

TEST_F(FontWatchLoop, EndsWhenTheHandleCannotBeWaitedFor)
{
    for (const DWORD answer : {WAIT_FAILED, static_cast<DWORD>(WAIT_ABANDONED)})
    {
        clock.Restart({WAIT_TIMEOUT, WAIT_TIMEOUT, answer});
        EXPECT_FALSE(Run(kHandle, 100, 1000));
        EXPECT_EQ(clock.Events(), (Events{"wait 0", "look", "wait 100", "look", "wait 100"}));
    }
}

TEST_F(FontWatchLoop, SleepsWithoutAHandle)
{
    EXPECT_FALSE(Run(nullptr, 70, 210));
    EXPECT_EQ(clock.Events(), (Events{"look", "sleep 70", "look", "sleep 70", "look", "sleep 70"}));
}

TEST_F(FontWatchLoop, GivesTheHandleTheFullTime)
{
    EXPECT_FALSE(Run(kHandle, 100, 200));
    EXPECT_EQ(clock.Events(), (Events{"wait 0", "look", "wait 100", "look", "wait 100"}));
}

TEST_F(FontWatchLoop, TestsTheHandleThoughThereIsNoTime)
{
    EXPECT_FALSE(Run(kHandle, 100, 0));
    EXPECT_EQ(clock.Events(), (Events{"wait 0"}));
    clock.Restart({WAIT_OBJECT_0});
    EXPECT_TRUE(Run(kHandle, 100, 0));
}

struct TimeCase
{
    const char* name;
    DWORD interval;
    DWORD total;
    size_t passes;
};

class FontWatchTime : public FontWatchLoop, public testing::WithParamInterface<TimeCase>
{
};

TEST_P(FontWatchTime, AllowsAPassForEveryIntervalThatHasBegun)
{
    EXPECT_FALSE(Run(nullptr, GetParam().interval, GetParam().total));
    EXPECT_EQ(clock.Passes(), GetParam().passes);
}

INSTANTIATE_TEST_SUITE_P(Times, FontWatchTime,
    testing::Values(TimeCase{"None", 100, 0, 0}, TimeCase{"Least", 100, 1, 1}, TimeCase{"Almost", 100, 99, 1},
        TimeCase{"One", 100, 100, 1}, TimeCase{"OneAndABit", 100, 101, 2}, TimeCase{"Many", 100, 60000, 600}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
