// What one look of the font watch does to real windows.
#include "installer/font_watch.h"
#include "support/dialog_controls.h"
#include "unit/installer/font_message_class.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace
{

using arvmui_test::FontMessage;
using arvmui_test::FontMessageClass;

// No other window may have it.
std::wstring UniqueTitle()
{
    static int number = 0;
    return L"Font watch " + std::to_wstring(::GetCurrentProcessId()) + L" " + std::to_wstring(++number);
}

HFONT MakeFont(int height)
{
    return ::CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
}

HWND MakeWindow(const std::wstring& title)
{
    return ::CreateWindowExW(
        0, L"#32770", title.c_str(), WS_OVERLAPPED, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
}

HWND MakeChild(HWND parent, const wchar_t* className)
{
    return ::CreateWindowExW(0, className, L"", WS_CHILD, 0, 0, 10, 10, parent, nullptr, nullptr, nullptr);
}

HFONT FontOf(HWND window)
{
    return reinterpret_cast<HFONT>(::SendMessageW(window, WM_GETFONT, 0, 0));
}

void GiveFont(HWND window, HFONT font)
{
    ::SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
}

void DeliverPostedMessages()
{
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageW(&message);
}

class FontWatchWindows : public testing::Test
{
protected:
    ~FontWatchWindows() override
    {
        ::DestroyWindow(other);
        ::DestroyWindow(window);
        ::DeleteObject(buttonFont);
        ::DeleteObject(textFont);
    }

    // One pass, whose messages are delivered.
    void Look(const std::vector<std::wstring>& titles)
    {
        arvmui::FontResetterNames names;
        for (const std::wstring& name : titles) names.AddCopy(name.c_str());
        EXPECT_FALSE(arvmui::RunFontResetterLoop(nullptr, 1, 1, names));
        DeliverPostedMessages();
    }

    HWND Text(HWND parent, const wchar_t* className = L"static") const
    {
        const HWND text = MakeChild(parent, className);
        GiveFont(text, textFont);
        return text;
    }
    HWND Button(HWND parent, HFONT font) const
    {
        const HWND button = MakeChild(parent, L"button");
        GiveFont(button, font);
        return button;
    }

    std::wstring title = UniqueTitle();
    HWND window = MakeWindow(title);
    HWND other = nullptr;
    HFONT buttonFont = MakeFont(20);
    HFONT textFont = MakeFont(30);
};

TEST_F(FontWatchWindows, GiveTheirTextsTheFontOfTheButton)
{
    const HWND first = Text(window);
    Button(window, buttonFont);
    const HWND second = Text(window);
    Look({title});
    EXPECT_EQ(FontOf(first), buttonFont);
    EXPECT_EQ(FontOf(second), buttonFont);
}

TEST_F(FontWatchWindows, AreFoundByAnyOfTheNames)
{
    const HWND text = Text(window);
    Button(window, buttonFont);
    Look({L"some name", title, L"another"});
    EXPECT_EQ(FontOf(text), buttonFont);
}

// Names from the list of installed programs are cut at the same place.
TEST_F(FontWatchWindows, AreFoundByTheFirst255CharactersOfTheirTitle)
{
    const std::wstring name = (title + std::wstring(255, L't')).substr(0, 255);
    const HWND text = Text(window);
    Button(window, buttonFont);
    for (const std::wstring& longTitle : {name, name + L"x", name + std::wstring(100, L'x')})
    {
        GiveFont(text, textFont);
        ::SetWindowTextW(window, longTitle.c_str());
        Look({name});
        EXPECT_EQ(FontOf(text), buttonFont) << longTitle.size();
    }
}

TEST_F(FontWatchWindows, KeepTheirFontsUnderAnotherTitle)
{
    const HWND text = Text(window);
    Button(window, buttonFont);
    std::wstring capital = title;
    ::CharUpperW(capital.data());
    Look({capital, title + L"1", title.substr(0, title.size() - 1), L" " + title, L"font watch"});
    EXPECT_EQ(FontOf(text), textFont);
}

TEST_F(FontWatchWindows, AreLeftAloneWithoutATitle)
{
    ::SetWindowTextW(window, L"");
    const HWND text = Text(window);
    Button(window, buttonFont);
    Look({title, L""});
    EXPECT_EQ(FontOf(text), textFont);
}

TEST_F(FontWatchWindows, AreLeftAloneWithoutNames)
{
    const HWND text = Text(window);
    Button(window, buttonFont);
    Look({});
    EXPECT_EQ(FontOf(text), textFont);
}

TEST_F(FontWatchWindows, GiveTheirTextsTheSystemFontWithoutAButton)
{
    const HWND text = Text(window);
    Look({title});
    EXPECT_EQ(FontOf(text), nullptr);
}

TEST_F(FontWatchWindows, GiveTheirTextsTheSystemFontWithAButtonThatHasIt)
{
    const HWND text = Text(window);
    Button(window, nullptr);
    Look({title});
    EXPECT_EQ(FontOf(text), nullptr);
}

TEST_F(FontWatchWindows, FollowTheFirstButton)
{
    const HFONT secondFont = MakeFont(40);
    const HWND text = Text(window);
    const HWND buttons[] = {Button(window, buttonFont), Button(window, secondFont)};
    // The system has the order of children, which need not be that of their creation.
    HWND first = ::FindWindowExW(window, nullptr, L"button", nullptr);
    ASSERT_TRUE(first == buttons[0] || first == buttons[1]);
    Look({title});
    EXPECT_EQ(FontOf(text), FontOf(first));
    ::DeleteObject(secondFont);
}

TEST_F(FontWatchWindows, KeepAllFontsButThoseOfTexts)
{
    const HWND edit = MakeChild(window, L"edit");
    GiveFont(edit, textFont);
    const HWND button = Button(window, buttonFont);
    Look({title});
    EXPECT_EQ(FontOf(edit), textFont);
    EXPECT_EQ(FontOf(button), buttonFont);
}

TEST_F(FontWatchWindows, MayNestTheirControls)
{
    const HWND panel = MakeChild(window, L"#32770");
    const HWND text = Text(MakeChild(panel, L"#32770"));
    Button(panel, buttonFont);
    Look({title});
    EXPECT_EQ(FontOf(text), buttonFont);
}

BOOL CALLBACK CollectChild(HWND child, LPARAM context)
{
    reinterpret_cast<std::vector<HWND>*>(context)->push_back(child);
    return TRUE;
}

TEST_F(FontWatchWindows, HaveTheirFirstSixteenTextsReset)
{
    Button(window, buttonFont);
    for (int i = 0; i < 20; ++i) Text(window);
    std::vector<HWND> texts;
    ::EnumChildWindows(window, CollectChild, reinterpret_cast<LPARAM>(&texts));
    std::erase_if(texts, [this](HWND child) { return FontOf(child) != textFont; });
    ASSERT_EQ(texts.size(), 20U);
    Look({title});
    for (size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(FontOf(texts[i]), i < 16 ? buttonFont : textFont) << i;
}

TEST_F(FontWatchWindows, AButtonBehindManyTextsCounts)
{
    std::vector<HWND> texts;
    for (int i = 0; i < 17; ++i) texts.push_back(Text(window));
    const HWND button = Button(window, buttonFont);
    ::SetWindowPos(button, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    Look({title});
    EXPECT_EQ(std::count_if(texts.begin(), texts.end(), [this](HWND text) { return FontOf(text) == buttonFont; }), 16);
}

TEST_F(FontWatchWindows, EachHaveTheirOwnButtonAndTexts)
{
    other = MakeWindow(title);
    Button(window, buttonFont);
    for (int i = 0; i < 16; ++i) Text(window);
    const HWND lonely = Text(other);
    Look({title});
    EXPECT_EQ(FontOf(lonely), nullptr);
}

TEST_F(FontWatchWindows, OfSeveralNamesAreAllReset)
{
    const std::wstring otherTitle = UniqueTitle();
    other = MakeWindow(otherTitle);
    const HWND texts[] = {Text(window), Text(other)};
    Button(window, buttonFont);
    Button(other, buttonFont);
    Look({otherTitle, title});
    EXPECT_EQ(FontOf(texts[0]), buttonFont);
    EXPECT_EQ(FontOf(texts[1]), buttonFont);
}

TEST_F(FontWatchWindows, MayBeHiddenOrShown)
{
    const HWND text = Text(window);
    Button(window, buttonFont);
    ::ShowWindow(window, SW_SHOWNOACTIVATE);
    Look({title});
    EXPECT_EQ(FontOf(text), buttonFont);
}

// ---- The messages themselves, and the names of classes.

TEST_F(FontWatchWindows, PostTheFontWithAnOrderToRedraw)
{
    const FontMessageClass texts(L"sTATic");
    const HWND text = MakeChild(window, L"sTATic");
    Button(window, buttonFont);
    arvmui::FontResetterNames names;
    names.AddCopy(title.c_str());
    arvmui::RunFontResetterLoop(nullptr, 1, 1, names);
    EXPECT_TRUE(texts.Messages().empty()) << "the message was sent, not posted";
    DeliverPostedMessages();
    const FontMessage expected = {text, WM_SETFONT, reinterpret_cast<WPARAM>(buttonFont), TRUE};
    EXPECT_EQ(texts.Messages(), std::vector<FontMessage>{expected});
    ::DestroyWindow(text);
}

TEST_F(FontWatchWindows, AskTheButtonOfAnySpelling)
{
    const FontMessageClass buttons(L"bUtTOn", buttonFont);
    const HWND button = MakeChild(window, L"bUtTOn");
    const HWND text = Text(window);
    Look({title});
    EXPECT_EQ(FontOf(text), buttonFont);
    const FontMessage expected = {button, WM_GETFONT, 0, 0};
    EXPECT_EQ(buttons.Messages(), std::vector<FontMessage>{expected});
    ::DestroyWindow(button);
}

TEST_F(FontWatchWindows, TakeOnlyWholeClassNames)
{
    const FontMessageClass longer(L"Static2");
    const FontMessageClass shorter(L"Stati");
    const FontMessageClass buttons(L"Buttons", buttonFont);
    const std::wstring longName = L"static" + std::wstring(100, L'x');
    const FontMessageClass longest(longName.c_str());
    for (const wchar_t* const name : {L"Static2", L"Stati", L"Buttons", longName.c_str()}) MakeChild(window, name);
    Look({title});
    EXPECT_TRUE(longer.Messages().empty());
    EXPECT_TRUE(shorter.Messages().empty());
    EXPECT_TRUE(buttons.Messages().empty());
    EXPECT_TRUE(longest.Messages().empty());
    ::DestroyWindow(window);
    window = nullptr;
}

TEST_F(FontWatchWindows, AskNoButtonWhenTheTitleDoesNotMatch)
{
    const FontMessageClass buttons(L"bUtTOn", buttonFont);
    MakeChild(window, L"bUtTOn");
    Look({title + L"x"});
    EXPECT_TRUE(buttons.Messages().empty());
    ::DestroyWindow(window);
    window = nullptr;
}

// ---- Windows of other threads.

TEST_F(FontWatchWindows, MayBelongToAnotherThread)
{
    const std::wstring otherTitle = UniqueTitle();
    std::atomic<HWND> text{nullptr};
    std::thread owner(
        [&]
        {
            const HWND foreign = MakeWindow(otherTitle);
            const HWND itsText = Text(foreign);
            Button(foreign, buttonFont);
            text = itsText;
            MSG message;
            while (::GetMessageW(&message, nullptr, 0, 0) > 0) ::DispatchMessageW(&message);
            ::DestroyWindow(foreign);
        });
    ASSERT_TRUE(arvmui_test::WaitUntil([&] { return text.load() != nullptr; }));
    const HWND itsText = text;
    Look({otherTitle});
    EXPECT_TRUE(arvmui_test::WaitUntil([&] { return FontOf(itsText) == buttonFont; }));
    ::PostThreadMessageW(::GetWindowThreadProcessId(itsText, nullptr), WM_QUIT, 0, 0);
    owner.join();
}

}  // namespace
