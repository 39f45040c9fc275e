// Plays "MSI.DLL" for the code under test: the module and its functions are found by name, and a
// stand-in answers instead of the installer. It writes down every call, answers from rows and
// properties that a test lays out, and fails where the test says so. Changes to rows are written down
// only; a statement yields the same rows each time.
//
// A call is written as the function's name and what it is about, for example
//
//   MsiGetActiveDatabase
//   MsiGetPropertyW ProductName size 0                 size of the buffer in characters
//   MsiSetPropertyW UILOCALE=de
//   MsiDatabaseOpenViewW SELECT * FROM `A`
//   MsiViewExecute SELECT * FROM `A`
//   MsiViewFetch SELECT * FROM `A`
//   MsiRecordGetStringW 1 of key|value size 0          field, row, size of the buffer
//   MsiRecordGetInteger 2 of de|7
//   MsiViewModify 7 key|value into SELECT * FROM `B`   mode, row, statement of the view
//   MsiViewClose SELECT * FROM `A`
//   MsiCloseHandle database                            or: view <statement>, record <row>
//   MsiOpenDatabaseW C:\x.msi mode 1
//   MsiDatabaseCommit
//   MsiDatabaseImportW C:\folder\ file.idt
#pragma once

#include "support/module_patch.h"

#include <windows.h>

#include <msi.h>
#include <msiquery.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace arvmui_test
{

using InstallerRow = std::vector<std::wstring>;

// One at a time, used by one thread at a time.
class StandInInstaller
{
public:
    static constexpr MSIHANDLE kSession = 1000;

    // `importer` holds the code under test: the test program itself, or the DLL.
    explicit StandInInstaller(HMODULE importer = ::GetModuleHandleW(nullptr));
    ~StandInInstaller();
    StandInInstaller(const StandInInstaller&) = delete;
    StandInInstaller& operator=(const StandInInstaller&) = delete;

    // ---- What there is; a test may change it at any time.

    bool isLoaded = true;           // whether the process has "MSI.DLL" already
    bool canBeLoaded = true;        // whether LoadLibraryW finds a file of that name
    std::set<std::string> missing;  // functions that the module lacks
    bool hasActiveDatabase = true;
    std::map<std::wstring, std::wstring> properties;         // any other reads as empty
    std::map<std::wstring, std::vector<InstallerRow>> rows;  // by statement; any other yields none

    // The call answers with `result` and does nothing: every time, or only the nth time (from 1).
    void Answer(const std::wstring& call, UINT result, unsigned nth = 0);
    void ForgetAnswers() { answers_.clear(); }

    // Called with each call before it is answered.
    std::function<void(const std::wstring& call)> onCall;

    // ---- What happened.

    HMODULE Module() const;
    const std::vector<std::wstring>& Calls() const { return calls_; }
    std::vector<std::wstring> CallsOf(const std::wstring& function) const;
    size_t CountCalls(const std::wstring& call) const;
    std::vector<std::wstring> Statements() const;  // as they were opened
    void ForgetCalls() { calls_.clear(); }

    size_t OpenHandles() const { return handles_.size(); }
    const std::vector<std::string>& LookedUp() const { return lookedUp_; }         // functions, in order
    const std::vector<std::wstring>& LoadedPaths() const { return loadedPaths_; }  // of LoadLibraryW, in order
    int Loads() const { return loads_; }                                           // not unloaded again

    // ---- For tests that call as the code under test does.

    MSIHANDLE MakeDatabase();
    MSIHANDLE MakeRecord(const InstallerRow& row);

private:
    enum class Kind
    {
        Database,
        View,
        Record
    };
    struct Object
    {
        Kind kind;
        std::wstring statement = {};  // of a view
        InstallerRow row = {};        // of a record
        bool isExecuted = false;      // a view
        size_t nextRow = 0;           // of a view
    };
    struct ScriptedAnswer
    {
        std::wstring call;
        UINT result;
        unsigned nth;
        unsigned seen = 0;
    };
    struct Functions;

    MSIHANDLE Add(Object object);
    Object* Find(MSIHANDLE handle, Kind kind);
    // Writes the call down; true when `result` is its scripted answer.
    bool IsScripted(const std::wstring& call, UINT& result);
    static UINT CopyText(const std::wstring& text, wchar_t* buffer, DWORD* size);

    static StandInInstaller* current_;

    MSIHANDLE nextHandle_ = 1;
    std::map<MSIHANDLE, Object> handles_;
    std::vector<ScriptedAnswer> answers_;
    std::vector<std::wstring> calls_;
    std::vector<std::string> lookedUp_;
    std::vector<std::wstring> loadedPaths_;
    int loads_ = 0;

    ImportPatch moduleHandle_;
    ImportPatch procAddress_;
    ImportPatch load_;
    ImportPatch unload_;
};

}  // namespace arvmui_test
