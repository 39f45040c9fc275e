// The action that chooses dialog fonts, with the installer, the machine's registry and the screen's
// fonts played.
#pragma once

#include "arvmui.h"
#include "support/import_replacement.h"
#include "support/scratch_registry.h"
#include "unit/installer/installer_fixture.h"

#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace arvmui_test
{

inline constexpr wchar_t kDialogFont[] = L"DEFAULTCSFONT.5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17";
inline constexpr wchar_t kInterfaceFont[] = L"DEFAULTUIFONT.5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17";
inline constexpr wchar_t kProductKey[] = L"SOFTWARE\\Pelkor\\MUI";
inline constexpr wchar_t kFontSubstitutes[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\FontSubstitutes";

struct ScreenFont
{
    std::wstring face;
    BYTE charset;
};

// The screen's fonts as the library sees them. One at a time.
class ScreenFonts
{
public:
    ScreenFonts() { current_ = this; }
    ScreenFonts(const ScreenFonts&) = delete;
    ScreenFonts& operator=(const ScreenFonts&) = delete;

    std::vector<ScreenFont> fonts;
    size_t told = 0;  // fonts that the library has heard of
    int enumerations = 0;
    int screens = 0;   // device contexts given out
    int released = 0;  // and given back

private:
    static HDC Context() { return reinterpret_cast<HDC>(static_cast<ULONG_PTR>(0x5C12)); }

    static HDC WINAPI GetContext(HWND window)
    {
        EXPECT_EQ(window, nullptr);
        ++current_->screens;
        return Context();
    }

    static int WINAPI Release(HWND, HDC)
    {
        ++current_->released;
        return 1;
    }

    static int WINAPI Enumerate(HDC context, LPLOGFONTW wanted, FONTENUMPROCW callback, LPARAM parameter, DWORD flags)
    {
        LOGFONTW all = {};
        all.lfCharSet = DEFAULT_CHARSET;
        EXPECT_EQ(std::memcmp(wanted, &all, sizeof(all)), 0) << "not every face and character set is asked for";
        EXPECT_EQ(context, Context());
        EXPECT_EQ(flags, 0U);
        ++current_->enumerations;
        for (const ScreenFont& font : current_->fonts)
        {
            ++current_->told;
            ENUMLOGFONTEXW description = {};
            description.elfLogFont.lfCharSet = font.charset;
            std::wcsncpy(description.elfLogFont.lfFaceName, font.face.c_str(), LF_FACESIZE - 1);
            NEWTEXTMETRICEXW metrics = {};
            if (callback(&description.elfLogFont, reinterpret_cast<const TEXTMETRICW*>(&metrics), TRUETYPE_FONTTYPE,
                    parameter)
                == 0)
                return 0;
        }
        return 1;
    }

    static inline ScreenFonts* current_ = nullptr;

    ImportPatch getContext_{::GetModuleHandleW(nullptr), "GetDC", &GetContext};
    FunctionPatch release_{reinterpret_cast<void*>(&::ReleaseDC), reinterpret_cast<void*>(&Release)};
    ImportPatch enumerate_{::GetModuleHandleW(nullptr), "EnumFontFamiliesExW", &Enumerate};
};

class DialogFontTest : public InstallerTest
{
protected:
    DialogFontTest() { EXPECT_TRUE(registry_.ReplaceRoot(HKEY_LOCAL_MACHINE)); }

    UINT Run()
    {
        installer.ForgetCalls();
        return ARVMUI_MSI_SetDefaultCSFont(StandInInstaller::kSession);
    }

    static void StoreMachineText(const wchar_t* key, const wchar_t* value, const std::wstring& text)
    {
        StoreText(HKEY_LOCAL_MACHINE, key, value, text);
    }

    // What the action has written, in order: "NAME=value" for each.
    std::vector<std::wstring> Written() const
    {
        std::vector<std::wstring> calls = installer.CallsOf(L"MsiSetPropertyW");
        for (std::wstring& call : calls) call.erase(0, call.find(L' ') + 1);
        return calls;
    }
    static std::wstring DialogFont(const std::wstring& face) { return std::wstring(kDialogFont) + L"=" + face; }
    static std::wstring InterfaceFont(const std::wstring& face) { return std::wstring(kInterfaceFont) + L"=" + face; }

    ScreenFonts screen;

private:
    ScratchRegistry registry_;
};

}  // namespace arvmui_test
