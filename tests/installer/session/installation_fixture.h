// Installations by the system's own program for them, on packages that tests vary.
#pragma once

#include "installer/session/session_package.h"
#include "installer/session/session_report.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace arvmui_test
{

// All but the table Binary: not every installer lets an action that runs in a process of its own change
// rows that hold streams.
TablesOfLanguage WithoutStreams(TablesOfLanguage tables);

class InstallationTest : public testing::Test
{
protected:
    InstallationTest();
    void TearDown() override;

    // Writes the package and starts the installation. Options are those of the program, properties
    // included.
    void Start(const std::wstring& options);

    // Its exit code; empty when it does not end.
    std::optional<DWORD> End();

    std::optional<DWORD> Install(const std::wstring& options)
    {
        Start(options);
        return End();
    }

    // What the probe saw behind the choice of the language, in the sequence of that name.
    bool HasReport(const std::wstring& sequence) const;
    SessionReport Report(const std::wstring& sequence) const;

    // The window that the installation shows under a title; null when none comes up in a while.
    static HWND WaitForWindow(const std::wstring& title);

    SessionPackage package;
    TemporaryFolder folder;

private:
    std::filesystem::path ReportFile(const std::wstring& sequence) const;

    std::filesystem::path file_;
    std::string bytesBefore_;
    std::unique_ptr<ChildProcess> installer_;
};

}  // namespace arvmui_test
