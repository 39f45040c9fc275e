// The boxes in which the library shows that resources are missing, from the failing call to the window.
#include "arvmui.h"
#include "support/box_window.h"
#include "support/modal_call.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace
{

using arvmui_test::BoxContents;
using arvmui_test::ModalCall;

constexpr UINT kCaption = 900;
constexpr UINT kPathFormatFailed = 902;
constexpr UINT kLibraryNotFound = 903;
constexpr UINT kLibraryNotLoaded = 904;
constexpr UINT kFileNotFound = 905;

constexpr wchar_t kMissing[] = L"100%s off %n.dll";

std::wstring LoadText(UINT id)
{
    wchar_t text[512] = {};
    ::LoadStringW(ARVMUI_GetDescriptor()->resourceLibrary, id, text, 512);
    return text;
}

std::wstring SystemText(DWORD error)
{
    wchar_t text[512] = {};
    ARVMUI_FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text, 512, nullptr);
    return text;
}

// Fills in what a message leaves out.
std::wstring Expected(UINT id, const std::wstring& name, DWORD error)
{
    std::wstring text = LoadText(id);
    const auto replace = [&](const std::wstring& placeholder, const std::wstring& value)
    {
        const size_t at = text.find(placeholder);
        if (at != std::wstring::npos) text.replace(at, placeholder.size(), value);
    };
    replace(L"%%s", SystemText(error));  // the last one first: values may look like placeholders
    replace(L"%%lu", std::to_wstring(error));
    replace(L"%s", name);
    return text;
}

// A call that has to fail: its last error once the box has been answered.
struct Failure
{
    const char* name;
    std::function<bool()> call;  // true when it failed
    UINT message;
    std::wstring fileName;
    DWORD error;
};

class ErrorBox : public testing::Test
{
protected:
    void SetUp() override { ASSERT_NE(ARVMUI_GetDescriptor()->resourceLibrary, nullptr); }

    static void ExpectBox(const Failure& failure)
    {
        DWORD error = 0;
        bool failed = false;
        ModalCall modal(
            [&]
            {
                failed = failure.call();
                error = ::GetLastError();
                return 0;
            });
        const HWND box = modal.WaitForBox();
        ASSERT_NE(box, nullptr) << failure.name;
        const BoxContents contents = arvmui_test::ReadBox(box);
        EXPECT_EQ(contents.caption, LoadText(kCaption)) << failure.name;
        EXPECT_EQ(contents.text, Expected(failure.message, failure.fileName, failure.error)) << failure.name;
        ASSERT_EQ(contents.buttons.size(), size_t{1}) << failure.name;
        EXPECT_EQ(contents.buttons.begin()->second, LoadText(101)) << failure.name;
        ASSERT_TRUE(arvmui_test::PressButton(box, contents.buttons.begin()->first)) << failure.name;
        modal.Result();
        EXPECT_TRUE(failed) << failure.name;
        EXPECT_EQ(error, failure.error) << failure.name;
    }
};

// A name of its own for each case, so that none is found by chance.
const std::wstring kTooLong(300, L'x');
const std::string kTooLongA(300, 'x');

const Failure kFailures[] = {
    {"LoadResourceLibraryW",
        []
        {
            HMODULE library = ::GetModuleHandleW(nullptr);
            return !ARVMUI_LoadResourceLibraryW(nullptr, kMissing, L"de", &library) && !library;
        },
        kLibraryNotFound, kMissing, ERROR_MOD_NOT_FOUND},
    {"LoadResourceLibraryA", [] { return !ARVMUI_LoadResourceLibraryA(nullptr, "100%s off %n.dll", "de", nullptr); },
        kLibraryNotFound, kMissing, ERROR_MOD_NOT_FOUND},
    {"LoadResourceLibraryW without a path format",
        [] { return !ARVMUI_LoadResourceLibraryW(nullptr, kTooLong.c_str(), L"de", nullptr); }, kPathFormatFailed, L"",
        ERROR_BUFFER_OVERFLOW},
    {"GetResourceHandleW", [] { return !ARVMUI_GetResourceHandleW(nullptr, kMissing, L"de", nullptr); },
        kLibraryNotLoaded, kMissing, ERROR_MOD_NOT_FOUND},
    {"GetResourceHandleA", [] { return !ARVMUI_GetResourceHandleA(nullptr, "100%s off %n.dll", "de", nullptr); },
        kLibraryNotLoaded, kMissing, ERROR_MOD_NOT_FOUND},
    {"GetResourceHandleW without a path format",
        [] { return !ARVMUI_GetResourceHandleW(nullptr, kTooLong.c_str(), L"de", nullptr); }, kPathFormatFailed, L"",
        ERROR_BUFFER_OVERFLOW},
    {"GetResourceFileNameW",
        []
        {
            wchar_t path[260] = {};
            return ARVMUI_GetResourceFileNameW(nullptr, kMissing, L"de", path, 260) == 0;
        },
        kFileNotFound, kMissing, ERROR_FILE_NOT_FOUND},
    {"GetResourceFileNameA",
        []
        {
            char path[260] = {};
            return ARVMUI_GetResourceFileNameA(nullptr, "100%s off %n.dll", "de", path, 260) == 0;
        },
        kFileNotFound, kMissing, ERROR_FILE_NOT_FOUND},
    {"GetResourceFileNameW without a path format",
        []
        {
            wchar_t path[260] = {};
            return ARVMUI_GetResourceFileNameW(nullptr, kTooLong.c_str(), L"de", path, 260) == 0;
        },
        kPathFormatFailed, L"", ERROR_BUFFER_OVERFLOW},
    {"GetResourceFileNameA without a path format",
        []
        {
            char path[260] = {};
            return ARVMUI_GetResourceFileNameA(nullptr, kTooLongA.c_str(), "de", path, 260) == 0;
        },
        kPathFormatFailed, L"", ERROR_BUFFER_OVERFLOW},
};

TEST_F(ErrorBox, SaysWhatIsMissingAndWhy)
{
    for (const Failure& failure : kFailures) ExpectBox(failure);
}

TEST_F(ErrorBox, IsNotShownWhilePopupsAreOff)
{
    BOOL previous = FALSE;
    ARVMUI_SetMessagePopup(FALSE, &previous);
    EXPECT_TRUE(previous);
    for (const Failure& failure : kFailures)
    {
        EXPECT_TRUE(failure.call()) << failure.name;
        EXPECT_EQ(::GetLastError(), failure.error) << failure.name;
    }
    ARVMUI_SetMessagePopup(TRUE, &previous);
    EXPECT_FALSE(previous);
    ExpectBox(kFailures[0]);
}

TEST_F(ErrorBox, IsNotShownForAResourceLibraryThatIsFound)
{
    HMODULE library = nullptr;
    EXPECT_TRUE(ARVMUI_LoadResourceLibraryW(ARVMUI_GetDescriptor()->module, nullptr, L"xx,de", &library));
    ASSERT_NE(library, nullptr);
    ::FreeLibrary(library);
}

}  // namespace
