// An installer database or a running session's, as a test reads it.
#pragma once

#include <windows.h>

#include <msiquery.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace arvmui_test
{

// A handle of the installer, closed at the end.
class MsiHandle
{
public:
    MsiHandle() = default;
    explicit MsiHandle(MSIHANDLE handle) : handle_(handle) {}
    MsiHandle(MsiHandle&& other) noexcept : handle_(std::exchange(other.handle_, 0)) {}
    MsiHandle& operator=(MsiHandle&& other) noexcept
    {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~MsiHandle() { Close(); }

    MSIHANDLE Get() const { return handle_; }
    MSIHANDLE* Slot() { return &handle_; }
    void Close();

private:
    MSIHANDLE handle_ = 0;
};

// A package as it lies on the disk, for reading. Throws when it cannot be opened.
MsiHandle OpenMsiDatabase(const std::filesystem::path& file);

// A session on a package that installs nothing: it has properties and an active database, whose changes
// the file does not see. Throws when it cannot be opened.
MsiHandle OpenMsiSession(const std::filesystem::path& file);

// The session's database, of which each call opens a further handle.
MsiHandle ActiveDatabase(MSIHANDLE session);

// The value of a property of a session; empty where it is not set.
std::wstring SessionProperty(MSIHANDLE session, const std::wstring& name);

// Rows as texts: numbers in decimal, of a stream its bytes as characters, nothing as an empty text.
using MsiRows = std::vector<std::vector<std::wstring>>;

// The rows of a query in the order of the database. Throws when the installer refuses it.
MsiRows ReadMsiRows(MSIHANDLE database, const std::wstring& query);

// The same rows in the order of their texts, where their order is the database's own affair.
MsiRows SortedMsiRows(MSIHANDLE database, const std::wstring& query);

bool HasMsiTable(MSIHANDLE database, const std::wstring& name);

}  // namespace arvmui_test
