// The actions of the font watch with everything around them played: the installer, the helper
// process, the machine's registry, the delayed deletion of files, and time.
#pragma once

#include "arvmui.h"
#include "support/import_replacement.h"
#include "support/scratch_registry.h"
#include "unit/installer/helper_start.h"
#include "unit/installer/installer_fixture.h"
#include "unit/installer/watch_clock.h"

#include <string>
#include <vector>

namespace arvmui_test
{

// What the library looks up by name in system modules.
class SystemLookUps
{
public:
    SystemLookUps() { current_ = this; }
    SystemLookUps(const SystemLookUps&) = delete;
    SystemLookUps& operator=(const SystemLookUps&) = delete;

    struct Move
    {
        std::wstring from;
        bool hasTarget;
        DWORD flags;
        bool operator==(const Move&) const = default;
    };

    bool hasMoveFile = true;
    BOOL moveResult = TRUE;
    std::vector<Move> moves;
    std::string moveFileModule;  // in which the function was looked for

private:
    static BOOL WINAPI MoveFile(LPCWSTR from, LPCWSTR to, DWORD flags)
    {
        current_->moves.push_back({from, to != nullptr, flags});
        return current_->moveResult;
    }

    static HMODULE WINAPI ModuleHandle(LPCSTR name)
    {
        const HMODULE module = ARVMUI_REAL_FUNCTION(L"kernel32.dll", GetModuleHandleA)(name);
        if (module == ::GetModuleHandleW(L"kernel32.dll")) current_->lastModuleName_ = name;
        return module;
    }

    static FARPROC WINAPI LookUp(HMODULE module, LPCSTR name)
    {
        if (std::string(name) != "MoveFileExW")
            return current_->lookUp_.Original<decltype(&::GetProcAddress)>()(module, name);
        current_->moveFileModule = current_->lastModuleName_;
        return current_->hasMoveFile ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&MoveFile)) : nullptr;
    }

    static inline SystemLookUps* current_ = nullptr;

    std::string lastModuleName_;
    ImportPatch moduleHandle_{::GetModuleHandleW(nullptr), "GetModuleHandleA", &ModuleHandle};
    ImportPatch lookUp_{::GetModuleHandleW(nullptr), "GetProcAddress", &LookUp};
};

class FontResetterTest : public InstallerTest
{
protected:
    FontResetterTest()
    {
        EXPECT_TRUE(registry_.ReplaceRoot(HKEY_LOCAL_MACHINE));
        installer.properties[L"ProductName"] = L"Produkt";
        helper.waitResult = WAIT_TIMEOUT;  // it is at work
    }
    void TearDown() override
    {
        EXPECT_EQ(helper.OpenHandles(), 0U);
        InstallerTest::TearDown();
    }

    UINT Start() { return ARVMUI_MSI_StartFontResetter(StandInInstaller::kSession); }

    // The names handed to the helper, each between quotes; what no helper has if none was started.
    std::wstring StartedNames()
    {
        EXPECT_EQ(Start(), 0U);
        if (helper.Lines().empty()) return L"<no helper>";
        const std::wstring start = HelperStart::LineWithoutArguments(ProgramPath(), L"ARVMUI_RUNDLL32_FontResetter");
        EXPECT_EQ(helper.Lines()[0].substr(0, start.size()), start);
        return helper.Lines()[0].substr(start.size());
    }

    static std::wstring EventName() { return L"ARVMUI_MSI_FontResetter." + std::to_wstring(::GetCurrentProcessId()); }

    // Later patches are undone first.
    WatchClock clock;
    HelperStart helper;
    SystemLookUps lookUps;

private:
    ScratchRegistry registry_;
};

}  // namespace arvmui_test
