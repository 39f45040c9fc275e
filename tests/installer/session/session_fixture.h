// Sessions of the system's own installer in this process, opened on packages that tests vary.
#pragma once

#include "arvmui.h"
#include "installer/session/session_package.h"
#include "support/msi_database.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace arvmui_test
{

class SessionTest : public testing::Test
{
protected:
    SessionTest();
    void TearDown() override;

    // Writes the package and opens a session on it.
    void Open();

    MSIHANDLE Session() const { return session_.Get(); }
    UINT SetLocale() const { return ARVMUI_MSI_SetLocale(Session()); }

    std::wstring Get(const std::wstring& property) const { return SessionProperty(Session(), property); }
    void Set(const std::wstring& property, const std::wstring& value) const;

    // The session's tables as the installer sees them from now on.
    TablesOfLanguage Tables() const;

    SessionPackage package;
    TemporaryFolder folder;
    std::filesystem::path file;

private:
    MsiHandle session_;
    std::string bytesBefore_;
};

std::string BytesOf(const std::filesystem::path& file);

// Whether an installation publishes what its language dialog is to show.
bool IsContextPublished();

// Rows of the tables, for comparison with what they are to hold.
TablesOfLanguage ReadTables(MSIHANDLE database);

}  // namespace arvmui_test
