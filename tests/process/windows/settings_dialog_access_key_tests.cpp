// The settings dialog of every built resource library, worked by its access keys alone.
#include "support/built_locales.h"
#include "support/scratch_registry.h"
#include "support/settings_window.h"

#include <gtest/gtest.h>

namespace
{

using namespace arvmui_test;

HWND LabelOf(HWND dialog, int list)
{
    return ::GetWindow(::GetDlgItem(dialog, list), GW_HWNDPREV);
}

class SettingsAccessKeys : public testing::TestWithParam<std::wstring>
{
protected:
    SettingsAccessKeys() : ownLibrary_(ARVMUI_GetDescriptor()->resourceLibrary)
    {
        registry_.ReplaceRoot(HKEY_CURRENT_USER);
        StoreText(HKEY_CURRENT_USER, kProductKey, kListValue, L"x,y,z");
        library_ = ::LoadLibraryW(BuiltResourceLibrary(GetParam()).c_str());
        ARVMUI_GetDescriptor()->resourceLibrary = library_;
    }
    ~SettingsAccessKeys() override
    {
        ARVMUI_GetDescriptor()->resourceLibrary = ownLibrary_;
        if (library_) ::FreeLibrary(library_);
    }

    static std::wstring Stored() { return StoredText(HKEY_CURRENT_USER, kProductKey, kListValue); }

private:
    ScratchRegistry registry_;
    HMODULE ownLibrary_;
    HMODULE library_ = nullptr;
};

TEST_P(SettingsAccessKeys, PressTheRightButtons)
{
    OpenSettings settings;
    const HWND dialog = settings.Window();
    ASSERT_NE(dialog, nullptr);
    settings.Select({1});
    PressAccessKeyOf(dialog, ARVMUI_CONTROL_UP);
    ASSERT_TRUE(WaitUntil([&] { return settings.Chosen() == Names{L"y", L"x", L"z"}; }));
    PressAccessKeyOf(dialog, ARVMUI_CONTROL_DOWN);
    ASSERT_TRUE(WaitUntil([&] { return settings.Chosen() == Names{L"x", L"y", L"z"}; }));
    PressAccessKeyOf(dialog, ARVMUI_CONTROL_REMOVE);
    ASSERT_TRUE(WaitUntil([&] { return settings.Chosen() == Names{L"x", L"z"}; }));
    PressAccessKeyOf(dialog, ARVMUI_CONTROL_APPLY);
    ASSERT_TRUE(WaitUntil([] { return Stored() == L"x,z"; }));
    ASSERT_TRUE(::IsWindow(dialog));

    PressAccessKeyOf(dialog, ARVMUI_CONTROL_ADD);
    const HWND add = WaitForOwnedDialog(dialog);
    ASSERT_NE(add, nullptr);
    PressAccessKeyOf(add, IDCANCEL);
    ASSERT_TRUE(WaitUntilGone(add, dialog));
    ASSERT_EQ(settings.Chosen().size(), size_t{2});

    const HWND again = settings.OpenAdd();
    ASSERT_NE(again, nullptr);
    SelectItems(again, ARVMUI_CONTROL_AVAILABLE_LIST, {0});
    PressAccessKeyOf(again, IDOK);
    ASSERT_TRUE(WaitUntilGone(again, dialog));
    ASSERT_EQ(settings.Chosen().size(), size_t{3});

    PressAccessKeyOf(dialog, IDCANCEL);
    ASSERT_TRUE(settings.Ends());
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"x,z");
}

TEST_P(SettingsAccessKeys, SaveWithTheOneOfOk)
{
    OpenSettings settings;
    settings.Select({0, 1});
    ASSERT_TRUE(settings.Click(ARVMUI_CONTROL_REMOVE));
    PressAccessKeyOf(settings.Window(), IDOK);
    ASSERT_TRUE(settings.Ends());
    EXPECT_TRUE(settings.Result());
    EXPECT_EQ(Stored(), L"z");
}

TEST_P(SettingsAccessKeys, LeadFromTheLabelsToTheLists)
{
    const auto leads = [](HWND dialog, int list)
    {
        FocusControl(dialog, IDCANCEL);
        PressAccessKey(dialog, AccessKeyOf(LabelOf(dialog, list)));
        const HWND cancel = ::GetDlgItem(dialog, IDCANCEL);
        return WaitUntil([=] { return FocusOf(dialog) != cancel; }) && FocusOf(dialog) == ::GetDlgItem(dialog, list);
    };
    EXPECT_TRUE(PassesUndisturbed(
        [&]
        {
            const OpenSettings settings;
            ::SetForegroundWindow(settings.Window());
            if (!leads(settings.Window(), ARVMUI_CONTROL_CHOSEN_LIST)) return false;
            const HWND add = settings.OpenAdd();
            ::SetForegroundWindow(add);
            return leads(add, ARVMUI_CONTROL_AVAILABLE_LIST);
        }));
}

INSTANTIATE_TEST_SUITE_P(Locales, SettingsAccessKeys, testing::ValuesIn(BuiltLocales()), LocaleTestName);

}  // namespace
