// The icon of the program. The build makes a program of this file for each set of icons and says in
// EXPECTED_ICON which number is the first, 0 for none.
#include "ui/host_icon.h"

#include <gtest/gtest.h>

namespace
{

constexpr DWORD kExpectedIcon = EXPECTED_ICON;

HICON LoadExpected()
{
    return kExpectedIcon == 0 ? nullptr : ::LoadIconW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kExpectedIcon));
}

TEST(HostIcon, IsTheFirstByNumber)
{
    DWORD identifier = 4711;
    const HICON icon = arvmui::FindHostIcon(&identifier);
    EXPECT_EQ(identifier, kExpectedIcon);
    EXPECT_EQ(icon != nullptr, kExpectedIcon != 0);
    EXPECT_EQ(icon, LoadExpected());
}

TEST(HostIcon, NumberNeedNotBeAskedFor)
{
    EXPECT_EQ(arvmui::FindHostIcon(nullptr), LoadExpected());
}

}  // namespace
