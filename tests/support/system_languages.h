// Decides, for as long as it lives, which languages a module sees as the system's. Several may not
// live at once.
#pragma once

#include "support/module_patch.h"

namespace arvmui_test
{

class SystemLanguages
{
public:
    explicit SystemLanguages(HMODULE importer);
    ~SystemLanguages();
    SystemLanguages(const SystemLanguages&) = delete;
    SystemLanguages& operator=(const SystemLanguages&) = delete;

    LANGID user = 0x0409;
    LANGID system = 0x0409;
    LANGID userInterface = 0x0409;
    LANGID systemInterface = 0x0409;
    bool hasUserInterface = true;  // whether the system has the function at all
    bool hasSystemInterface = true;

private:
    static LANGID WINAPI User();
    static LANGID WINAPI System();
    static LANGID WINAPI UserInterface();
    static LANGID WINAPI SystemInterface();
    static FARPROC WINAPI Find(HMODULE module, const char* name);

    static SystemLanguages* current_;

    ImportPatch userPatch_;
    ImportPatch systemPatch_;
    ImportPatch findPatch_;
};

}  // namespace arvmui_test
