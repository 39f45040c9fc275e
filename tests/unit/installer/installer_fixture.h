// A test of what the library does with the installer: a stand-in plays the installer and is bound, and
// at the end of the test no handle may be open and no block of the library in use.
#pragma once

#include "installer/installer_library.h"
#include "support/stand_in_installer.h"
#include "unit/installer/library_heap.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace arvmui_test
{

class InstallerTest : public testing::Test
{
protected:
    InstallerTest();
    void TearDown() override;

    // Runs the call once for each call of the installer's that can fail, in which that one fails with
    // the error. `expected` says what the result is to be when the failing call was the given one.
    // The first run, in which nothing fails, has to succeed.
    void ExpectEachFailure(const std::function<UINT()>& call, UINT error,
        const std::function<UINT(const std::wstring& failingCall)>& expected);

    // The same for the library's own memory, which may not be left in use either. Each run but the
    // last, in which nothing fails any more, is to have the result.
    void ExpectEachLackOfMemory(const std::function<UINT()>& call, UINT expected);

    StandInInstaller installer;
    LibraryHeap heap;
    MSIHANDLE database = 0;  // open as long as the test runs

private:
    void ExpectNothingLeft(const std::string& when);
};

// Callers' shorthand: everything that fails gives this result.
inline std::function<UINT(const std::wstring&)> Always(UINT result)
{
    return [result](const std::wstring&) { return result; };
}

}  // namespace arvmui_test
