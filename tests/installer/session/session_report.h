// What a probe inside an installation saw of its session, handed to the test through a file.
#pragma once

#include "installer/session/session_package.h"

#include <windows.h>

#include <msiquery.h>

#include <filesystem>
#include <map>
#include <string>

namespace arvmui_test
{

struct SessionReport
{
    std::map<std::wstring, std::wstring> properties;
    TablesOfLanguage tables;
};

// Throws when the installer refuses anything or the file cannot be written.
void WriteSessionReport(MSIHANDLE session, const std::filesystem::path& file);

// Throws when there is no report.
SessionReport ReadSessionReport(const std::filesystem::path& file);

}  // namespace arvmui_test
