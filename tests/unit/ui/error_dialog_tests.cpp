// The library's error box: what it says, when it stays silent and what it writes for a debugger. The
// system's message box, its messages, its memory and its debugger output are replaced.
#include "ui/error_dialog.h"

#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "support/busy_blocks.h"
#include "support/import_replacement.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace
{

using arvmui_test::LoadedModule;
using arvmui_test::Strings;
using arvmui_test::TemporaryFolder;

struct Shown
{
    HWND owner;
    std::wstring text;
    std::optional<std::wstring> caption;  // none: a null pointer
    UINT type;
};

struct Asked
{
    DWORD flags;
    const void* source;
    DWORD messageId;
};

constexpr int kAnswer = 42;
constexpr DWORD kUnknownError = ERROR_MR_MID_NOT_FOUND;

std::vector<Shown> g_shown;
std::vector<std::wstring> g_lines;
std::vector<Asked> g_asked;
std::optional<std::wstring> g_systemText;  // none: the system knows no text
bool g_recording = false;
void* g_handedOut = nullptr;  // the system's text, until it is released
int g_released = 0;
int g_allocationsUntilFailure = -1;  // negative: none fails

int WINAPI ShowBox(HWND owner, const wchar_t* text, const wchar_t* caption, UINT type)
{
    Shown shown = {owner, text, {}, type};
    if (caption) shown.caption = caption;
    g_shown.push_back(shown);
    return kAnswer;
}

void WINAPI WriteLine(const wchar_t* line)
{
    g_lines.emplace_back(line);
}

DWORD WINAPI FormatSystemText(DWORD flags, const void* source, DWORD messageId, DWORD, wchar_t* buffer, DWORD, va_list*)
{
    g_asked.push_back({flags, source, messageId});
    if (!g_systemText || !(flags & FORMAT_MESSAGE_ALLOCATE_BUFFER))
    {
        ::SetLastError(kUnknownError);
        return 0;
    }
    const size_t bytes = (g_systemText->size() + 1) * sizeof(wchar_t);
    g_handedOut = ::LocalAlloc(LMEM_FIXED, bytes);
    ::CopyMemory(g_handedOut, g_systemText->c_str(), bytes);
    *reinterpret_cast<void**>(buffer) = g_handedOut;
    return static_cast<DWORD>(g_systemText->size());
}

HLOCAL WINAPI Release(HLOCAL memory)
{
    if (memory && memory == g_handedOut)
    {
        ++g_released;
        g_handedOut = nullptr;
    }
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", LocalFree)(memory);
}

bool FailsNow()
{
    if (!g_recording || g_allocationsUntilFailure < 0) return false;
    if (g_allocationsUntilFailure == 0) return true;
    --g_allocationsUntilFailure;
    return false;
}

void* WINAPI Allocate(HANDLE heap, DWORD flags, SIZE_T size)
{
    return FailsNow() ? nullptr : ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc)(heap, flags, size);
}

void* WINAPI Reallocate(HANDLE heap, DWORD flags, void* block, SIZE_T size)
{
    return FailsNow() ? nullptr : ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapReAlloc)(heap, flags, block, size);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(MessageBoxW, ShowBox)
ARVMUI_REPLACE_IMPORT(OutputDebugStringW, WriteLine)
ARVMUI_REPLACE_IMPORT(FormatMessageW, FormatSystemText)
ARVMUI_REPLACE_IMPORT(LocalFree, Release)
ARVMUI_REPLACE_IMPORT(HeapAlloc, Allocate)
ARVMUI_REPLACE_IMPORT(HeapReAlloc, Reallocate)

namespace
{

constexpr DWORD kError = 1223;
constexpr wchar_t kCaption[] = L"Caption";
constexpr UINT kNumber = 910;  // a text of the tests' own

class ErrorDialog : public testing::Test
{
protected:
    ErrorDialog()
    {
        arvmui::Descriptor() = {};
        slot_ = ::TlsAlloc();
        arvmui::Descriptor().tlsIndex = slot_;
        arvmui::Descriptor().showMessagePopup = TRUE;
        UseStrings({{ARVMUI_STRING_ERROR_CAPTION, kCaption}, {kNumber, L"Number %s: %%lu %%s"}});
        g_systemText = L"system";
    }
    ~ErrorDialog() override
    {
        ::TlsFree(slot_);
        arvmui::Descriptor() = {};
        g_recording = false;
    }

    void UseStrings(const Strings& strings)
    {
        texts_.reset();
        texts_ = std::make_unique<LoadedModule>(folder_.Path() / L"texts.dll", strings);
        arvmui::Descriptor().resourceLibrary = texts_->Get();
    }

    static int Report(const wchar_t* format, const std::vector<const wchar_t*>& arguments = {}, UINT type = 0,
        HWND owner = nullptr, DWORD error = kError)
    {
        g_shown.clear();
        g_lines.clear();
        g_asked.clear();
        g_released = 0;
        g_recording = true;
        const int result = arvmui::ARVMUI_ErrorDialogBoxW(
            owner, type, error, format, arguments.data(), static_cast<DWORD>(arguments.size()));
        lastError_ = ::GetLastError();
        g_recording = false;
        return result;
    }

    // The text of the one box that was shown.
    static std::wstring ShownText()
    {
        if (g_shown.size() != 1) return L"(" + std::to_wstring(g_shown.size()) + L" boxes)";
        return g_shown[0].text;
    }

    static std::wstring Line(const std::wstring& message)
    {
        return L"QEL_ARVMUI@" + std::to_wstring(::GetCurrentThreadId()) + L": " + message + L"\r\n";
    }

    static inline DWORD lastError_ = 0;

private:
    DWORD slot_ = TLS_OUT_OF_INDEXES;
    TemporaryFolder folder_;
    std::unique_ptr<LoadedModule> texts_;
};

TEST_F(ErrorDialog, ShowsTheMessageWithArgumentsCodeAndSystemText)
{
    const HWND owner = ::GetDesktopWindow();
    EXPECT_EQ(Report(L"File %s: error %%lu: %%s", {L"a.dll"}, 0, owner), kAnswer);
    EXPECT_EQ(ShownText(), L"File a.dll: error 1223: system");
    EXPECT_EQ(g_shown[0].owner, owner);
    EXPECT_EQ(g_shown[0].caption, kCaption);
    EXPECT_EQ(g_shown[0].type, UINT{MB_ICONHAND});
    EXPECT_TRUE(g_lines.empty());
}

TEST_F(ErrorDialog, GivenTypeIsUsedAsItIs)
{
    Report(L"Text", {}, MB_YESNO | MB_ICONQUESTION);
    EXPECT_EQ(ShownText(), L"Text");
    EXPECT_EQ(g_shown[0].type, UINT{MB_YESNO | MB_ICONQUESTION});
}

TEST_F(ErrorDialog, NumberNamesAStringOfTheResourceLibrary)
{
    EXPECT_EQ(Report(MAKEINTRESOURCEW(kNumber), {L"a.dll"}), kAnswer);
    EXPECT_EQ(ShownText(), L"Number a.dll: 1223 system");
}

TEST_F(ErrorDialog, LargestNumberIsANumber)
{
    UseStrings({{ARVMUI_STRING_ERROR_CAPTION, kCaption}, {0xFFFF, L"Last"}});
    EXPECT_EQ(Report(MAKEINTRESOURCEW(0xFFFF)), kAnswer);
    EXPECT_EQ(ShownText(), L"Last");
}

TEST_F(ErrorDialog, StaysSilentWhilePopupsAreOff)
{
    arvmui::Descriptor().showMessagePopup = FALSE;
    EXPECT_EQ(Report(MAKEINTRESOURCEW(kNumber), {L"a.dll"}), 0);
    arvmui::Descriptor().resourceLibrary = nullptr;
    EXPECT_EQ(Report(MAKEINTRESOURCEW(kNumber), {L"a.dll"}), 0);
    EXPECT_TRUE(g_shown.empty());
    EXPECT_TRUE(g_lines.empty());
    EXPECT_TRUE(g_asked.empty());
}

TEST_F(ErrorDialog, WithoutResourceLibraryWritesALine)
{
    arvmui::Descriptor().resourceLibrary = nullptr;
    EXPECT_EQ(Report(L"Text"), 0);
    EXPECT_TRUE(g_shown.empty());
    EXPECT_EQ(g_lines, std::vector<std::wstring>{Line(L"ARVMUI_ErrorDialogBoxW: arvmuiUI.dll is not loaded.")});
}

// The library holds the string's block, so that the system leaves the last-error code alone.
TEST_F(ErrorDialog, MissingStringWritesALineWithNumberAndCode)
{
    ::SetLastError(4321);
    EXPECT_EQ(Report(MAKEINTRESOURCEW(kNumber + 1)), 0);
    EXPECT_TRUE(g_shown.empty());
    ASSERT_EQ(g_lines.size(), size_t{1});
    const std::wstring start = Line(L"ARVMUI_ErrorDialogBoxW: LoadStringW(911) failed: ");
    EXPECT_EQ(g_lines[0].substr(0, start.size() - 2), start.substr(0, start.size() - 2));
    EXPECT_NE(g_lines[0].find_first_of(L"0123456789", start.size() - 2), std::wstring::npos);
    EXPECT_EQ(lastError_, DWORD{4321});
}

TEST_F(ErrorDialog, MissingStringTableIsReportedWithTheSystemsCode)
{
    UseStrings({{ARVMUI_STRING_ERROR_CAPTION, kCaption}});
    EXPECT_EQ(Report(MAKEINTRESOURCEW(1)), 0);
    EXPECT_EQ(g_lines, std::vector<std::wstring>{Line(L"ARVMUI_ErrorDialogBoxW: LoadStringW(1) failed: "
                                                      + std::to_wstring(ERROR_RESOURCE_NAME_NOT_FOUND))});
}

TEST_F(ErrorDialog, MissingCaptionWritesALineAndTheBoxIsShown)
{
    UseStrings({{1, L"x"}});
    EXPECT_EQ(Report(L"Text"), kAnswer);
    EXPECT_EQ(ShownText(), L"Text");
    EXPECT_FALSE(g_shown[0].caption.has_value());
    EXPECT_EQ(g_lines, std::vector<std::wstring>{Line(L"ARVMUI_ErrorDialogBoxW: LoadStringW(900) failed: "
                                                      + std::to_wstring(ERROR_RESOURCE_NAME_NOT_FOUND))});
}

TEST_F(ErrorDialog, UnknownErrorCodeShowsADashAndWritesALine)
{
    g_systemText.reset();
    EXPECT_EQ(Report(L"%s: %%lu, %%s.", {L"a"}, 0, nullptr, 0xFFFFFFFF), kAnswer);
    EXPECT_EQ(ShownText(), L"a: 4294967295, -.");
    EXPECT_EQ(g_lines,
        std::vector<std::wstring>{Line(
            L"ARVMUI_ErrorDialogBoxW: ARVMUI_FormatMessageW(4294967295) failed: " + std::to_wstring(kUnknownError))});
}

TEST_F(ErrorDialog, AsksTheSystemForTheTextAndReleasesIt)
{
    Report(L"Text");
    ASSERT_FALSE(g_asked.empty());
    EXPECT_EQ(g_asked.back().flags, DWORD{0x1100});
    EXPECT_EQ(g_asked.back().source, nullptr);
    EXPECT_EQ(g_asked.back().messageId, kError);
    EXPECT_EQ(g_released, 1);
    EXPECT_EQ(g_handedOut, nullptr);
}

TEST_F(ErrorDialog, KeepsTheLastError)
{
    ::SetLastError(4321);
    Report(MAKEINTRESOURCEW(kNumber), {L"a.dll"});
    EXPECT_EQ(lastError_, DWORD{4321});
    arvmui::Descriptor().showMessagePopup = FALSE;
    ::SetLastError(1234);
    Report(MAKEINTRESOURCEW(kNumber), {L"a.dll"});
    EXPECT_EQ(lastError_, DWORD{1234});
}

struct Row
{
    const char* name;
    const wchar_t* format;
    std::vector<const wchar_t*> arguments;
    const wchar_t* systemText;
    const wchar_t* expected;
};

TEST_F(ErrorDialog, TextFromOutsideIsNeverAFormat)
{
    const Row rows[] = {
        {"file name with a placeholder", L"%s (%%lu) %%s", {L"100%s off.dll"}, L"sys", L"100%s off.dll (1223) sys"},
        {"file name that writes", L"%s (%%lu) %%s", {L"%n%n"}, L"sys", L"%n%n (1223) sys"},
        {"file name of percent signs", L"%s (%%lu) %%s", {L"%%"}, L"sys", L"%% (1223) sys"},
        {"file name with one percent sign", L"%s (%%lu) %%s", {L"%"}, L"sys", L"% (1223) sys"},
        {"file name with a number", L"%s (%%lu) %%s", {L"%lu%lu"}, L"sys", L"%lu%lu (1223) sys"},
        {"percent sign in the system's text", L"%s (%%lu) %%s", {L"a"}, L"100% %s %n %1", L"a (1223) 100% %s %n %1"},
        {"percent sign at the system's end", L"%%lu %%s", {}, L"5%", L"1223 5%"},
        {"both", L"%s %%lu %%s", {L"%s%s"}, L"%lu%", L"%s%s 1223 %lu%"},
        {"empty file name", L"<%s> %%lu", {L""}, L"sys", L"<> 1223"},
    };
    for (const Row& row : rows)
    {
        g_systemText = row.systemText;
        EXPECT_EQ(Report(row.format, row.arguments), kAnswer) << row.name;
        EXPECT_EQ(ShownText(), row.expected) << row.name;
    }
}

TEST_F(ErrorDialog, WrongPlaceholdersOfATranslationReadNothing)
{
    const Row rows[] = {
        {"number for the file name", L"%d: %%lu %%s", {L"a"}, L"sys", L"%d: 1223 sys"},
        {"too many in the first pass", L"%s %s: %%lu %%s", {L"a"}, L"sys", L"a %s: 1223 sys"},
        {"none given", L"%s: %%lu %%s", {}, L"sys", L"%s: 1223 sys"},
        {"too many in the second pass", L"%s: %%lu %%s %%s %%lu", {L"a"}, L"sys", L"a: 1223 sys %s %lu"},
        {"write in the first pass", L"%n%s", {L"a"}, L"sys", L"%na"},
        {"write in the second pass", L"%s %%n", {L"a"}, L"sys", L"a %n"},
        {"width from an argument", L"%*s %%*s", {L"a"}, L"sys", L"%*s %*s"},
        {"numbered arguments", L"%1$s %%2$s", {L"a"}, L"sys", L"%1$s %2$s"},
        {"lone percent sign", L"5 % of %s: %%lu", {L"a"}, L"sys", L"5 % of a: 1223"},
        {"percent sign at the end", L"%s %", {L"a"}, L"sys", L"a %"},
        {"cut file name", L"%.3s", {L"abcdef"}, L"sys", L"abc"},
        {"cut system text", L"%%lu %%.2s", {}, L"sys", L"1223 sy"},
        {"hexadecimal code", L"%s 0x%%08lX", {L"a"}, L"sys", L"a 0x000004C7"},
        {"system text first", L"%%s %%lu", {}, L"sys", L"%s 1223"},
        {"not escaped", L"%s: %lu %s", {L"a"}, L"sys", L"a: %lu %s"},
        {"percent sign for both passes", L"100%%%% %s", {L"a"}, L"sys", L"100% a"},
        {"no placeholders", L"Plain", {L"a"}, L"sys", L"Plain"},
        {"empty", L"", {L"a"}, L"sys", L""},
    };
    for (const Row& row : rows)
    {
        g_systemText = row.systemText;
        EXPECT_EQ(Report(row.format, row.arguments), kAnswer) << row.name;
        EXPECT_EQ(ShownText(), row.expected) << row.name;
        EXPECT_TRUE(g_lines.empty()) << row.name;
    }
}

TEST_F(ErrorDialog, LongTextsAreWhole)
{
    const std::wstring name(5000, L'n');
    const std::wstring system(7000, L's');
    g_systemText = system;
    Report(L"%s|%%lu|%%s", {name.c_str()});
    EXPECT_EQ(ShownText(), name + L"|1223|" + system);
}

TEST_F(ErrorDialog, LongStringOfTheResourceLibraryIsWhole)
{
    const std::wstring text(3000, L't');
    const std::wstring caption(300, L'c');
    UseStrings({{ARVMUI_STRING_ERROR_CAPTION, caption}, {kNumber, text}});
    Report(MAKEINTRESOURCEW(kNumber));
    EXPECT_EQ(ShownText(), text);
    EXPECT_EQ(g_shown[0].caption, caption);
}

TEST_F(ErrorDialog, LeavesNoMemoryBehindOnAnyPath)
{
    Report(MAKEINTRESOURCEW(kNumber), {L"a.dll"});
    const size_t before = arvmui_test::CountBusyBlocks();
    Report(MAKEINTRESOURCEW(kNumber), {L"a.dll"});
    Report(MAKEINTRESOURCEW(kNumber + 1), {L"a.dll"});
    g_systemText.reset();
    Report(L"%s %%lu", {L"a.dll"});
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

// Each allocation in turn, and all behind it, fails.
TEST_F(ErrorDialog, LackOfMemoryShowsNothingOrTheBoxWithoutItsCaption)
{
    Report(MAKEINTRESOURCEW(kNumber), {L"a.dll"});
    const size_t before = arvmui_test::CountBusyBlocks();
    int succeeding = 0;
    bool withoutCaption = false;
    for (;; ++succeeding)
    {
        ASSERT_LT(succeeding, 100);
        g_allocationsUntilFailure = succeeding;
        const int result = Report(MAKEINTRESOURCEW(kNumber), {L"a.dll"});
        g_allocationsUntilFailure = -1;
        EXPECT_EQ(arvmui_test::CountBusyBlocks(), before) << succeeding;
        EXPECT_EQ(g_handedOut, nullptr) << succeeding;
        for (const std::wstring& line : g_lines) EXPECT_EQ(line.find(L"LoadStringW"), std::wstring::npos) << line;
        if (result == 0)
        {
            EXPECT_TRUE(g_shown.empty()) << succeeding;
            continue;
        }
        ASSERT_EQ(g_shown.size(), size_t{1}) << succeeding;
        if (g_shown[0].caption.has_value()) break;
        withoutCaption = true;
    }
    EXPECT_GT(succeeding, 3);  // the string, both passes and the caption
    EXPECT_TRUE(withoutCaption);
    EXPECT_EQ(ShownText(), L"Number a.dll: 1223 system");
}

}  // namespace
