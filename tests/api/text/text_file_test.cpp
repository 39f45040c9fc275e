// Translated text files, read as a program reads them.

#include "arvmui.h"
#include "support/busy_blocks.h"
#include "support/byte_file.h"
#include "support/module_patch.h"
#include "support/process_resources.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <string>
#include <string_view>
#include <utility>

namespace arvmui_test
{
namespace
{

constexpr wchar_t kFileName[] = L"notes.txt";
const wchar_t* const kUntouched = L"untouched";

class TextFileTest : public testing::Test
{
protected:
    // What is not found is expected here: nobody is there to close a message.
    TextFileTest() { ARVMUI_SetMessagePopup(FALSE, &popupsBefore_); }
    ~TextFileTest() override { ARVMUI_SetMessagePopup(popupsBefore_, nullptr); }

    HMODULE Module() const { return module_.Get(); }

    std::filesystem::path Write(std::wstring_view locale, std::string_view bytes) const
    {
        return WriteBytes(folder_.Path() / L"resource" / locale / kFileName, bytes);
    }

    std::filesystem::path ResourceFolder() const { return folder_.MakeFolder(L"resource"); }

    struct Text
    {
        BOOL read = FALSE;
        std::wstring text;
    };

    Text Read(const wchar_t* locales) const
    {
        WCHAR* text = nullptr;
        Text result;
        result.read = ARVMUI_ReadTextFileW(Module(), kFileName, locales, &text);
        if (text) result.text = text;
        ARVMUI_free(text);
        return result;
    }

    void ExpectFailure(const wchar_t* locales, DWORD error) const
    {
        WCHAR* text = const_cast<WCHAR*>(kUntouched);
        ::SetLastError(ERROR_SUCCESS);
        EXPECT_EQ(ARVMUI_ReadTextFileW(Module(), kFileName, locales, &text), FALSE);
        EXPECT_EQ(::GetLastError(), error);
        EXPECT_EQ(text, kUntouched) << "written although nothing was read";
    }

private:
    TemporaryFolder folder_;
    LoadedModule module_{folder_.Path() / L"program.dll"};
    BOOL popupsBefore_ = FALSE;
};

TEST_F(TextFileTest, IsReadFromTheFolderOfTheLocale)
{
    Write(L"de", "Hallo");
    Write(L"fr", "Bonjour");
    const Text text = Read(L"fr");
    EXPECT_EQ(text.read, TRUE);
    EXPECT_EQ(text.text, L"Bonjour");
}

TEST_F(TextFileTest, FirstLocaleThatHasTheFileWins)
{
    Write(L"de", "Hallo");
    EXPECT_EQ(Read(L"fr,es,de,ja").text, L"Hallo");
}

TEST_F(TextFileTest, LocalesMayBeALanguageIdentifier)
{
    Write(L"ja", "\x93\xFA\x96\x7B");
    EXPECT_EQ(Read(MAKEINTRESOURCEW(1041)).text, L"\x65E5\x672C");
}

// The folder above the locale folders is looked at last, whatever the language of the machine is.
TEST_F(TextFileTest, WithoutAListTheLocalesOfTheProcessCount)
{
    ResourceFolder();
    Write(L"..", "any language");
    const Text text = Read(nullptr);
    EXPECT_EQ(text.read, TRUE);
    EXPECT_EQ(text.text, L"any language");
}

TEST_F(TextFileTest, EmptyFileGivesAnEmptyText)
{
    Write(L"de", "");
    WCHAR* text = nullptr;
    ASSERT_EQ(ARVMUI_ReadTextFileW(Module(), kFileName, L"de", &text), TRUE);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(*text, L'\0');
    EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, text), sizeof(WCHAR));
    ARVMUI_free(text);
}

TEST_F(TextFileTest, FileOfOneByte)
{
    Write(L"de", "x");
    EXPECT_EQ(Read(L"de").text, L"x");
}

TEST_F(TextFileTest, BlockIsAsLongAsTheText)
{
    Write(L"de", "Gr\xFC\xDF"
                 "e");
    WCHAR* text = nullptr;
    ASSERT_EQ(ARVMUI_ReadTextFileW(Module(), kFileName, L"de", &text), TRUE);
    EXPECT_STREQ(text, L"Gr\x00FC\x00DF"
                       L"e");
    EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, text), 6 * sizeof(WCHAR));
    ARVMUI_free(text);
}

TEST_F(TextFileTest, NulsBecomeBlanks)
{
    Write(L"de", std::string(700, '\0'));
    EXPECT_EQ(Read(L"de").text, std::wstring(700, L' '));
}

TEST_F(TextFileTest, NulBetweenCharactersBecomesABlank)
{
    Write(L"ja", std::string_view("a\0\x93\xFA\0b", 6));
    EXPECT_EQ(Read(L"ja").text, L"a \x65E5 b");
}

TEST_F(TextFileTest, LineEndsStayAsTheyAre)
{
    Write(L"de", "a\r\nb\nc\rd\r\n\x1A");
    EXPECT_EQ(Read(L"de").text, L"a\r\nb\nc\rd\r\n\x1A");
}

TEST_F(TextFileTest, ByteOrderMarkIsDecodedLikeOtherBytes)
{
    Write(L"de", "\xEF\xBB\xBF"
                 "a");
    EXPECT_EQ(Read(L"de").text, L"\x00EF\x00BB\x00BF"
                                L"a");
}

TEST_F(TextFileTest, LoneLeadByteAtTheEndIsUndecodable)
{
    Write(L"ja", "\x93\xFA\x96");
    EXPECT_EQ(Read(L"ja").text, L"\x65E5\xFFFD");
}

TEST_F(TextFileTest, CharacterAcrossTheBuffersEndIsWhole)
{
    Write(L"ja", std::string(1023, '.') + "\x93\xFAz");
    EXPECT_EQ(Read(L"ja").text, std::wstring(1023, L'.') + L"\x65E5z");
}

TEST_F(TextFileTest, TwentyMegabytes)
{
    constexpr size_t kCopies = 2000000;
    std::string bytes;
    std::wstring expected;
    for (size_t i = 0; i < kCopies; ++i)
    {
        bytes += "abcd\x93\xFA\xB1\x81\r\n";
        expected += L"abcd\x65E5\xFF71\xFFFD\r\n";
    }
    Write(L"ja", bytes);
    const Text text = Read(L"ja");
    EXPECT_EQ(text.read, TRUE);
    EXPECT_EQ(text.text.size(), expected.size());
    EXPECT_TRUE(text.text == expected);
}

TEST_F(TextFileTest, NobodyNeedTakeTheText)
{
    Write(L"de", "Hallo");
    const size_t before = CountBusyBlocks();
    EXPECT_EQ(ARVMUI_ReadTextFileW(Module(), kFileName, L"de", nullptr), TRUE);
    EXPECT_EQ(CountBusyBlocks(), before);
}

TEST_F(TextFileTest, MissingFile)
{
    ResourceFolder();
    ExpectFailure(L"de", ERROR_FILE_NOT_FOUND);
}

TEST_F(TextFileTest, FolderOfTheNameCannotBeRead)
{
    std::filesystem::create_directories(ResourceFolder() / L"de" / kFileName);
    ExpectFailure(L"de", ERROR_ACCESS_DENIED);
}

TEST_F(TextFileTest, FileOpenForWritingElsewhereCannotBeRead)
{
    const auto path = Write(L"de", "Hallo");
    const HANDLE writer = ::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(writer, INVALID_HANDLE_VALUE);
    ExpectFailure(L"de", ERROR_SHARING_VIOLATION);
    ::CloseHandle(writer);
}

TEST_F(TextFileTest, FileThatOthersReadCanBeRead)
{
    const auto path = Write(L"de", "Hallo");
    const HANDLE reader = ::CreateFileW(
        path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    EXPECT_EQ(Read(L"de").text, L"Hallo");
    ::CloseHandle(reader);
}

// What a read in the middle of the file meets.
int g_readsBeforeFailure = 0;
decltype(&::ReadFile) g_readFile = nullptr;

BOOL WINAPI ReadUntilFailure(HANDLE file, LPVOID target, DWORD capacity, LPDWORD read, LPOVERLAPPED overlapped)
{
    if (g_readsBeforeFailure-- > 0) return g_readFile(file, target, capacity, read, overlapped);
    ::SetLastError(ERROR_CRC);
    return FALSE;
}

TEST_F(TextFileTest, ReadErrorEndsTheText)
{
    Write(L"de", std::string(5000, 'a'));
    const ImportPatch patch(LibraryUnderTest(), "ReadFile", &ReadUntilFailure);
    g_readFile = patch.Original<decltype(&::ReadFile)>();
    g_readsBeforeFailure = 3;
    const Text text = Read(L"de");
    EXPECT_EQ(text.read, TRUE);
    EXPECT_EQ(text.text, std::wstring(3 * 1024, L'a'));
}

TEST_F(TextFileTest, ReadErrorAtTheBeginningGivesAnEmptyText)
{
    Write(L"de", "Hallo");
    const ImportPatch patch(LibraryUnderTest(), "ReadFile", &ReadUntilFailure);
    g_readFile = patch.Original<decltype(&::ReadFile)>();
    g_readsBeforeFailure = 0;
    const Text text = Read(L"de");
    EXPECT_EQ(text.read, TRUE);
    EXPECT_EQ(text.text, L"");
}

// The file goes between the search for it and its opening.
std::filesystem::path g_vanishing;
decltype(&::CreateFileW) g_createFile = nullptr;

HANDLE WINAPI OpenVanishedFile(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
    DWORD disposition, DWORD attributes, HANDLE templateFile)
{
    std::error_code ignored;
    std::filesystem::remove(g_vanishing, ignored);
    return g_createFile(name, access, share, security, disposition, attributes, templateFile);
}

TEST_F(TextFileTest, FileThatVanishesCannotBeRead)
{
    g_vanishing = Write(L"de", "Hallo");
    const ImportPatch patch(LibraryUnderTest(), "CreateFileW", &OpenVanishedFile);
    g_createFile = patch.Original<decltype(&::CreateFileW)>();
    ExpectFailure(L"de", ERROR_FILE_NOT_FOUND);
}

TEST_F(TextFileTest, TenThousandReadsLeaveNothingBehind)
{
    ResourceFolder();
    Write(L"..", std::string(2000, 'a'));
    WCHAR* text = nullptr;
    ASSERT_EQ(ARVMUI_ReadTextFileW(Module(), kFileName, nullptr, &text), TRUE);
    ARVMUI_free(text);
    const size_t blocks = CountBusyBlocks();
    const size_t handles = CountHandles();
    for (int i = 0; i < 10000; ++i)
    {
        const bool take = i % 2 == 0;
        ASSERT_EQ(ARVMUI_ReadTextFileW(Module(), kFileName, nullptr, take ? &text : nullptr), TRUE);
        if (take) ARVMUI_free(text);
    }
    EXPECT_EQ(CountBusyBlocks(), blocks);
    EXPECT_EQ(CountHandles(), handles);
}

struct ReadingThreads
{
    HMODULE module;
    std::atomic<int> wrong{0};
};

DWORD WINAPI ReadTwoLanguages(void* context)
{
    ReadingThreads& shared = *static_cast<ReadingThreads*>(context);
    for (int i = 0; i < 60; ++i)
    {
        for (const auto& [locale, expected] : {std::pair(L"ja", L"\x65E5"), std::pair(L"de", L"\x201C\x00FA")})
        {
            WCHAR* text = nullptr;
            if (!ARVMUI_ReadTextFileW(shared.module, kFileName, locale, &text) || std::wstring(text) != expected)
                ++shared.wrong;
            ARVMUI_free(text);
        }
    }
    return 0;
}

TEST_F(TextFileTest, ThreadsReadInTheirOwnLanguages)
{
    Write(L"ja", "\x93\xFA");
    Write(L"de", "\x93\xFA");
    ReadingThreads shared{Module()};
    std::array<HANDLE, 8> threads{};
    for (HANDLE& thread : threads)
    {
        thread = ::CreateThread(nullptr, 0, &ReadTwoLanguages, &shared, 0, nullptr);
        ASSERT_NE(thread, nullptr);
    }
    ASSERT_EQ(::WaitForMultipleObjects(8, threads.data(), TRUE, 50000), WAIT_OBJECT_0);
    for (const HANDLE thread : threads) ::CloseHandle(thread);
    EXPECT_EQ(shared.wrong.load(), 0);
}

TEST_F(TextFileTest, FailedReadsLeaveNothingBehind)
{
    std::filesystem::create_directories(ResourceFolder() / L"de" / kFileName);
    WCHAR* text = nullptr;
    ASSERT_EQ(ARVMUI_ReadTextFileW(Module(), kFileName, L"de", &text), FALSE);
    const size_t blocks = CountBusyBlocks();
    const size_t handles = CountHandles();
    for (int i = 0; i < 200; ++i)
    {
        ASSERT_EQ(ARVMUI_ReadTextFileW(Module(), kFileName, L"de", &text), FALSE);
    }
    EXPECT_EQ(CountBusyBlocks(), blocks);
    EXPECT_EQ(CountHandles(), handles);
}

}  // namespace
}  // namespace arvmui_test
