// Many threads that read settings at once.

#include "arvmui.h"
#include "settings_file.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <string>

namespace arvmui_test
{
namespace
{

constexpr int kThreads = 8;
constexpr int kRounds = 150;

struct Shared
{
    std::array<const SettingsFile*, 2> files;
    std::atomic<int> wrong{0};
};

DWORD WINAPI ReadBoth(void* context)
{
    Shared& shared = *static_cast<Shared*>(context);
    for (int i = 0; i < kRounds; ++i)
    {
        if (shared.files[0]->Value(L"s", L"k") != L"\x65E5") ++shared.wrong;
        if (shared.files[1]->Value("s", "k") != "\xD6") ++shared.wrong;
        if (shared.files[1]->Keys(L"s").size() != 2) ++shared.wrong;
        if (ARVMUI_TextEncodingToCodePageW(L"shift_jis") != 932) ++shared.wrong;
    }
    return 0;
}

TEST(SettingsThreads, DoNotDisturbOneAnother)
{
    const SettingsFile japanese("[Encoding]\nInputEncoding=SJIS\n[s]\nk=\x93\xFA\n");
    const SettingsFile russian("[Encoding]\nInputEncoding=cp1251\n[s]\nx=0\nk=\xD6\n");
    Shared shared{{&japanese, &russian}};
    std::array<HANDLE, kThreads> threads{};
    for (HANDLE& thread : threads)
    {
        thread = ::CreateThread(nullptr, 0, &ReadBoth, &shared, 0, nullptr);
        ASSERT_NE(thread, nullptr);
    }
    ASSERT_EQ(::WaitForMultipleObjects(kThreads, threads.data(), TRUE, 50000), WAIT_OBJECT_0);
    for (const HANDLE thread : threads) ::CloseHandle(thread);
    EXPECT_EQ(shared.wrong.load(), 0);
}

}  // namespace
}  // namespace arvmui_test
