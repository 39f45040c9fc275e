"""ARVMUI for Python: the functions and records of arvmui64.dll, declared for ctypes.

    import arvmui

    library = arvmui.load()
    library.ARVMUI_SetMessagePopup(False, None)      # errors as codes, not as message boxes
    module = arvmui.HMODULE()
    if not library.ARVMUI_LoadResourceLibraryW(library._handle, "editorUI.DLL", "de,fr", module):
        raise arvmui.last_error()

Nothing is loaded before load() is called, so the module can be imported on any system. What each function
does, and who frees what, is told in arvmui.h.
"""

import ctypes
from ctypes import POINTER, Structure, c_char_p, c_int, c_size_t, c_uint8, c_uint16, c_uint32, c_void_p

# Not those of ctypes.wintypes, whose sizes are the running system's.
BOOL = c_int
DWORD = c_uint32
LANGID = c_uint16
WORD = c_uint16
UINT = c_uint32
ULONG = c_uint32
HANDLE = c_void_p
HMODULE = c_void_p
HWND = c_void_p
WCHAR = ctypes.c_wchar if ctypes.sizeof(ctypes.c_wchar) == 2 else c_uint16

HINT_COUNT = 4
HINT_CHARS = 256
TAG_CHARS = 64
DIALOG_TEXT_CHARS = 256
BUTTON_CHARS = 32
INSTALLER_CONTEXT_BYTES = 40

# Slots of LibraryDescriptor.LocaleHintTable.
HINT_COMMAND_LINE = 0
HINT_SETTINGS_FILE = 1
HINT_BROWSER = 2
HINT_ASKED = 3

# In place of a section's name: the first section that has the key.
ANY_SECTION = (1 << 64) - 1


class LibraryDescriptor(Structure):
    """State of the library in this process; only the library writes it."""

    _fields_ = [
        ("module", HMODULE),
        ("resourceLibrary", HMODULE),
        ("localeMapping", HANDLE),
        ("tlsIndex", DWORD),
        ("LocaleHintTable", WCHAR * HINT_CHARS * HINT_COUNT),
        ("keyboardLanguageCount", DWORD),
        ("keyboardLanguages", POINTER(WORD)),
        ("installerContext", c_uint8 * INSTALLER_CONTEXT_BYTES),
        ("showMessagePopup", BOOL),
    ]


class LocaleEntry(Structure):
    """One locale that is offered to the user."""

    _fields_ = [
        ("LangID", LANGID),
        ("Locale", WCHAR * TAG_CHARS),
        ("LocaleLength", DWORD),
        ("EnglishName", WCHAR * TAG_CHARS),
        ("NativeName", WCHAR * TAG_CHARS),
        ("LanguageSelectionTitle", WCHAR * DIALOG_TEXT_CHARS),
        ("LanguageSelectionDesc", WCHAR * DIALOG_TEXT_CHARS),
        ("OK", WCHAR * BUTTON_CHARS),
        ("Cancel", WCHAR * BUTTON_CHARS),
    ]


class LocaleRecord(Structure):
    """The shared memory through which a process hands its locale list to its children."""

    _fields_ = [("size", DWORD), ("locales", WCHAR * TAG_CHARS)]


class WideText:
    """Argument type: a str, None, a number in place of text (MAKEINTRESOURCEW), or a wide buffer."""

    @classmethod
    def from_param(cls, value):
        if value is None or isinstance(value, int):
            return c_void_p(value)
        if isinstance(value, str):
            return ctypes.c_wchar_p(value)
        if isinstance(value, bytes):
            raise TypeError("wide text is a str")
        return value


class NarrowText:
    """Argument type: bytes in the ANSI code page, None, a number in place of text, or a buffer."""

    @classmethod
    def from_param(cls, value):
        if value is None or isinstance(value, int):
            return c_void_p(value)
        if isinstance(value, bytes):
            return c_char_p(value)
        if isinstance(value, str):
            raise TypeError("narrow text is bytes")
        return value


# The system's calling convention, which for 64-bit programs is the only one.
_callback = getattr(ctypes, "WINFUNCTYPE", ctypes.CFUNCTYPE)

# Keep a reference to a callback object as long as the library may call it.
LocaleCallbackW = _callback(DWORD, ctypes.c_wchar_p, c_void_p)
LocaleCallbackA = _callback(DWORD, c_char_p, c_void_p)
FolderCallbackW = _callback(DWORD, ctypes.c_wchar_p, c_void_p)
FolderCallbackA = _callback(DWORD, c_char_p, c_void_p)

# What a function hands out as memory stays an address, so that it can be freed.
FUNCTIONS = {
    # name: (result, arguments)
    "ARVMUI_realloc": (c_void_p, [c_void_p, c_size_t]),
    "ARVMUI_free": (None, [c_void_p]),
    "ARVMUI_SetMessagePopup": (None, [BOOL, POINTER(BOOL)]),
    "ARVMUI_LogSetCallTable": (None, [c_void_p]),
    "ARVMUI_EnumLocalesW": (DWORD, [WideText, LocaleCallbackW, c_void_p]),
    "ARVMUI_EnumLocalesA": (DWORD, [NarrowText, LocaleCallbackA, c_void_p]),
    "ARVMUI_GetLangID": (LANGID, [HMODULE]),
    "ARVMUI_GetLocaleW": (DWORD, [HMODULE, WideText, DWORD]),
    "ARVMUI_GetLocaleA": (DWORD, [HMODULE, NarrowText, DWORD]),
    "ARVMUI_GetACP": (DWORD, [LANGID, WORD]),
    "ARVMUI_GetDescriptor": (POINTER(LibraryDescriptor), []),
    "ARVMUI_GetResourceFileFormatW": (DWORD, [HMODULE, WideText, WideText, DWORD]),
    "ARVMUI_GetResourceFileFormatA": (DWORD, [HMODULE, NarrowText, NarrowText, DWORD]),
    "ARVMUI_GetResourceFileNameW": (DWORD, [HMODULE, WideText, WideText, WideText, DWORD]),
    "ARVMUI_GetResourceFileNameA": (DWORD, [HMODULE, NarrowText, NarrowText, NarrowText, DWORD]),
    "ARVMUI_EnumResourceFoldersW": (DWORD, [HMODULE, FolderCallbackW, c_void_p]),
    "ARVMUI_EnumResourceFoldersA": (DWORD, [HMODULE, FolderCallbackA, c_void_p]),
    "ARVMUI_LoadResourceLibraryW": (BOOL, [HMODULE, WideText, WideText, POINTER(HMODULE)]),
    "ARVMUI_LoadResourceLibraryA": (BOOL, [HMODULE, NarrowText, NarrowText, POINTER(HMODULE)]),
    "ARVMUI_GetResourceHandleW": (BOOL, [HMODULE, WideText, WideText, POINTER(HMODULE)]),
    "ARVMUI_GetResourceHandleA": (BOOL, [HMODULE, NarrowText, NarrowText, POINTER(HMODULE)]),
    "ARVMUI_ParseCommandLineW": (BOOL, [WideText]),
    "ARVMUI_ParseCommandLineA": (BOOL, [NarrowText]),
    "ARVMUI_ParseArgvW": (BOOL, [POINTER(c_int), POINTER(ctypes.c_wchar_p)]),
    "ARVMUI_ParseArgvA": (BOOL, [POINTER(c_int), POINTER(c_char_p)]),
    "ARVMUI_GetCommandLineW": (ctypes.c_wchar_p, []),
    "ARVMUI_GetCommandLineA": (c_char_p, []),
    "ARVMUI_GetCommandLineOptionW": (c_int, [WideText, DWORD]),
    "ARVMUI_GetCommandLineOptionA": (c_int, [NarrowText, DWORD]),
    "ARVMUI_ReadTextFileW": (BOOL, [HMODULE, WideText, WideText, POINTER(c_void_p)]),
    "ARVMUI_TextEncodingToCodePageW": (DWORD, [WideText]),
    "ARVMUI_TextEncodingToCodePageA": (DWORD, [NarrowText]),
    "ARVMUI_GetPrivateProfileStringW": (DWORD, [WideText, WideText, WideText, WideText, DWORD, WideText]),
    "ARVMUI_GetPrivateProfileStringA": (DWORD, [NarrowText, NarrowText, NarrowText, NarrowText, DWORD, NarrowText]),
    "ARVMUI_FormatMessageW": (DWORD, [DWORD, c_void_p, DWORD, DWORD, WideText, DWORD, c_void_p]),
    "ARVMUI_FormatMessageA": (DWORD, [DWORD, c_void_p, DWORD, DWORD, NarrowText, DWORD, c_void_p]),
    "ARVMUI_MessageBoxW": (c_int, [HWND, WideText, WideText, UINT]),
    "ARVMUI_MessageBoxA": (c_int, [HWND, NarrowText, NarrowText, UINT]),
    "ARVMUI_InitCommonControlsLanguage": (LANGID, []),
    "ARVMUI_SettingDialogBoxW": (BOOL, [HWND, POINTER(HANDLE), c_void_p, DWORD]),
    "ARVMUI_MSI_SetLocale": (UINT, [ULONG]),
    "ARVMUI_MSI_SelectionDialogBoxPreview": (UINT, [ULONG]),
    "ARVMUI_MSI_TranslateLocalPackage": (UINT, [ULONG]),
    "ARVMUI_RUNDLL32_TranslateLocalPackage": (None, [HWND, HMODULE, NarrowText, c_int]),
    "ARVMUI_MSI_StartFontResetter": (UINT, [ULONG]),
    "ARVMUI_MSI_StopFontResetter": (UINT, [ULONG]),
    "ARVMUI_RUNDLL32_FontResetter": (None, [HWND, HMODULE, NarrowText, c_int]),
    "ARVMUI_MSI_SetDefaultCSFont": (UINT, [ULONG]),
}


def declare(library):
    """Gives each function of a loaded library its types; the library."""
    for name, (result, arguments) in FUNCTIONS.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library


def load(path="arvmui64.dll"):
    """Loads the library; OSError where it cannot be loaded or lacks a function."""
    return declare(ctypes.WinDLL(path, use_last_error=True))


def last_error():
    """The error of the library's last call on this thread, to be raised."""
    return ctypes.WinError(ctypes.get_last_error())
