// What the host programs tell the test that started them: lines of "name=value" in UTF-8, the last
// one "end=". The host programs write them, attach_reader.h reads them.
#pragma once

#include <arvmui.h>

namespace arvmui_test
{

// The DLL's functions, bound by the loader or at run time.
struct AttachedLibrary
{
    decltype(&ARVMUI_GetDescriptor) getDescriptor;
    decltype(&ARVMUI_GetLocaleW) getLocale;
    decltype(&ARVMUI_GetLangID) getLanguage;
    decltype(&ARVMUI_GetCommandLineA) getNarrowCommandLine;
};

// Writes the report. `windows` is the number of windows that were made while the DLL was attached.
void WriteReport(const AttachedLibrary& library, unsigned windows);

// Starts this program anew with the first line of the variable ARVMUI_TEST_CHILDREN, whose lines are
// separated by '|', leaves the others to the child, and waits for it. Its report follows this one's.
void RunChild();

// Waits until the test closes the input, where the variable ARVMUI_TEST_WAIT is set.
void WaitForTest();

}  // namespace arvmui_test
