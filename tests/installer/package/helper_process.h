// Runs the library's entry points in processes of their own, as the library itself has it done.
#pragma once

#include "support/child_process.h"

#include <filesystem>
#include <string>

namespace arvmui_test
{

// The DLL beside the test program.
std::filesystem::path LibraryPath();

// How a helper process is started: `arguments` stand on the command line as they are.
ChildSettings HelperSettings(
    const std::filesystem::path& library, const std::wstring& entryPoint, const std::wstring& arguments);

// An argument as a helper takes it: in quotes and escaped.
std::wstring EscapedArgument(const std::wstring& text);

// Runs the helper that translates a package, to its end; false when it does not end.
// `temporaryFolder` is the process's own, if given.
bool RunTranslation(const std::wstring& arguments, const std::filesystem::path& temporaryFolder = {});
bool RunTranslation(const std::wstring& locale, const std::filesystem::path& package, const std::wstring& mode,
    const std::filesystem::path& temporaryFolder = {});

}  // namespace arvmui_test
