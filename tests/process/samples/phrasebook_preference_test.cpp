// A user of the phrasebook prefers other languages: they are stored, and the next start speaks them.
#include "phrasebook_ids.h"
#include "process/samples/phrasebook_fixture.h"
#include "support/scratch_registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace arvmui_test
{
namespace
{

constexpr wchar_t kProductKey[] = L"SOFTWARE\\Pelkor\\MUI";
constexpr wchar_t kPreference[] = L"UILocale";
constexpr wchar_t kNone[] = L"<none>";

// Controls of the library's dialogs
constexpr int kChosenList = 302;
constexpr int kUpButton = 304;
constexpr int kRemoveButton = 306;
constexpr int kAddButton = 307;
constexpr int kAvailableList = 311;
constexpr UINT kEnglishName = 3;
constexpr UINT kNativeName = 4;

// The user's stored preference, put back as it was when the test ends.
class PhrasebookPreference : public testing::Test
{
protected:
    PhrasebookPreference() : before_(Stored()) {}
    ~PhrasebookPreference() override
    {
        if (before_ == kNone)
            ::RegDeleteKeyValueW(HKEY_CURRENT_USER, kProductKey, kPreference);
        else
            Store(before_);
    }

    static std::wstring Stored() { return StoredText(HKEY_CURRENT_USER, kProductKey, kPreference, KEY_WOW64_32KEY); }
    static void Store(const std::wstring& list)
    {
        StoreValue(HKEY_CURRENT_USER, kProductKey, kPreference, REG_SZ, list.c_str(),
            static_cast<DWORD>((list.size() + 1) * sizeof(wchar_t)), KEY_WOW64_32KEY);
    }

private:
    std::wstring before_;
};

HWND OpenSettings(HWND window)
{
    GiveCommand(window, COMMAND_ID_PREFERRED_LANGUAGES);
    return WaitForDialogOf(window);
}

// Whether the dialog shows a language's own name or its English one depends on the keyboards.
std::vector<int> PlacesOf(const std::vector<std::wstring>& items, const std::wstring& locale)
{
    for (const UINT name : {kNativeName, kEnglishName})
    {
        const auto found = std::find(items.begin(), items.end(), LibraryText(locale, name));
        if (found != items.end()) return {static_cast<int>(found - items.begin())};
    }
    return {};
}

void AddLanguage(HWND settings, const std::wstring& locale)
{
    ASSERT_TRUE(::PostMessageW(::GetDlgItem(settings, kAddButton), BM_CLICK, 0, 0));
    const HWND dialog = WaitForDialogOf(settings);
    ASSERT_NE(dialog, nullptr);
    const std::vector<int> places = PlacesOf(ListItems(dialog, kAvailableList), locale);
    ASSERT_EQ(places.size(), size_t{1}) << "not offered";
    SelectItems(dialog, kAvailableList, places);
    ASSERT_TRUE(ClickButton(dialog, IDOK));
    ASSERT_TRUE(WaitUntilGone(dialog, settings));
}

TEST_F(PhrasebookPreference, CountsAtTheNextStart)
{
    Store(L"de-DE");
    {
        const Phrasebook phrasebook(L"");
        const HWND window = phrasebook.Window();
        ASSERT_NE(window, nullptr);
        ASSERT_EQ(WindowText(window), LanguageOf(L"de").title);

        const HWND settings = OpenSettings(window);
        ASSERT_NE(settings, nullptr);
        SelectItems(settings, kChosenList, {0});
        ASSERT_TRUE(ClickButton(settings, kRemoveButton));
        AddLanguage(settings, L"ja");
        ASSERT_TRUE(ClickButton(settings, IDOK));
        ASSERT_TRUE(WaitUntilGone(settings, window));

        EXPECT_EQ(Stored(), L"ja-JP");
        EXPECT_EQ(WindowText(window), LanguageOf(L"de").title) << "it goes on in its language";
        ::PostMessageW(window, WM_CLOSE, 0, 0);
        EXPECT_EQ(phrasebook.ExitCode(), 0u);
    }
    const Phrasebook next(L"");
    const HWND window = next.Window();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(WindowText(window), LanguageOf(L"ja").title);
}

TEST_F(PhrasebookPreference, FirstOfSeveralCounts)
{
    Store(L"fr-FR,es-ES");
    {
        const Phrasebook phrasebook(L"");
        const HWND window = phrasebook.Window();
        ASSERT_NE(window, nullptr);
        const HWND settings = OpenSettings(window);
        ASSERT_NE(settings, nullptr);
        SelectItems(settings, kChosenList, {1});
        ASSERT_TRUE(ClickButton(settings, kUpButton));
        ASSERT_TRUE(ClickButton(settings, IDOK));
        ASSERT_TRUE(WaitUntilGone(settings, window));
        EXPECT_EQ(Stored(), L"es-ES,fr-FR");
    }
    const Phrasebook next(L"");
    const HWND window = next.Window();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(WindowText(window), LanguageOf(L"es").title);
}

TEST_F(PhrasebookPreference, IsNotTouchedByCancelling)
{
    Store(L"de-DE");
    const Phrasebook phrasebook(L"");
    const HWND window = phrasebook.Window();
    ASSERT_NE(window, nullptr);
    const HWND settings = OpenSettings(window);
    ASSERT_NE(settings, nullptr);
    AddLanguage(settings, L"ja");
    ASSERT_TRUE(ClickButton(settings, IDCANCEL));
    ASSERT_TRUE(WaitUntilGone(settings, window));
    EXPECT_EQ(Stored(), L"de-DE");
}

}  // namespace
}  // namespace arvmui_test
