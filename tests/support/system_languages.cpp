#include "support/system_languages.h"

#include <cstring>

namespace arvmui_test
{

SystemLanguages* SystemLanguages::current_ = nullptr;

SystemLanguages::SystemLanguages(HMODULE importer)
    : userPatch_(importer, "GetUserDefaultLangID", &User), systemPatch_(importer, "GetSystemDefaultLangID", &System),
      findPatch_(importer, "GetProcAddress", &Find)
{
    current_ = this;
}

SystemLanguages::~SystemLanguages()
{
    current_ = nullptr;
}

LANGID WINAPI SystemLanguages::User()
{
    return current_->user;
}

LANGID WINAPI SystemLanguages::System()
{
    return current_->system;
}

LANGID WINAPI SystemLanguages::UserInterface()
{
    return current_->userInterface;
}

LANGID WINAPI SystemLanguages::SystemInterface()
{
    return current_->systemInterface;
}

FARPROC WINAPI SystemLanguages::Find(HMODULE module, const char* name)
{
    using Function = FARPROC(WINAPI*)(HMODULE, const char*);
    const auto asProcedure = [](LANGID(WINAPI * function)())
    { return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function)); };
    if (module == ::GetModuleHandleW(L"kernel32.dll"))
    {
        if (std::strcmp(name, "GetUserDefaultUILanguage") == 0)
            return current_->hasUserInterface ? asProcedure(&UserInterface) : nullptr;
        if (std::strcmp(name, "GetSystemDefaultUILanguage") == 0)
            return current_->hasSystemInterface ? asProcedure(&SystemInterface) : nullptr;
    }
    return current_->findPatch_.Original<Function>()(module, name);
}

}  // namespace arvmui_test
