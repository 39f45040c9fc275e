// The questions about one resource library: its tag, its language and a language's code page.
#include "arvmui.h"
#include "support/module_patch.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>

namespace
{

using arvmui_test::LoadedModule;
using arvmui_test::Strings;
using arvmui_test::TemporaryFolder;

constexpr unsigned kTag = 1;
constexpr unsigned kLanguage = 2;

// Puts another resource library in the place of the process's own.
class OwnLibrary
{
public:
    explicit OwnLibrary(HMODULE library) : old_(ARVMUI_GetDescriptor()->resourceLibrary)
    {
        ARVMUI_GetDescriptor()->resourceLibrary = library;
    }
    ~OwnLibrary() { ARVMUI_GetDescriptor()->resourceLibrary = old_; }
    OwnLibrary(const OwnLibrary&) = delete;
    OwnLibrary& operator=(const OwnLibrary&) = delete;

private:
    HMODULE old_;
};

class ResourceLibraryTest : public testing::Test
{
protected:
    std::filesystem::path File() const { return folder.Path() / L"library.dll"; }

    TemporaryFolder folder;
};

// ---- Language identifier -----------------------------------------------------------------------------

struct LanguageCase
{
    const char* name;
    Strings strings;
    LANGID language;
};

void PrintTo(const LanguageCase& value, std::ostream* out)
{
    *out << value.name;
}

class LanguageOfLibrary : public ResourceLibraryTest, public testing::WithParamInterface<LanguageCase>
{
};

TEST_P(LanguageOfLibrary, IsReadFromItsStrings)
{
    const LoadedModule library(File(), GetParam().strings);
    EXPECT_EQ(ARVMUI_GetLangID(library.Get()), GetParam().language);

    const OwnLibrary own(library.Get());
    EXPECT_EQ(ARVMUI_GetLangID(nullptr), GetParam().language);
}

INSTANTIATE_TEST_SUITE_P(Texts, LanguageOfLibrary,
    testing::Values(LanguageCase{"Hexadecimal", {{kLanguage, L"0x0407"}}, 1031},
        LanguageCase{"Decimal", {{kLanguage, L"1031"}}, 1031}, LanguageCase{"Octal", {{kLanguage, L"02007"}}, 1031},
        LanguageCase{"OnlyTheLowSixteenBits", {{kLanguage, L"0x10407"}}, 1031},
        LanguageCase{"DigitsBeforeOtherText", {{kLanguage, L"1031 (German)"}}, 1031},
        LanguageCase{"NoNumber", {{kLanguage, L"German"}}, 0},
        LanguageCase{"MissingStringInItsBlock", {{kTag, L"de-DE"}}, 1033},
        LanguageCase{"MissingBlock", {{900, L"x"}}, 1033},
        LanguageCase{"ThirtyOneCharacters", {{kLanguage, std::wstring(30, L'0') + L"7"}}, 7},
        LanguageCase{"CutAtThirtyOneCharacters", {{kLanguage, std::wstring(30, L'0') + L"71"}}, 7}),
    [](const testing::TestParamInfo<LanguageCase>& parameter) { return std::string(parameter.param.name); });

TEST(LanguageOfLibrary, IsEnglishWithoutAnyLibrary)
{
    const OwnLibrary none(nullptr);
    EXPECT_EQ(ARVMUI_GetLangID(nullptr), 1033);
}

TEST_F(ResourceLibraryTest, GivenLibraryCountsBeforeTheProcesssOwn)
{
    const LoadedModule german(folder.Path() / L"german.dll", {{kTag, L"de-DE"}, {kLanguage, L"1031"}});
    const LoadedModule french(folder.Path() / L"french.dll", {{kTag, L"fr-FR"}, {kLanguage, L"1036"}});
    const OwnLibrary own(german.Get());
    wchar_t tag[16];
    EXPECT_EQ(ARVMUI_GetLangID(french.Get()), 1036);
    EXPECT_EQ(ARVMUI_GetLocaleW(french.Get(), tag, 16), 5u);
    EXPECT_STREQ(tag, L"fr-FR");
    EXPECT_EQ(ARVMUI_GetLangID(nullptr), 1031);
    EXPECT_EQ(ARVMUI_GetLocaleW(nullptr, tag, 16), 5u);
    EXPECT_STREQ(tag, L"de-DE");
}

// ---- Locale tag --------------------------------------------------------------------------------------

enum class Library
{
    kGerman,
    kWithoutTag,
    kNone
};

struct TagCase
{
    const char* name;
    Library libraryKind;
    DWORD capacity;
    const char* tag;
};

void PrintTo(const TagCase& value, std::ostream* out)
{
    *out << value.name;
}

class TagOfLibrary : public ResourceLibraryTest, public testing::WithParamInterface<TagCase>
{
protected:
    static constexpr DWORD kBufferElements = 80;

    // Answers into a buffer whose elements beyond the capacity must stay as they are.
    template <typename Char, typename Function>
    void ExpectTag(Function getLocale, HMODULE library)
    {
        const TagCase& expected = GetParam();
        Char buffer[kBufferElements];
        for (Char& element : buffer) element = Char{'#'};
        const size_t length = std::strlen(expected.tag);
        EXPECT_EQ(getLocale(library, buffer, expected.capacity), length);
        for (size_t i = 0; i < length; ++i) EXPECT_EQ(buffer[i], static_cast<Char>(expected.tag[i]));
        EXPECT_EQ(buffer[length], Char{});
        for (DWORD i = expected.capacity; i < kBufferElements; ++i) EXPECT_EQ(buffer[i], Char{'#'});
    }
};

TEST_P(TagOfLibrary, IsWrittenWithinTheCapacity)
{
    const LoadedModule german(folder.Path() / L"german.dll", {{kTag, L"de-DE"}});
    const LoadedModule other(folder.Path() / L"other.dll", {{kLanguage, L"1031"}});
    const HMODULE library = GetParam().libraryKind == Library::kGerman       ? german.Get()
                            : GetParam().libraryKind == Library::kWithoutTag ? other.Get()
                                                                             : nullptr;
    const OwnLibrary own(library);
    ExpectTag<wchar_t>(ARVMUI_GetLocaleW, library);
    ExpectTag<wchar_t>(ARVMUI_GetLocaleW, nullptr);
    ExpectTag<char>(ARVMUI_GetLocaleA, library);
    ExpectTag<char>(ARVMUI_GetLocaleA, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Capacities, TagOfLibrary,
    testing::Values(TagCase{"Large", Library::kGerman, 64, "de-DE"}, TagCase{"ExactFit", Library::kGerman, 6, "de-DE"},
        TagCase{"OneTooFew", Library::kGerman, 5, "de-D"}, TagCase{"Two", Library::kGerman, 2, "d"},
        TagCase{"One", Library::kGerman, 1, ""}, TagCase{"DefaultLarge", Library::kWithoutTag, 64, "en-US"},
        TagCase{"DefaultExactFit", Library::kWithoutTag, 6, "en-US"},
        TagCase{"DefaultOneTooFew", Library::kWithoutTag, 5, "en-U"},
        TagCase{"DefaultOne", Library::kWithoutTag, 1, ""}, TagCase{"NoLibraryLarge", Library::kNone, 64, "en-US"},
        TagCase{"NoLibraryExactFit", Library::kNone, 6, "en-US"},
        TagCase{"NoLibraryOneTooFew", Library::kNone, 5, "en-U"}, TagCase{"NoLibraryOne", Library::kNone, 1, ""}),
    [](const testing::TestParamInfo<TagCase>& parameter) { return std::string(parameter.param.name); });

TEST_F(ResourceLibraryTest, CapacityOfNoneWritesNothing)
{
    const LoadedModule library(File(), {{kTag, L"de-DE"}});
    const OwnLibrary none(nullptr);
    wchar_t wide[8] = L"#######";
    char narrow[8] = "#######";
    EXPECT_EQ(ARVMUI_GetLocaleW(library.Get(), wide, 0), 0u);
    EXPECT_EQ(ARVMUI_GetLocaleW(nullptr, wide, 0), 0u);
    EXPECT_EQ(ARVMUI_GetLocaleA(library.Get(), narrow, 0), 0u);
    EXPECT_EQ(ARVMUI_GetLocaleA(nullptr, narrow, 0), 0u);
    EXPECT_STREQ(wide, L"#######");
    EXPECT_STREQ(narrow, "#######");
}

TEST_F(ResourceLibraryTest, NarrowTagIsInTheAnsiCodePage)
{
    const LoadedModule library(File(), {{kTag, L"gr\u00FCn"}});
    char expected[16] = {};
    ::WideCharToMultiByte(CP_ACP, 0, L"gr\u00FCn", -1, expected, 16, nullptr, nullptr);
    char tag[16];
    EXPECT_EQ(ARVMUI_GetLocaleA(library.Get(), tag, 16), std::strlen(expected));
    EXPECT_STREQ(tag, expected);
}

// ---- Code page ---------------------------------------------------------------------------------------

struct CodePageCase
{
    const char* name;
    LANGID language;
    WORD sort;
    DWORD codePage;
};

void PrintTo(const CodePageCase& value, std::ostream* out)
{
    *out << value.name;
}

class CodePageOfLanguage : public testing::TestWithParam<CodePageCase>
{
};

TEST_P(CodePageOfLanguage, IsTheSystems)
{
    EXPECT_EQ(ARVMUI_GetACP(GetParam().language, GetParam().sort), GetParam().codePage);
}

INSTANTIATE_TEST_SUITE_P(Languages, CodePageOfLanguage,
    testing::Values(CodePageCase{"English", 0x0409, 0, 1252}, CodePageCase{"German", 0x0407, 0, 1252},
        CodePageCase{"Russian", 0x0419, 0, 1251}, CodePageCase{"Japanese", 0x0411, 0, 932},
        CodePageCase{"HindiHasNone", 0x0439, 0, 0}, CodePageCase{"Unknown", 0x03FF, 0, 0},
        CodePageCase{"UnknownSort", 0x0409, 1, 0}),
    [](const testing::TestParamInfo<CodePageCase>& parameter) { return std::string(parameter.param.name); });

struct LocaleQuestion
{
    LCID locale = 0;
    LCTYPE type = 0;
    int size = 0;
} g_question;

int WINAPI AnswerInHexadecimal(LCID locale, LCTYPE type, char* buffer, int size)
{
    g_question = {locale, type, size};
    static constexpr char kAnswer[] = "0x3A4";
    std::memcpy(buffer, kAnswer, sizeof(kAnswer));
    return sizeof(kAnswer);
}

TEST(CodePageOfLanguageQuestion, CombinesSortAndLanguageAndReadsAnyBase)
{
    const arvmui_test::ImportPatch patch(arvmui_test::LibraryUnderTest(), "GetLocaleInfoA", &AnswerInHexadecimal);
    EXPECT_EQ(ARVMUI_GetACP(0x0411, 0x0001), 932u);
    EXPECT_EQ(g_question.locale, 0x00010411u);
    EXPECT_EQ(g_question.type, 0x1004u);
    EXPECT_EQ(g_question.size, 16);
}

}  // namespace
