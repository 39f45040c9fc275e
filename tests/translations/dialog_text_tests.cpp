/*
 * The texts of the dialogs in the resource libraries: translated, with access keys, and short enough
 * for their controls.
 */
#include "dialog_template.h"
#include "resources/resource_ids.h"
#include "support/built_locales.h"

#include <gtest/gtest.h>

#include <array>
#include <cwctype>
#include <set>

namespace
{

using namespace arvmui_test;

constexpr std::array<WORD, 2> kDialogs = {ARVMUI_DIALOG_SETTINGS, ARVMUI_DIALOG_ADD_LANGUAGES};

/* Texts that no language shares with English. */
constexpr UINT kTranslatedStrings[] = {ARVMUI_STRING_KEYWORD_USER, ARVMUI_STRING_KEYWORD_SYSTEM,
    ARVMUI_STRING_KEYWORD_UILANG, ARVMUI_STRING_KEYWORD_KIV, ARVMUI_STRING_KEYWORD_MSIE, ARVMUI_STRING_BUTTON_CANCEL,
    ARVMUI_STRING_BUTTON_YES, ARVMUI_STRING_LANGUAGE_DIALOG_TITLE, ARVMUI_STRING_LANGUAGE_DIALOG_TEXT,
    ARVMUI_STRING_SETTINGS_TITLE_USER, ARVMUI_STRING_SETTINGS_TITLE_MACHINE, ARVMUI_STRING_ERROR_CAPTION,
    ARVMUI_STRING_OUT_OF_MEMORY, ARVMUI_STRING_PATH_FORMAT_FAILED, ARVMUI_STRING_LIBRARY_NOT_FOUND,
    ARVMUI_STRING_LIBRARY_NOT_LOADED, ARVMUI_STRING_FILE_NOT_FOUND, ARVMUI_STRING_SETTING_NOT_WRITTEN,
    ARVMUI_STRING_SETTING_NOT_REMOVED, ARVMUI_STRING_DIALOG_NOT_SHOWN};

class OpenedLibrary
{
public:
    explicit OpenedLibrary(const std::wstring& locale)
        : library_(::LoadLibraryExW(BuiltResourceLibrary(locale).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE))
    {
    }
    ~OpenedLibrary() { ::FreeLibrary(library_); }
    OpenedLibrary(const OpenedLibrary&) = delete;
    OpenedLibrary& operator=(const OpenedLibrary&) = delete;

    HMODULE Get() const { return library_; }
    DialogTemplate Dialog(WORD dialog) const { return ReadDialogTemplate(library_, dialog); }
    std::wstring String(UINT id) const
    {
        wchar_t text[1024] = {};
        ::LoadStringW(library_, id, text, 1024);
        return text;
    }

private:
    HMODULE library_;
};

/* The characters behind each '&' that marks one. */
std::vector<wchar_t> AccessKeys(const std::wstring& label)
{
    std::vector<wchar_t> keys;
    for (size_t at = 0; at < label.size(); ++at)
    {
        if (label[at] != L'&') continue;
        ++at;
        if (at == label.size() || label[at] != L'&') keys.push_back(at == label.size() ? L'\0' : label[at]);
    }
    return keys;
}

/* As the system folds letters when a key is pressed. */
wchar_t UpperCase(wchar_t character)
{
    ::CharUpperBuffW(&character, 1);
    return character;
}

bool IsLetterOrDigit(wchar_t character)
{
    WORD type = 0;
    return ::GetStringTypeW(CT_CTYPE1, &character, 1, &type) && (type & (C1_ALPHA | C1_DIGIT)) != 0;
}

/* What the user reads: without '&', and without an access key in brackets behind the text. */
std::wstring WithoutAccessKey(std::wstring label)
{
    const size_t mark = label.find(L'&');
    if (mark == std::wstring::npos) return label;
    const bool isInBrackets = mark > 0 && label[mark - 1] == L'(' && mark + 2 < label.size() && label[mark + 2] == L')';
    if (!isInBrackets) return label.erase(mark, 1);
    label.erase(mark - 1, 4);
    if (mark > 1 && label[mark - 2] == L' ') label.erase(mark - 2, 1);
    return label;
}

/* Columns of a fixed-width font: ideographs and syllables take two, marks on other letters none. */
int Columns(const std::wstring& text)
{
    int columns = 0;
    for (const wchar_t c : text)
    {
        WORD type = 0;
        ::GetStringTypeW(CT_CTYPE3, &c, 1, &type);
        const bool isWide = (type & (C3_IDEOGRAPH | C3_KATAKANA | C3_HIRAGANA | C3_FULLWIDTH)) != 0
                            || (c >= 0x1100 && c <= 0x115F) || (c >= 0xAC00 && c <= 0xD7A3);
        const bool isMark = (type & (C3_NONSPACING | C3_DIACRITIC | C3_VOWELMARK)) != 0 && (type & C3_ALPHA) == 0;
        columns += isWide ? 2 : isMark ? 0 : 1;
    }
    return columns;
}

class DialogTexts : public testing::TestWithParam<std::wstring>
{
protected:
    OpenedLibrary own{GetParam()};
    OpenedLibrary english{L"en"};

    bool IsEnglish() const { return GetParam() == L"en"; }
};

TEST_P(DialogTexts, AreClean)
{
    for (const WORD dialog : kDialogs)
    {
        const DialogTemplate read = own.Dialog(dialog);
        std::vector<std::wstring> texts = {read.title};
        for (const DialogControl& control : read.controls)
            if (control.className != L"ListBox") texts.push_back(control.text);
        for (const std::wstring& text : texts)
        {
            ASSERT_FALSE(text.empty()) << dialog;
            EXPECT_FALSE(std::iswspace(text.front())) << dialog;
            EXPECT_FALSE(std::iswspace(text.back())) << dialog;
            for (const wchar_t c : text) EXPECT_TRUE(c >= 0x20 && c != 0xFFFD && c != L'%') << dialog;
        }
    }
}

TEST_P(DialogTexts, AreTranslated)
{
    if (IsEnglish()) return;
    for (const WORD dialog : kDialogs)
    {
        const DialogTemplate translated = own.Dialog(dialog);
        const DialogTemplate original = english.Dialog(dialog);
        EXPECT_NE(translated.title, original.title) << dialog;
        ASSERT_EQ(translated.controls.size(), original.controls.size());
        for (size_t i = 0; i < translated.controls.size(); ++i)
        {
            const DialogControl& control = translated.controls[i];
            if (control.className == L"ListBox" || control.id == IDOK) continue;  // "OK" is known everywhere
            EXPECT_NE(WithoutAccessKey(control.text), WithoutAccessKey(original.controls[i].text))
                << dialog << ' ' << control.id;
        }
    }
}

TEST_P(DialogTexts, StringsAreTranslatedToo)
{
    if (IsEnglish()) return;
    for (const UINT id : kTranslatedStrings) EXPECT_NE(own.String(id), english.String(id)) << id;
}

TEST_P(DialogTexts, SayTheSameAsTheStrings)
{
    EXPECT_EQ(own.Dialog(ARVMUI_DIALOG_SETTINGS).title, own.String(ARVMUI_STRING_SETTINGS_TITLE_USER));
    EXPECT_NE(own.String(ARVMUI_STRING_SETTINGS_TITLE_USER), own.String(ARVMUI_STRING_SETTINGS_TITLE_MACHINE));
    for (const WORD dialog : kDialogs)
    {
        for (const DialogControl& control : own.Dialog(dialog).controls)
        {
            if (control.id != IDOK && control.id != IDCANCEL) continue;
            EXPECT_EQ(WithoutAccessKey(control.text), own.String(ARVMUI_STRING_BUTTON_BASE + control.id))
                << dialog << ' ' << control.id;
        }
    }
}

TEST_P(DialogTexts, HaveOneAccessKeyEachAndNoneTwice)
{
    for (const WORD dialog : kDialogs)
    {
        std::set<wchar_t> taken;
        for (const DialogControl& control : own.Dialog(dialog).controls)
        {
            if (control.className == L"ListBox") continue;
            const std::vector<wchar_t> keys = AccessKeys(control.text);
            ASSERT_EQ(keys.size(), size_t{1}) << dialog << ' ' << control.id;
            EXPECT_TRUE(IsLetterOrDigit(keys[0])) << dialog << ' ' << control.id;
            EXPECT_TRUE(taken.insert(UpperCase(keys[0])).second) << dialog << ' ' << control.id;
        }
    }
}

/* Names and texts of a language in Latin script are shown whatever keyboards are installed, as long as
 * all their characters are Latin ones; a typographic apostrophe is none. */
TEST_P(DialogTexts, LatinNamesAndTextsAreLatinThroughout)
{
    const auto isLatin = [](const std::wstring& text)
    {
        for (const wchar_t c : text)
            if (c >= 0x0370 && (c < 0x1E00 || c > 0x1EFF)) return false;
        return true;
    };
    if (!isLatin(own.String(ARVMUI_STRING_NATIVE_NAME))) return;
    for (const UINT id : {ARVMUI_STRING_KEYWORD_USER, ARVMUI_STRING_KEYWORD_SYSTEM, ARVMUI_STRING_KEYWORD_UILANG,
             ARVMUI_STRING_KEYWORD_KIV, ARVMUI_STRING_KEYWORD_MSIE, ARVMUI_STRING_BUTTON_OK,
             ARVMUI_STRING_BUTTON_CANCEL, ARVMUI_STRING_LANGUAGE_DIALOG_TITLE, ARVMUI_STRING_LANGUAGE_DIALOG_TEXT})
        EXPECT_TRUE(isLatin(own.String(id))) << id;
}

// ---- Room --------------------------------------------------------------------------------------------

/* Whatever the font: a column is a quarter of the average character's four dialog units wide at most. */
TEST_P(DialogTexts, FitTheirControlsByTheirLength)
{
    constexpr int kUnitsOfAColumn = 4;
    constexpr int kBorders = 6;  // dialog units that a button needs for its frame
    for (const WORD dialog : kDialogs)
    {
        for (const DialogControl& control : own.Dialog(dialog).controls)
        {
            const int borders = control.className == L"Button" ? kBorders : 0;
            EXPECT_LE(Columns(WithoutAccessKey(control.text)) * kUnitsOfAColumn + borders, control.place.width)
                << dialog << ' ' << control.id;
        }
    }
}

/* The dialog as a window that is never shown. */
class HiddenDialog
{
public:
    HiddenDialog(HMODULE library, WORD dialog)
        : window_(::CreateDialogParamW(library, MAKEINTRESOURCEW(dialog), nullptr, Ignore, 0))
    {
    }
    ~HiddenDialog() { ::DestroyWindow(window_); }
    HiddenDialog(const HiddenDialog&) = delete;
    HiddenDialog& operator=(const HiddenDialog&) = delete;

    HWND Get() const { return window_; }

private:
    static INT_PTR CALLBACK Ignore(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

    HWND window_;
};

SIZE Measure(HFONT font, const std::wstring& text, UINT flags)
{
    const HDC screen = ::GetDC(nullptr);
    const HGDIOBJ previous = ::SelectObject(screen, font);
    RECT bounds = {};
    ::DrawTextW(screen, text.c_str(), static_cast<int>(text.size()), &bounds, DT_CALCRECT | DT_SINGLELINE | flags);
    ::SelectObject(screen, previous);
    ::ReleaseDC(nullptr, screen);
    return {bounds.right, bounds.bottom};
}

/* Fonts differ between systems, so a fifth of the room is left free. */
int WithMargin(LONG width)
{
    return width * 5 / 4;
}

TEST_P(DialogTexts, FitTheirControlsInTheDialogsFont)
{
    for (const WORD dialog : kDialogs)
    {
        const HiddenDialog hidden(own.Get(), dialog);
        ASSERT_NE(hidden.Get(), nullptr) << dialog;
        const HFONT font = reinterpret_cast<HFONT>(::SendMessageW(hidden.Get(), WM_GETFONT, 0, 0));
        ASSERT_NE(font, nullptr);
        RECT borders = {0, 0, 6, 0};
        ASSERT_TRUE(::MapDialogRect(hidden.Get(), &borders));
        HWND window = ::GetWindow(hidden.Get(), GW_CHILD);
        for (const DialogControl& control : own.Dialog(dialog).controls)
        {
            ASSERT_NE(window, nullptr);
            RECT client = {};
            ::GetClientRect(window, &client);
            const SIZE size = Measure(font, control.text, 0);
            const int room = client.right - (control.className == L"Button" ? borders.right : 0);
            EXPECT_LE(WithMargin(size.cx), room) << dialog << ' ' << control.id;
            EXPECT_LE(size.cy, client.bottom) << dialog << ' ' << control.id;
            window = ::GetWindow(window, GW_HWNDNEXT);
        }
    }
}

TEST_P(DialogTexts, TitlesFitTheCaption)
{
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof(metrics);
    ASSERT_TRUE(::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0));
    const HFONT font = ::CreateFontIndirectW(&metrics.lfCaptionFont);
    for (const WORD dialog : kDialogs)
    {
        const HiddenDialog hidden(own.Get(), dialog);
        ASSERT_NE(hidden.Get(), nullptr) << dialog;
        RECT client = {};
        ::GetClientRect(hidden.Get(), &client);
        const int room = client.right - metrics.iCaptionWidth - ::GetSystemMetrics(SM_CXSMICON);
        std::vector<std::wstring> titles = {own.Dialog(dialog).title};
        if (dialog == ARVMUI_DIALOG_SETTINGS) titles.push_back(own.String(ARVMUI_STRING_SETTINGS_TITLE_MACHINE));
        for (const std::wstring& title : titles)
            EXPECT_LE(WithMargin(Measure(font, title, DT_NOPREFIX).cx), room) << dialog;
    }
    ::DeleteObject(font);
}

INSTANTIATE_TEST_SUITE_P(Locales, DialogTexts, testing::ValuesIn(BuiltLocales()), LocaleTestName);

}  // namespace
