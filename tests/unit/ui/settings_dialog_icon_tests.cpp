// The icons of the settings dialog and of the one that adds languages. This program has an icon, number
// 7, and counts how often it is looked for.
#include "settings_dialog_fixture.h"
#include "support/import_replacement.h"

#include <atomic>

namespace
{

std::atomic<int> g_lookups{0};

BOOL WINAPI EnumerateNames(HMODULE module, LPCWSTR type, ENUMRESNAMEPROCW procedure, LONG_PTR context)
{
    if (type == RT_GROUP_ICON) ++g_lookups;
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", EnumResourceNamesW)(module, type, procedure, context);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(EnumResourceNamesW, EnumerateNames)

namespace
{

using namespace arvmui_test;

struct Icons
{
    HICON smallIcon;
    HICON bigIcon;
    bool operator==(const Icons&) const = default;
};

Icons IconsOf(HWND dialog)
{
    const auto read = [dialog](WPARAM kind)
    { return reinterpret_cast<HICON>(::SendMessageW(dialog, WM_GETICON, kind, 0)); };
    return {read(ICON_SMALL), read(ICON_BIG)};
}

class OwnIcon
{
public:
    OwnIcon()
    {
        constexpr BYTE kPixels[16 * 2] = {};
        icon_ = ::CreateIcon(nullptr, 16, 16, 1, 1, kPixels, kPixels);
    }
    ~OwnIcon() { ::DestroyIcon(icon_); }
    OwnIcon(const OwnIcon&) = delete;
    OwnIcon& operator=(const OwnIcon&) = delete;

    HICON Get() const { return icon_; }

private:
    HICON icon_;
};

class SettingsDialogIcons : public SettingsDialog
{
protected:
    SettingsDialogIcons() { g_lookups = 0; }

    // The host's icon is one and the same however often it is loaded.
    const HICON host = ::LoadIconW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(7));
    OwnIcon small;
    OwnIcon big;
};

TEST_F(SettingsDialogIcons, AreTheCallersAndTheHostsIsNotLookedFor)
{
    const HICON icons[] = {small.Get(), big.Get()};
    const OpenSettings settings(kUserScope, icons);
    const Icons expected = {small.Get(), big.Get()};
    EXPECT_EQ(IconsOf(settings.Window()), expected);
    EXPECT_EQ(IconsOf(settings.OpenAdd()), expected);
    EXPECT_EQ(g_lookups, 0);
}

TEST_F(SettingsDialogIcons, AreTheHostsWithoutIconsOfTheCaller)
{
    ASSERT_NE(host, nullptr);
    const OpenSettings settings;
    const Icons expected = {host, host};
    EXPECT_EQ(IconsOf(settings.Window()), expected);
    const int lookups = g_lookups;
    EXPECT_GT(lookups, 0);
    EXPECT_EQ(IconsOf(settings.OpenAdd()), expected);
    EXPECT_EQ(g_lookups, lookups) << "the icon found first is kept";
}

TEST_F(SettingsDialogIcons, HostsStandsInForTheMissingSmallOne)
{
    const HICON icons[] = {nullptr, big.Get()};
    const OpenSettings settings(kUserScope, icons);
    const Icons expected = {host, big.Get()};
    EXPECT_EQ(IconsOf(settings.Window()), expected);
    EXPECT_EQ(IconsOf(settings.OpenAdd()), expected);
}

TEST_F(SettingsDialogIcons, HostsStandsInForTheMissingBigOne)
{
    const HICON icons[] = {small.Get(), nullptr};
    const OpenSettings settings(kUserScope, icons);
    const Icons expected = {small.Get(), host};
    EXPECT_EQ(IconsOf(settings.Window()), expected);
    EXPECT_EQ(IconsOf(settings.OpenAdd()), expected);
}

TEST_F(SettingsDialogIcons, HostsStandsInForTwoMissingOnes)
{
    const HICON icons[] = {nullptr, nullptr};
    const OpenSettings settings(kUserScope, icons);
    const Icons expected = {host, host};
    EXPECT_EQ(IconsOf(settings.Window()), expected);
    EXPECT_EQ(IconsOf(settings.OpenAdd()), expected);
}

TEST_F(SettingsDialogIcons, CallersPairIsReadBeforeTheDialogIsShown)
{
    HICON icons[] = {small.Get(), big.Get()};
    const OpenSettings settings(kUserScope, icons);
    ASSERT_NE(settings.Window(), nullptr);
    icons[0] = nullptr;
    icons[1] = nullptr;
    const Icons expected = {small.Get(), big.Get()};
    EXPECT_EQ(IconsOf(settings.OpenAdd()), expected);
}

}  // namespace
