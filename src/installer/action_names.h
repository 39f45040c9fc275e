// The names under which a package schedules the library's actions, and its font properties: each ends
// in one identifier, so that they meet no name of the package's own.
#pragma once

#define ARVMUI_INSTALLER_NAME(name) name L".5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17"

namespace arvmui
{

inline constexpr wchar_t kSetLocaleAction[] = ARVMUI_INSTALLER_NAME(L"ARV_MUI_SetLocale");
inline constexpr wchar_t kTranslateLocalPackageAction[] = ARVMUI_INSTALLER_NAME(L"ARV_MUI_TranslateLocalPackage");
inline constexpr wchar_t kStartFontResetterAction[] = ARVMUI_INSTALLER_NAME(L"ARV_MUI_StartFontResetter");
inline constexpr wchar_t kStopFontResetterAction[] = ARVMUI_INSTALLER_NAME(L"ARV_MUI_StopFontResetter");

inline constexpr wchar_t kDialogFontProperty[] = ARVMUI_INSTALLER_NAME(L"DEFAULTCSFONT");
inline constexpr wchar_t kInterfaceFontProperty[] = ARVMUI_INSTALLER_NAME(L"DEFAULTUIFONT");

}  // namespace arvmui
