// Puts message tables into a DLL while a test runs, so that a test says in its own lines which message
// exists in which language.
#pragma once

#include <windows.h>

#include <filesystem>
#include <map>
#include <string>

namespace arvmui_test
{

using Messages = std::map<DWORD, std::wstring>;
using MessageTables = std::map<LANGID, Messages>;

// Replaces all resources of an existing file; throws when that fails.
void WriteMessageTables(const std::filesystem::path& file, const MessageTables& tables);

}  // namespace arvmui_test
