// Sixteen threads ask at once, and each gets the answer that one thread alone gets.
#include <arvmui.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace
{

constexpr int kThreads = 16;
constexpr int kRounds = 100;

DWORD CALLBACK Collect(const WCHAR* locale, void* context)
{
    static_cast<std::wstring*>(context)->append(locale ? locale : L"(refused)").append(L";");
    return 0;
}

std::wstring Candidates(const wchar_t* list)
{
    std::wstring text;
    ARVMUI_EnumLocalesW(list, Collect, &text);
    return text;
}

std::wstring LocaleOfLibrary(const wchar_t* list)
{
    HMODULE library = nullptr;
    if (!ARVMUI_LoadResourceLibraryW(ARVMUI_GetDescriptor()->module, nullptr, list, &library)) return L"(not loaded)";
    wchar_t locale[ARVMUI_TAG_CHARS];
    ARVMUI_GetLocaleW(library, locale, ARVMUI_TAG_CHARS);
    const std::wstring text = std::wstring(locale) + L" " + std::to_wstring(ARVMUI_GetLangID(library));
    ::FreeLibrary(library);
    return text;
}

std::wstring Locale()
{
    wchar_t locale[ARVMUI_TAG_CHARS];
    ARVMUI_GetLocaleW(nullptr, locale, ARVMUI_TAG_CHARS);
    return locale;
}

std::wstring SystemText(DWORD error)
{
    wchar_t* text = nullptr;
    const DWORD length = ARVMUI_FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_ALLOCATE_BUFFER, nullptr, error, 0,
        reinterpret_cast<wchar_t*>(&text), 0, nullptr);
    const std::wstring copy(text ? text : L"", length);
    ::LocalFree(text);
    return copy;
}

std::wstring Option()
{
    wchar_t option[ARVMUI_TAG_CHARS + 13];
    ARVMUI_GetCommandLineOptionW(option, ARVMUI_TAG_CHARS + 13);
    return option;
}

// Everything that one thread asks in a round.
std::vector<std::wstring> AskEverything()
{
    return {Candidates(L"de-AT,ja,0x040C,user,uilang"), Candidates(nullptr), LocaleOfLibrary(L"ja"),
        LocaleOfLibrary(L"xx,de-AT"), LocaleOfLibrary(MAKEINTRESOURCEW(0x040C)), Locale(),
        std::to_wstring(ARVMUI_GetLangID(nullptr)), std::to_wstring(ARVMUI_GetACP(0x0411, 0)),
        SystemText(ERROR_FILE_NOT_FOUND), Option()};
}

TEST(Queries, FromSixteenThreadsAtOnceAllGiveTheSameAnswers)
{
    const std::vector<std::wstring> expected = AskEverything();
    ASSERT_EQ(expected[2], L"ja-JP 1041");
    ASSERT_EQ(expected[3], L"de-DE 1031");
    ASSERT_EQ(expected[4], L"fr-FR 1036");
    ASSERT_NE(expected[8], L"");

    std::atomic<int> waiting{0};
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
    {
        threads.emplace_back(
            [&]
            {
                for (++waiting; waiting < kThreads;) std::this_thread::yield();
                for (int round = 0; round < kRounds; ++round)
                {
                    if (AskEverything() != expected) ++wrong;
                }
            });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
}

TEST(Threads, EachHasItsOwnSlotValueThatStartsAsNull)
{
    const DWORD slot = ARVMUI_GetDescriptor()->tlsIndex;
    ASSERT_NE(slot, TLS_OUT_OF_INDEXES);
    EXPECT_EQ(::TlsGetValue(slot), nullptr);
    ASSERT_TRUE(::TlsSetValue(slot, reinterpret_cast<void*>(1)));
    void* other = reinterpret_cast<void*>(2);
    std::thread([&] { other = ::TlsGetValue(slot); }).join();
    EXPECT_EQ(other, nullptr);
    ASSERT_TRUE(::TlsSetValue(slot, nullptr));
}

}  // namespace
