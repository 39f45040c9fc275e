#include "foundation/growable_text.h"
#include "foundation/heap.h"
#include "foundation/text_calls.h"
#include "installer/action_names.h"
#include "installer/installer_library.h"
#include "locale/registry_store.h"

// The custom action that chooses the fonts of a package's dialogs.

namespace arvmui
{
namespace
{

using FaceName = wchar_t[LF_FACESIZE];

constexpr wchar_t kNoSubstitute[] = L"none";
constexpr wchar_t kFontSubstitutes[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\FontSubstitutes";

bool ReadFace(const wchar_t* subkey, const wchar_t* value, FaceName& face) noexcept
{
    return ReadRegistryString(kProductKeyRead, HKEY_LOCAL_MACHINE, subkey, value, face, LF_FACESIZE) != 0;
}

int CALLBACK TakeDefaultCharsetFont(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM context)
{
    if (font->lfCharSet != DEFAULT_CHARSET) return TRUE;
    // Ignored: the length of a name that always fits.
    CopyCut(reinterpret_cast<wchar_t*>(context), LF_FACESIZE, font->lfFaceName);
    return FALSE;
}

// The face of the screen's first font that covers the default character set; empty if there is none.
void FindDefaultCharsetFont(FaceName& face) noexcept
{
    face[0] = L'\0';
    LOGFONTW all = {};
    all.lfCharSet = DEFAULT_CHARSET;
    // Deliberate: the screen's device context is not given back.
    const HDC screen = ::GetDC(nullptr);
    // Ignored: what the callback returned last.
    ::EnumFontFamiliesExW(screen, &all, TakeDefaultCharsetFont, reinterpret_cast<LPARAM>(&face[0]), 0);
}

void SwitchOff(FaceName& face) noexcept
{
    // Ignored: the length of a word that fits.
    CopyCut(face, LF_FACESIZE, kNoSubstitute);
}

// The substitute face: what the session asks for, else the machine's setting, else the screen's font,
// unless that is only another name of one.
void ChooseSubstitute(const wchar_t* current, FaceName& face) noexcept
{
    if (*current)
        // Ignored: a face name that is too long is cut.
        CopyCut(face, LF_FACESIZE, current);
    else if (!ReadFace(kProductKey, L"InstalledFontSubstitute", face))
    {
        FindDefaultCharsetFont(face);
        FaceName alias;
        if (face[0] == L'\0' || ReadFace(kFontSubstitutes, face, alias)) SwitchOff(face);
    }
    if (EqualsNoCase(face, L"no") || EqualsNoCase(face, L"off")) SwitchOff(face);
}

struct StyleReading
{
    bool isFirst;
    FaceName& face;
};

UINT ReadStyleRow(MSIHANDLE, MSIHANDLE, MSIHANDLE record, void* context)
{
    StyleReading& reading = *static_cast<StyleReading*>(context);
    if (!reading.isFirst) return ERROR_SUCCESS;
    reading.isFirst = false;
    HeapBlock<wchar_t> face;
    if (GetRecordString(record, 1, face.Slot()) == ERROR_SUCCESS) CopyCut(reading.face, LF_FACESIZE, face.Get());
    return ERROR_SUCCESS;
}

// The face of one of the package's text styles; empty if there is no such style.
void ReadStyleFace(MSIHANDLE session, const wchar_t* style, FaceName& face) noexcept
{
    face[0] = L'\0';
    if (*style == L'\0') return;
    const UniqueInstallerHandle database(Installer().MsiGetActiveDatabase(session));
    HeapBlock<wchar_t> sql;
    if (!database
        || AppendFormat(sql.Slot(), -1, L"SELECT `FaceName` FROM `TextStyle` WHERE `TextStyle`='%s'", style) < 1)
        return;
    StyleReading reading = {true, face};
    // Ignored: what cannot be read leaves the choice to the next source.
    RunQuery(database.Get(), sql.Get(), 0, ReadStyleRow, &reading);
}

UINT ChooseInterfaceFont(MSIHANDLE session) noexcept
{
    HeapBlock<wchar_t> current;
    UINT result = GetInstallerProperty(session, kInterfaceFontProperty, current.Slot());
    if (result != ERROR_SUCCESS || *current.Get()) return result;
    HeapBlock<wchar_t> style;
    result = GetInstallerProperty(session, L"DefaultUIFont", style.Slot());
    if (result != ERROR_SUCCESS) return result;

    FaceName face;
    ReadStyleFace(session, style.Get(), face);
    if (face[0] == L'\0' && !ReadFace(kFontSubstitutes, L"MS Shell Dlg", face)) CopyCut(face, LF_FACESIZE, L"Arial");
    return Installer().MsiSetPropertyW(session, kInterfaceFontProperty, face);
}

UINT ChooseFonts(MSIHANDLE session) noexcept
{
    UINT result = BindLoadedInstallerLibrary();
    if (result != ERROR_SUCCESS) return result;
    HeapBlock<wchar_t> current;
    result = GetInstallerProperty(session, kDialogFontProperty, current.Slot());
    if (result != ERROR_SUCCESS) return result;

    FaceName face;
    ChooseSubstitute(current.Get(), face);
    if (CompareText(face, current.Get()) != 0)
    {
        result = Installer().MsiSetPropertyW(session, kDialogFontProperty, face);
        if (result != ERROR_SUCCESS) return result;
    }
    if (EqualsNoCase(face, kNoSubstitute)) return ERROR_SUCCESS;
    return ChooseInterfaceFont(session);
}

}  // namespace
}  // namespace arvmui

UINT ARVMUI_CALL ARVMUI_MSI_SetDefaultCSFont(ULONG session)
{
    return arvmui::ChooseFonts(session);
}
