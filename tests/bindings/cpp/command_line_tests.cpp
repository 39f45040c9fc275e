// Command lines and child processes of the C++ layer.
#include "bindings/cpp/translated_module.h"
#include "support/module_patch.h"
#include "support/process_resources.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace
{

using arvmui_test::ImportPatch;

static_assert(!std::is_copy_constructible_v<arvmui::Process>, "two objects would close one handle");

std::wstring Hint()
{
    return arvmui::Descriptor().LocaleHintTable[HINT_COMMAND_LINE];
}

class CppCommandLine : public testing::Test
{
protected:
    arvmui_test::TranslatedModule module;  // and with it a process without a list
};

TEST_F(CppCommandLine, LosesItsOption)
{
    std::wstring commandLine = L"program.exe /uilocale:de file.txt";

    arvmui::ParseCommandLine(commandLine);

    EXPECT_EQ(commandLine, L"program.exe file.txt");
    EXPECT_EQ(Hint(), L"de");
}

TEST_F(CppCommandLine, WithoutOptionStaysAsItIs)
{
    std::wstring commandLine = L"program.exe file.txt";

    arvmui::ParseCommandLine(commandLine);

    EXPECT_EQ(commandLine, L"program.exe file.txt");
    EXPECT_EQ(Hint(), L"");
}

TEST_F(CppCommandLine, LosesItsOptionAsAVector)
{
    std::wstring program = L"program.exe", option = L"/uilocale:de", file = L"file.txt";
    wchar_t* argv[] = {program.data(), option.data(), file.data(), nullptr};
    int argc = 3;

    EXPECT_TRUE(arvmui::ParseArguments(argc, argv));
    EXPECT_EQ(argc, 2);
    EXPECT_EQ(argv[1], file.data());
    EXPECT_EQ(argv[2], nullptr);

    EXPECT_FALSE(arvmui::ParseArguments(argc, argv));
    EXPECT_EQ(argc, 2);
}

TEST_F(CppCommandLine, OfTheProcessIsTheSystemsOwn)
{
    EXPECT_EQ(arvmui::CommandLine().data(), ::GetCommandLineW());
    EXPECT_EQ(arvmui::CommandLine(), ::GetCommandLineW());
}

TEST_F(CppCommandLine, OptionNamesTheLanguageInUse)
{
    EXPECT_EQ(arvmui::LocaleOption(), L"/uilocale:" + arvmui::LocaleOf(nullptr));
}

std::wstring g_option;

// As the library does it, which asks for two characters more than it writes.
int ARVMUI_CALL WriteOption(WCHAR* buffer, DWORD size)
{
    if (size < g_option.size() + 3) return 0;
    ::lstrcpyW(buffer, g_option.c_str());
    return static_cast<int>(g_option.size());
}

TEST_F(CppCommandLine, OptionIsWholeWhateverItsLength)
{
    const ImportPatch patch(::GetModuleHandleW(nullptr), "ARVMUI_GetCommandLineOptionW", &WriteOption);

    for (const size_t length : {20u, 125u, 126u, 127u, 128u, 1000u})
    {
        g_option = std::wstring(length, L'o');
        EXPECT_EQ(arvmui::LocaleOption(), g_option) << length;
    }
}

int ARVMUI_CALL WriteNothing(WCHAR*, DWORD)
{
    return 0;
}

TEST_F(CppCommandLine, OptionMayBeMissing)
{
    const ImportPatch patch(::GetModuleHandleW(nullptr), "ARVMUI_GetCommandLineOptionW", &WriteNothing);

    EXPECT_EQ(arvmui::LocaleOption(), L"");
}

// The child's exit code tells whether the list of its process is its argument.
DWORD RunChild(const std::wstring& arguments)
{
    const std::wstring program = (arvmui_test::TestProgramFolder() / L"cpp_layer_child.exe").wstring();
    const auto child = arvmui::StartChild(L'"' + program + L"\" " + arguments);
    if (!child) return child.Error();
    DWORD exitCode = STILL_ACTIVE;
    ::WaitForSingleObject(child->get(), INFINITE);
    ::GetExitCodeProcess(child->get(), &exitCode);
    return exitCode;
}

constexpr DWORD kSame = 42;
constexpr DWORD kDifferent = 43;

TEST_F(CppCommandLine, OfAChildNamesTheLanguageInUse)
{
    EXPECT_EQ(RunChild(arvmui::LocaleOf(nullptr)), kSame);
    EXPECT_EQ(RunChild(L"something-else"), kDifferent);
}

TEST_F(CppCommandLine, OfAChildMayNameAnother)
{
    EXPECT_EQ(RunChild(L"pl,cs /uilocale:pl,cs"), kSame);
}

TEST_F(CppCommandLine, OfAChildLeavesNoHandleBehind)
{
    RunChild(L"x");
    const size_t before = arvmui_test::CountHandles();

    RunChild(L"x");

    EXPECT_EQ(arvmui_test::CountHandles(), before);
}

TEST_F(CppCommandLine, OfAChildThatDoesNotExistIsAnError)
{
    const auto child = arvmui::StartChild(L"no_such_program.exe");

    EXPECT_FALSE(child);
    EXPECT_EQ(child.Error(), DWORD{ERROR_FILE_NOT_FOUND});
}

}  // namespace
