// Plays an installation whose windows are watched over: font_watch_host LIBRARY PACKAGE TITLE MODE
//
// Shows a window with a text and, in the mode "button", a button. Starts the watch in a session on the
// package, and says on lines of their own what became of it:
//
//   started            Start has come back
//   font of button     what the text got: "system" for none; "own" where it kept its own
//   helper 1234        identifiers of the helper processes of this one
//
// In the mode "stop" it calls Stop as soon as the text has a new font, from another thread than the one
// that is in Start. Ends with its input.
#include "support/dialog_controls.h"
#include "support/msi_database.h"

#include <windows.h>

#include <tlhelp32.h>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>

namespace
{

using Action = UINT(WINAPI*)(ULONG);

Action Find(HMODULE library, const char* name)
{
    return reinterpret_cast<Action>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}

void Say(const std::string& text)
{
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
}

HFONT MakeFont(int height)
{
    return ::CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0, 0, 0, 0, L"Tahoma");
}

// On a thread of its own, which delivers its messages.
class WatchedWindow
{
public:
    WatchedWindow(const wchar_t* title, bool hasButton) : thread_([this, title, hasButton] { Live(title, hasButton); })
    {
        arvmui_test::WaitUntil([this] { return text_.load() != nullptr; });
    }
    ~WatchedWindow()
    {
        ::PostThreadMessageW(::GetWindowThreadProcessId(text_, nullptr), WM_QUIT, 0, 0);
        thread_.join();
    }
    WatchedWindow(const WatchedWindow&) = delete;
    WatchedWindow& operator=(const WatchedWindow&) = delete;

    bool WaitForNewFont() const
    {
        return arvmui_test::WaitUntil([this] { return TextFont() != ownFont_; });
    }
    std::string Font() const
    {
        const HFONT font = TextFont();
        return font == ownFont_ ? "own" : font == buttonFont_ ? "button" : font == nullptr ? "system" : "unknown";
    }

private:
    HFONT TextFont() const { return reinterpret_cast<HFONT>(::SendMessageW(text_, WM_GETFONT, 0, 0)); }

    void Live(const wchar_t* title, bool hasButton)
    {
        const HWND window = ::CreateWindowExW(
            0, L"#32770", title, WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, nullptr, nullptr, nullptr, nullptr);
        const auto add = [window](const wchar_t* className, HFONT font)
        {
            const HWND child = ::CreateWindowExW(
                0, className, L"", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10, window, nullptr, nullptr, nullptr);
            ::SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
            return child;
        };
        if (hasButton) add(L"button", buttonFont_);
        text_ = add(L"static", ownFont_);
        MSG message;
        while (::GetMessageW(&message, nullptr, 0, 0) > 0) ::DispatchMessageW(&message);
        ::DestroyWindow(window);
    }

    const HFONT ownFont_ = MakeFont(20);
    const HFONT buttonFont_ = MakeFont(30);
    std::atomic<HWND> text_{nullptr};
    std::thread thread_;
};

void SayHelpers()
{
    const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL found = ::Process32FirstW(snapshot, &entry); found; found = ::Process32NextW(snapshot, &entry))
        if (entry.th32ParentProcessID == ::GetCurrentProcessId() && ::lstrcmpiW(entry.szExeFile, L"rundll32.exe") == 0)
            Say("helper " + std::to_string(entry.th32ProcessID));
    ::CloseHandle(snapshot);
}

}  // namespace

int wmain(int argc, wchar_t** argv)
{
    if (argc != 5) return 2;
    const std::wstring mode = argv[4];
    const arvmui_test::MsiHandle session = arvmui_test::OpenMsiSession(argv[2]);
    const HMODULE library = ::LoadLibraryW(argv[1]);
    const Action start = Find(library, "ARVMUI_MSI_StartFontResetter");
    const Action stop = Find(library, "ARVMUI_MSI_StopFontResetter");
    if (!start || !stop) return 3;

    const WatchedWindow window(argv[3], mode != L"plain");
    std::thread stopper(
        [&]
        {
            if (mode == L"stop" && window.WaitForNewFont()) stop(session.Get());
        });
    if (start(session.Get()) == ERROR_SUCCESS) Say("started");
    stopper.join();
    window.WaitForNewFont();
    Say("font of " + window.Font());
    SayHelpers();
    Say("end");
    while (std::getchar() != EOF)
    {
    }
    return 0;
}
