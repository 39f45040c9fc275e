// The option for a child process, in both widths and for tags of every kind.
#include "support/temporary_folder.h"

#include <arvmui.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

// Puts a resource library with another tag, or none, in the place of the library's own.
class OtherResourceLibrary
{
public:
    explicit OtherResourceLibrary(const wchar_t* tag)
    {
        const auto folder = arvmui_test::TestProgramFolder() / L"option_tags\\resource\\tags";
        if (tag) library_ = ::LoadLibraryW((folder / (std::wstring(tag) + L".dll")).c_str());
        EXPECT_EQ(library_ != nullptr, tag != nullptr);
        ARVMUI_GetDescriptor()->resourceLibrary = library_;
    }
    ~OtherResourceLibrary()
    {
        ARVMUI_GetDescriptor()->resourceLibrary = own_;
        if (library_) ::FreeLibrary(library_);
    }
    OtherResourceLibrary(const OtherResourceLibrary&) = delete;
    OtherResourceLibrary& operator=(const OtherResourceLibrary&) = delete;

private:
    HMODULE own_ = ARVMUI_GetDescriptor()->resourceLibrary;
    HMODULE library_ = nullptr;
};

template <typename Char>
int Write(Char* buffer, DWORD size)
{
    if constexpr (sizeof(Char) == sizeof(char))
        return ARVMUI_GetCommandLineOptionA(buffer, size);
    else
        return ARVMUI_GetCommandLineOptionW(buffer, size);
}

template <typename Char>
struct Option
{
    int length;
    std::basic_string<Char> text;
};

template <typename Char>
Option<Char> OptionOf(DWORD size)
{
    std::vector<Char> buffer(size + 1, Char{'#'});
    const int length = Write(buffer.data(), size);
    EXPECT_EQ(buffer[size], Char{'#'});
    return {length, buffer.data()};
}

template <typename Char>
std::basic_string<Char> As(const std::string& text)
{
    return {text.begin(), text.end()};
}

template <typename Char>
class CommandLineOption : public testing::Test
{
protected:
    // The option, and the smallest buffer that it is written into: the option's length may be n + 10,
    // or n + 12 with its quotes, for a tag of n characters.
    static void ExpectOption(const std::string& option, DWORD needed)
    {
        const Option<Char> written = OptionOf<Char>(needed);
        EXPECT_EQ(written.text, As<Char>(option));
        EXPECT_EQ(written.length, static_cast<int>(option.size()));

        const Option<Char> larger = OptionOf<Char>(needed + 200);
        EXPECT_EQ(larger.text, As<Char>(option));

        const Option<Char> tooSmall = OptionOf<Char>(needed - 1);
        EXPECT_EQ(tooSmall.text, As<Char>(""));
        EXPECT_EQ(tooSmall.length, 0);
    }
};

using Widths = testing::Types<wchar_t, char>;
TYPED_TEST_SUITE(CommandLineOption, Widths);

TYPED_TEST(CommandLineOption, NamesTheTagOfTheLoadedResources)
{
    std::vector<TypeParam> tag(64);
    if constexpr (sizeof(TypeParam) == 1)
        ARVMUI_GetLocaleA(nullptr, tag.data(), 64);
    else
        ARVMUI_GetLocaleW(nullptr, tag.data(), 64);
    EXPECT_EQ(OptionOf<TypeParam>(100).text, As<TypeParam>("/uilocale:") + tag.data());
}

TYPED_TEST(CommandLineOption, NamesEnglishWithoutResources)
{
    const OtherResourceLibrary none(nullptr);
    this->ExpectOption("/uilocale:en-US", 5 + 13);
}

TYPED_TEST(CommandLineOption, NeedsThirteenMoreThanAOneCharacterTag)
{
    const OtherResourceLibrary library(L"one");
    this->ExpectOption("/uilocale:x", 1 + 13);
}

TYPED_TEST(CommandLineOption, NeedsThirteenMoreThanTheLongestTag)
{
    const OtherResourceLibrary library(L"longest");
    this->ExpectOption("/uilocale:" + std::string(63, 'x'), 63 + 13);
}

TYPED_TEST(CommandLineOption, QuotesATagWithABlankAsAWhole)
{
    const OtherResourceLibrary library(L"blank");
    this->ExpectOption("\"/uilocale:de DE\"", 5 + 13);
}

TYPED_TEST(CommandLineOption, QuotesATagWithATab)
{
    const OtherResourceLibrary library(L"tab");
    this->ExpectOption("\"/uilocale:de\tDE\"", 5 + 13);
}

TYPED_TEST(CommandLineOption, CountsOnlyAsciiWhiteSpaceAsBlank)
{
    const OtherResourceLibrary library(L"no_break_space");
    EXPECT_EQ(OptionOf<TypeParam>(100).text.front(), TypeParam{'/'});
}

TYPED_TEST(CommandLineOption, BufferOfOneElementIsEmptied)
{
    EXPECT_EQ(OptionOf<TypeParam>(1).text, As<TypeParam>(""));
    EXPECT_EQ(OptionOf<TypeParam>(1).length, 0);
}

TYPED_TEST(CommandLineOption, BufferOfNoElementIsNotTouched)
{
    TypeParam buffer[] = {TypeParam{'#'}};
    EXPECT_EQ(Write(buffer, 0), 0);
    EXPECT_EQ(buffer[0], TypeParam{'#'});
}

// What is written is what the library itself takes off again.
TYPED_TEST(CommandLineOption, IsRemovedFromAnArgumentVector)
{
    for (const wchar_t* const tag : {L"one", L"blank", L"tab", L"longest"})
    {
        const OtherResourceLibrary library(tag);
        std::basic_string<TypeParam> option = OptionOf<TypeParam>(100).text;
        TypeParam* argv[] = {option.data(), nullptr};
        int argc = 1;
        if constexpr (sizeof(TypeParam) == 1)
        {
            EXPECT_EQ(ARVMUI_ParseArgvA(&argc, argv), TRUE);
        }
        else
        {
            EXPECT_EQ(ARVMUI_ParseArgvW(&argc, argv), TRUE);
        }
        EXPECT_EQ(argc, 0);
    }
}

TYPED_TEST(CommandLineOption, IsRemovedFromACommandLine)
{
    for (const wchar_t* const tag : {L"one", L"blank", L"tab", L"longest"})
    {
        const OtherResourceLibrary library(tag);
        std::basic_string<TypeParam> line =
            As<TypeParam>("p.exe ") + OptionOf<TypeParam>(100).text + As<TypeParam>(" x");
        if constexpr (sizeof(TypeParam) == 1)
        {
            EXPECT_EQ(ARVMUI_ParseCommandLineA(line.data()), TRUE);
        }
        else
        {
            EXPECT_EQ(ARVMUI_ParseCommandLineW(line.data()), TRUE);
        }
        EXPECT_EQ(std::basic_string<TypeParam>(line.c_str()), As<TypeParam>("p.exe x"));
    }
}

}  // namespace
