// Which code page a text file is decoded in: that of the language of the library's own resources for
// the same locales, not of the folder the file lies in.

#include "arvmui.h"
#include "support/byte_file.h"
#include "support/module_patch.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ostream>
#include <string>

namespace arvmui_test
{
namespace
{

// A copy of the DLL with resource libraries of the test's own beside it.
class LibraryCopy
{
public:
    explicit LibraryCopy(const TemporaryFolder& folder)
    {
        wchar_t path[MAX_PATH] = {};
        ::GetModuleFileNameW(LibraryUnderTest(), path, MAX_PATH);
        module_ = ::LoadLibraryW(folder.CopyIn(path, L"copied.dll").c_str());
        if (module_)
        {
            read_ = reinterpret_cast<decltype(read_)>(
                reinterpret_cast<void*>(::GetProcAddress(module_, "ARVMUI_ReadTextFileW")));
        }
    }
    ~LibraryCopy()
    {
        if (module_) ::FreeLibrary(module_);
    }
    LibraryCopy(const LibraryCopy&) = delete;
    LibraryCopy& operator=(const LibraryCopy&) = delete;

    std::wstring Read(HMODULE module, const wchar_t* locales) const
    {
        WCHAR* text = nullptr;
        if (!read_ || !read_(module, L"notes.txt", locales, &text)) return L"<not read>";
        const std::wstring result = text;
        ARVMUI_free(text);
        return result;
    }

private:
    HMODULE module_ = nullptr;
    decltype(&ARVMUI_ReadTextFileW) read_ = nullptr;
};

class TextLanguageTest : public testing::Test
{
protected:
    void AddLanguage(const std::wstring& tag, LANGID language) const
    {
        wchar_t number[16] = {};
        std::swprintf(number, 16, L"0x%04X", static_cast<unsigned>(language));
        WriteResourceImage(folder_.Path() / L"resource" / tag / L"copiedUI.DLL", {{1, tag}, {2, number}});
    }

    void WriteText(const std::wstring& tag, const std::string& bytes) const
    {
        WriteBytes(folder_.Path() / L"resource" / tag / L"notes.txt", bytes);
    }

    std::wstring Read(const wchar_t* locales) const
    {
        const LibraryCopy library(folder_);
        const LoadedModule module(folder_.Path() / L"program.dll");
        return library.Read(module.Get(), locales);
    }

    const TemporaryFolder folder_;
};

struct LanguageCase
{
    const char* name;
    const wchar_t* tag;
    LANGID language;
    const char* bytes;
    const wchar_t* text;
};

std::ostream& operator<<(std::ostream& stream, const LanguageCase& row)
{
    return stream << row.name;
}

constexpr LanguageCase kLanguages[] = {
    {"German", L"de", 0x0407, "\xE4\x80", L"\x00E4\x20AC"},
    {"Polish", L"pl", 0x0415, "\xB3\xF3", L"\x0142\x00F3"},
    {"Russian", L"ru", 0x0419, "\xC4\xE0", L"\x0414\x0430"},
    {"Greek", L"el", 0x0408, "\xE1\xAA", L"\x03B1\xFFFD"},
    {"Turkish", L"tr", 0x041F, "\xFD\xDD", L"\x0131\x0130"},
    {"Thai", L"th", 0x041E, "\xA1\xD2", L"\x0E01\x0E32"},
    {"Japanese", L"ja", 0x0411, "\x93\xFA\xB1", L"\x65E5\xFF71"},
    {"SimplifiedChinese", L"zh-CN", 0x0804, "\xD6\xD0", L"\x4E2D"},
    {"TraditionalChinese", L"zh-TW", 0x0404, "\xA4\xA4", L"\x4E2D"},
    {"Korean", L"ko", 0x0412, "\xC7\xD1", L"\xD55C"},
};

class TextOfLanguageTest : public TextLanguageTest, public testing::WithParamInterface<LanguageCase>
{
};

INSTANTIATE_TEST_SUITE_P(Languages, TextOfLanguageTest, testing::ValuesIn(kLanguages),
    [](const auto& information) { return std::string(information.param.name); });

TEST_P(TextOfLanguageTest, IsDecodedInItsAnsiCodePage)
{
    AddLanguage(GetParam().tag, GetParam().language);
    WriteText(GetParam().tag, GetParam().bytes);
    EXPECT_EQ(Read(GetParam().tag), GetParam().text);
}

TEST_F(TextLanguageTest, FirstLocaleWithResourcesOfTheLibraryDecides)
{
    AddLanguage(L"ja", 0x0411);
    AddLanguage(L"ru", 0x0419);
    WriteText(L"ru", "\xC4\xE0");
    EXPECT_EQ(Read(L"ja,ru"), L"\xFF84\xFFFD");
    EXPECT_EQ(Read(L"ru,ja"), L"\x0414\x0430");
}

TEST_F(TextLanguageTest, LocaleWithoutResourcesOfTheLibraryLeavesTheChoiceToTheNext)
{
    AddLanguage(L"ru", 0x0419);
    WriteText(L"bg", "\xC4\xE0");
    EXPECT_EQ(Read(L"bg,ru"), L"\x0414\x0430");
}

TEST_F(TextLanguageTest, FallsBackToEnglishResourcesOfTheLibrary)
{
    AddLanguage(L"en", 0x0409);
    AddLanguage(L"ja", 0x0411);
    WriteText(L"bg", "\xC4\xE0");
    EXPECT_EQ(Read(L"bg"), L"\x00C4\x00E0");
}

// Western when the library has no resources at all: the language is then English.
TEST_F(TextLanguageTest, WithoutAnyResourcesTheLanguageIsEnglish)
{
    WriteText(L"bg", "\xC4\xE0\x80");
    EXPECT_EQ(Read(L"bg"), L"\x00C4\x00E0\x20AC");
}

TEST_F(TextLanguageTest, LanguageWithoutAnAnsiCodePageUsesTheSystems)
{
    AddLanguage(L"hi", 0x0439);
    WriteText(L"hi", "\xE4");
    wchar_t expected[2] = {};
    ::MultiByteToWideChar(CP_ACP, 0, "\xE4", 1, expected, 1);
    EXPECT_EQ(Read(L"hi"), expected);
}

TEST_F(TextLanguageTest, ResourcesOfTheLibraryAreGivenBack)
{
    AddLanguage(L"ru", 0x0419);
    WriteText(L"ru", "\xC4\xE0");
    const LibraryCopy library(folder_);
    const LoadedModule module(folder_.Path() / L"program.dll");
    ASSERT_EQ(library.Read(module.Get(), L"ru"), L"\x0414\x0430");
    const auto resources = folder_.Path() / L"resource" / L"ru" / L"copiedUI.DLL";
    EXPECT_EQ(::GetModuleHandleW(resources.c_str()), nullptr);
}

}  // namespace
}  // namespace arvmui_test
