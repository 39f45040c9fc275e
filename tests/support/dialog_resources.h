// Puts dialogs of a built resource library into a DLL that a test has written, so that the test decides
// about the texts and the build about the windows.
#pragma once

#include <windows.h>

#include <filesystem>
#include <vector>

namespace arvmui_test
{

// The file must exist and not be loaded. Throws when a dialog is missing or cannot be written.
void CopyDialogs(
    const std::filesystem::path& file, const std::filesystem::path& source, const std::vector<WORD>& dialogs);

}  // namespace arvmui_test
