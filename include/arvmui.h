/**
 * @file
 * ARVMUI: multilingual user interfaces for 64-bit Windows programs.
 *
 * The whole interface of arvmui64.dll: which language a process speaks, where its translated
 * resources lie, and how translated text reaches the user. Valid C89 to C++20, with and without
 * UNICODE.
 *
 * Text. Functions with text come as a W form (UTF-16) and an A form (the system's ANSI code page),
 * ARVMUI_ReadTextFileW and ARVMUI_SettingDialogBoxW as a W form only. Buffer sizes count elements,
 * characters for W and bytes for A, terminator included; lengths returned exclude the terminator.
 *
 * Locale lists. Where a function takes a list of locales it accepts
 *  - text: comma-separated locale tags ("de-DE"), language identifiers ("1031", "0x0407") and the
 *    keywords "user", "system", "uilang", "kiv", "msie" and "ask";
 *  - a language identifier in place of the pointer: MAKEINTRESOURCEW(1031);
 *  - NULL: the list of the process, that is the option "/uilocale:" or the parent's choice, else
 *    the registry value "UILocale", else "kiv,user,system".
 * When no item of a list is accepted, "en", ".." and "..\en" are offered last.
 *
 * Memory. What is handed out for the caller to free lies on the process heap and is freed with
 * ARVMUI_free.
 *
 * Threads. The library starts none and locks nothing. "Threads: any" below means that any thread
 * may call at any time.
 */
#ifndef ARVMUI_H
#define ARVMUI_H

#include <stdarg.h>
#include <windows.h>

/** Imports a function. The library itself is built with ARVMUI_BUILD and a .def file. */
#ifdef ARVMUI_BUILD
#define ARVMUI_API
#else
#define ARVMUI_API __declspec(dllimport)
#endif

#define ARVMUI_CALL WINAPI       /**< calling convention of the functions */
#define ARVMUI_CALLBACK CALLBACK /**< calling convention of callbacks */

#define ARVMUI_HINT_COUNT 4               /**< slots of LocaleHintTable */
#define ARVMUI_HINT_CHARS 256             /**< characters in a slot, terminator included */
#define ARVMUI_TAG_CHARS 64               /**< characters in a tag or name, terminator included */
#define ARVMUI_DIALOG_TEXT_CHARS 256      /**< characters in a dialog text, terminator included */
#define ARVMUI_BUTTON_CHARS 32            /**< characters in a button label, terminator included */
#define ARVMUI_INSTALLER_CONTEXT_BYTES 40 /**< bytes of LibraryDescriptor.installerContext */

#ifdef __cplusplus
extern "C" {
#endif

/** Slots of LibraryDescriptor.LocaleHintTable. An empty slot has not been looked at; a single tab
 * stands for "looked at, nothing found". */
typedef enum LocaleHintSlot
{
    HINT_COMMAND_LINE = 0,  /**< the locale list of this process */
    HINT_SETTINGS_FILE = 1, /**< the list of a settings file named on the command line ("kiv") */
    HINT_BROWSER = 2,       /**< the browser's accepted languages ("msie") */
    HINT_ASKED = 3          /**< the user's answer to the language dialog ("ask") */
} LocaleHintSlot;

/** State of the library in this process. Read it; only the library writes it. */
typedef struct LibraryDescriptor
{
    HMODULE module;                                              /**< arvmui64.dll itself */
    HMODULE resourceLibrary;                                     /**< its translated resources, or NULL */
    HANDLE localeMapping;                                        /**< the published LocaleRecord, or NULL */
    DWORD tlsIndex;                                              /**< thread-local slot, or TLS_OUT_OF_INDEXES */
    WCHAR LocaleHintTable[ARVMUI_HINT_COUNT][ARVMUI_HINT_CHARS]; /**< see LocaleHintSlot */
    DWORD keyboardLanguageCount;                                 /**< entries in keyboardLanguages */
    WORD* keyboardLanguages; /**< primary languages of the installed keyboards, ascending */
    BYTE installerContext[ARVMUI_INSTALLER_CONTEXT_BYTES]; /**< zero outside an installation */
    BOOL showMessagePopup;                                 /**< errors are shown as message boxes */
} LibraryDescriptor;

/** One locale that is offered to the user. */
typedef struct LocaleEntry
{
    LANGID LangID;                                          /**< language identifier */
    WCHAR Locale[ARVMUI_TAG_CHARS];                         /**< locale tag */
    DWORD LocaleLength;                                     /**< characters in Locale, terminator excluded */
    WCHAR EnglishName[ARVMUI_TAG_CHARS];                    /**< the language's name in English */
    WCHAR NativeName[ARVMUI_TAG_CHARS];                     /**< the language's name in itself */
    WCHAR LanguageSelectionTitle[ARVMUI_DIALOG_TEXT_CHARS]; /**< title of the language dialog */
    WCHAR LanguageSelectionDesc[ARVMUI_DIALOG_TEXT_CHARS];  /**< its question */
    WCHAR OK[ARVMUI_BUTTON_CHARS];                          /**< label of its button OK */
    WCHAR Cancel[ARVMUI_BUTTON_CHARS];                      /**< label of its button Cancel */
} LocaleEntry;

/** Content of the shared-memory section "ARVMUI_<process identifier, decimal>.IPC", through which
 * a process hands its locale list to its children. */
typedef struct LocaleRecord
{
    DWORD size;                      /**< 132 */
    WCHAR locales[ARVMUI_TAG_CHARS]; /**< at most 63 characters and a terminator */
} LocaleRecord;

/**
 * @defgroup callbacks Callbacks
 * Callbacks return zero to go on; any other value ends the enumeration, which returns it.
 * The text belongs to the library and is valid during the call only.
 * @{
 */
/** Receives a candidate of a locale list; NULL when the user refused to choose a language. */
typedef DWORD(ARVMUI_CALLBACK* ARVMUI_LocaleCallbackW)(const WCHAR* locale, void* context);
/** Receives a candidate of a locale list in the ANSI code page. */
typedef DWORD(ARVMUI_CALLBACK* ARVMUI_LocaleCallbackA)(const char* locale, void* context);
/** Receives the name of a locale folder, without path. */
typedef DWORD(ARVMUI_CALLBACK* ARVMUI_FolderCallbackW)(const WCHAR* folderName, void* context);
/** Receives the name of a locale folder in the ANSI code page, without path. */
typedef DWORD(ARVMUI_CALLBACK* ARVMUI_FolderCallbackA)(const char* folderName, void* context);
/** @} */

/** @defgroup memory Memory
 * @{ */

/**
 * Allocates or resizes a block on the process heap.
 * @param memory block to resize, or NULL for a new one.
 * @param size   bytes wanted; 0 gives a block of size 0.
 * @return the block, the caller's, freed with ARVMUI_free; NULL when there is no memory: the old
 *         block then stays valid. While message popups are on, that failure shows a message box.
 * @lasterror not set.
 * @threads any.
 */
ARVMUI_API void* ARVMUI_CALL ARVMUI_realloc(void* memory, SIZE_T size);

/**
 * Frees a block of the library's.
 * @param memory block from ARVMUI_realloc or from another function of the library; NULL and every
 *               value up to 0xFFFF (an integer identifier) is ignored.
 * @lasterror not set.
 * @threads any.
 */
ARVMUI_API void ARVMUI_CALL ARVMUI_free(void* memory);

/** @} */

/** @defgroup diagnostics Diagnostics
 * @{ */

/**
 * Switches the library's own message boxes (errors, out of memory) on or off for the process.
 * @param enable   FALSE for off; they are off until the library's resources have been loaded.
 * @param previous receives the old setting; may be NULL.
 * @lasterror not set.
 * @threads any; the switch is one value for the whole process.
 */
ARVMUI_API void ARVMUI_CALL ARVMUI_SetMessagePopup(BOOL enable, BOOL* previous);

/**
 * Has no effect; kept for hosts that call it.
 * @param table ignored.
 * @lasterror not set.
 * @threads any.
 */
ARVMUI_API void ARVMUI_CALL ARVMUI_LogSetCallTable(void* table);

/** @} */

/** @defgroup queries Locale queries
 * @{ */

/**
 * Offers the candidates of a locale list, in order and each once, until one is accepted.
 * @param locales  locale list (see the head of this file).
 * @param callback receives each candidate tag; NULL in place of a tag means that the user refused
 *                 to choose a language.
 * @param context  handed to the callback.
 * @return what the accepting callback returned, else 0.
 * @lasterror not set.
 * @threads any.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_EnumLocalesW(const WCHAR* locales, ARVMUI_LocaleCallbackW callback, void* context);

/**
 * As ARVMUI_EnumLocalesW in the ANSI code page. Candidates that cannot be converted, and the
 * user's refusal, are passed over without a call.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_EnumLocalesA(const char* locales, ARVMUI_LocaleCallbackA callback, void* context);

/**
 * Tells the language of a resource library (its string 2).
 * @param library resource library; NULL for the library's own one in this process.
 * @return language identifier; 1033 where none is stored or loaded.
 * @lasterror not set.
 * @threads any.
 */
ARVMUI_API LANGID ARVMUI_CALL ARVMUI_GetLangID(HMODULE library);

/**
 * Writes the locale tag of a resource library (its string 1), "en-US" where none is stored.
 * @param library  resource library; NULL for the library's own one in this process.
 * @param buffer   receives the tag, cut to fit; always terminated; the caller's.
 * @param capacity characters in buffer, terminator included.
 * @return characters written, terminator excluded; 0 when buffer is NULL or capacity below 2.
 * @lasterror not set.
 * @threads any.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_GetLocaleW(HMODULE library, WCHAR* buffer, DWORD capacity);

/** As ARVMUI_GetLocaleW in the ANSI code page; capacity and result count bytes. */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_GetLocaleA(HMODULE library, char* buffer, DWORD capacity);

/**
 * Tells the default ANSI code page of a locale.
 * @param language language identifier.
 * @param sortId   sort identifier; 0 for the default order.
 * @return the code page; 0 for a locale that the system does not know or that has none.
 * @lasterror the system's on 0.
 * @threads any.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_GetACP(LANGID language, WORD sortId);

/** @} */

/** @defgroup files Resource files
 * @{ */

/**
 * Writes the path format of a module's resource files; one "%s" stands for the locale, in
 * "<module folder>\resource\%s\<first six characters of the module's name>UI.DLL".
 * The rest of the path stands as it is: a module folder with a '%' in its name makes the result
 * unfit as a printf format; replace the "%s" behind "\resource\" by hand then.
 * @param module   module whose folder is meant; NULL for the program.
 * @param fileName file name in the locale folder, or NULL to derive it from the module's name.
 * @param buffer   receives the format; terminated; the caller's.
 * @param capacity characters in buffer, terminator included.
 * @return characters written, terminator excluded; 0 on failure.
 * @lasterror 111 does not fit into capacity; 161 module path without a folder; 87 no buffer, or
 *            an integer identifier as fileName; else the system's.
 * @threads any.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_GetResourceFileFormatW(
    HMODULE module, const WCHAR* fileName, WCHAR* buffer, DWORD capacity);

/** As ARVMUI_GetResourceFileFormatW in the ANSI code page; sizes count bytes. */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_GetResourceFileFormatA(
    HMODULE module, const char* fileName, char* buffer, DWORD capacity);

/**
 * Finds the first resource file of a module that exists for a locale list.
 * @param module   module whose folder is meant; NULL for the program.
 * @param fileName file name in the locale folder, or NULL to derive it from the module's name.
 * @param locales  locale list (see the head of this file).
 * @param buffer   receives the full path, cut to fit; terminated; the caller's.
 * @param capacity characters in buffer, terminator included.
 * @return characters written, terminator excluded; 0 on failure.
 * @lasterror 2 no such file for any candidate; 1223 the user refused to choose a language; those
 *            of ARVMUI_GetResourceFileFormatW.
 * @threads any. Shows a message box on failure while message popups are on.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_GetResourceFileNameW(
    HMODULE module, const WCHAR* fileName, const WCHAR* locales, WCHAR* buffer, DWORD capacity);

/** As ARVMUI_GetResourceFileNameW in the ANSI code page; sizes count bytes. */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_GetResourceFileNameA(
    HMODULE module, const char* fileName, const char* locales, char* buffer, DWORD capacity);

/**
 * Calls back for every locale folder of a module, in the order of the file system.
 * @param module   module whose folder is meant; NULL for the program.
 * @param callback receives each folder's name, without path.
 * @param context  handed to the callback.
 * @return what the callback returned to stop, else 0.
 * @lasterror 0 when stopped by the callback; 111 path too long; 161 module path without a folder;
 *            else the system's.
 * @threads any.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_EnumResourceFoldersW(
    HMODULE module, ARVMUI_FolderCallbackW callback, void* context);

/** As ARVMUI_EnumResourceFoldersW in the ANSI code page. */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_EnumResourceFoldersA(
    HMODULE module, ARVMUI_FolderCallbackA callback, void* context);

/** @} */

/** @defgroup libraries Resource libraries
 * @{ */

/**
 * @return the state of the library in this process; the library's, never NULL.
 * @lasterror not set.
 * @threads any; it changes at attach and detach, and with the answer to the language dialog.
 */
ARVMUI_API LibraryDescriptor* ARVMUI_CALL ARVMUI_GetDescriptor(void);

/**
 * Loads the first resource library of a module that exists for a locale list.
 * @param module   module whose resource library is wanted; NULL for the program.
 * @param fileName file name in the locale folder, or NULL to derive it from the module's name.
 * @param locales  locale list (see the head of this file).
 * @param library  receives the handle, NULL on failure; the caller frees it with FreeLibrary. May
 *                 be NULL: the library is loaded all the same and stays.
 * @return TRUE when a library was loaded.
 * @lasterror 126 no candidate could be loaded; 1223 the user refused to choose a language; those
 *            of ARVMUI_GetResourceFileFormatW.
 * @threads any. Shows a message box on failure while message popups are on.
 */
ARVMUI_API BOOL ARVMUI_CALL ARVMUI_LoadResourceLibraryW(
    HMODULE module, const WCHAR* fileName, const WCHAR* locales, HMODULE* library);

/**
 * As ARVMUI_LoadResourceLibraryW with text in the ANSI code page. Where text cannot be converted
 * the result is FALSE and library is not written.
 */
ARVMUI_API BOOL ARVMUI_CALL ARVMUI_LoadResourceLibraryA(
    HMODULE module, const char* fileName, const char* locales, HMODULE* library);

/**
 * Finds the first resource library of a module for a locale list that is loaded already.
 * Everything that is not said here is as in ARVMUI_LoadResourceLibraryW.
 * @param module   module whose resource library is wanted; NULL for the program.
 * @param fileName file name in the locale folder, or NULL to derive it from the module's name.
 * @param locales  locale list (see the head of this file).
 * @param library  receives the handle without a reference of its own (do not free it); NULL on
 *                 failure; may be NULL.
 */
ARVMUI_API BOOL ARVMUI_CALL ARVMUI_GetResourceHandleW(
    HMODULE module, const WCHAR* fileName, const WCHAR* locales, HMODULE* library);

/** As ARVMUI_GetResourceHandleW, with text as in ARVMUI_LoadResourceLibraryA. */
ARVMUI_API BOOL ARVMUI_CALL ARVMUI_GetResourceHandleA(
    HMODULE module, const char* fileName, const char* locales, HMODULE* library);

/** @} */

/** @defgroup commandline Command line
 * @{ */

/**
 * Removes every option "/uilocale:" from a command line, in place. The first value becomes the
 * locale list of the process if it has none yet. The first file named on the line, programs (".exe")
 * apart, is asked for the key "UILocale" in any section, which "kiv" then stands for; where it lies
 * in the browser's cache, "msie" stands for the browser's languages. The library does this itself to the process's
 * command line when it is loaded.
 * @param commandLine text, terminated; the caller's; it only gets shorter.
 * @return TRUE.
 * @lasterror not set.
 * @threads any; the locale list is one value for the whole process.
 */
ARVMUI_API BOOL ARVMUI_CALL ARVMUI_ParseCommandLineW(WCHAR* commandLine);

/**
 * As ARVMUI_ParseCommandLineW in the ANSI code page.
 * @return TRUE; FALSE when memory is lacking: the line is then unchanged.
 */
ARVMUI_API BOOL ARVMUI_CALL ARVMUI_ParseCommandLineA(char* commandLine);

/**
 * Removes every option "/uilocale:" from an argument vector. The locale list of the process is
 * neither read nor written.
 * @param argc number of arguments, the terminating NULL excluded; lowered by those removed.
 * @param argv argc pointers and a terminating NULL; pointers move down, the texts stay as they
 *             are.
 * @return TRUE when an argument was removed.
 * @lasterror not set.
 * @threads any.
 */
ARVMUI_API BOOL ARVMUI_CALL ARVMUI_ParseArgvW(int* argc, WCHAR** argv);

/** As ARVMUI_ParseArgvW in the ANSI code page. */
ARVMUI_API BOOL ARVMUI_CALL ARVMUI_ParseArgvA(int* argc, char** argv);

/**
 * Removes every option "/uilocale:" from the process's command line.
 * @return the system's own buffer of that line; do not free it.
 * @lasterror not set.
 * @threads one at a time; the buffer is edited in place.
 */
ARVMUI_API WCHAR* ARVMUI_CALL ARVMUI_GetCommandLineW(void);

/** As ARVMUI_GetCommandLineW for the line in the ANSI code page, which is a buffer of its own. */
ARVMUI_API char* ARVMUI_CALL ARVMUI_GetCommandLineA(void);

/**
 * Writes the option that makes a child process speak the language in use, such as
 * "/uilocale:de-DE"; an option that holds blanks is enclosed in double quotes.
 * @param buffer receives the option, or an empty string when it does not fit; the caller's.
 * @param size   characters in buffer, terminator included; a tag of n characters needs n + 13.
 * @return characters written, terminator excluded; 0 when it does not fit.
 * @lasterror not set.
 * @threads any.
 */
ARVMUI_API int ARVMUI_CALL ARVMUI_GetCommandLineOptionW(WCHAR* buffer, DWORD size);

/** As ARVMUI_GetCommandLineOptionW in the ANSI code page; size and result count bytes. */
ARVMUI_API int ARVMUI_CALL ARVMUI_GetCommandLineOptionA(char* buffer, DWORD size);

/** @} */

/** @defgroup text Text and settings files
 * @{ */

/**
 * Reads a translated text file whole, from the first locale folder of a module that has it. It is
 * decoded in the ANSI code page of the language of the library's own resources for the same list;
 * what cannot be decoded becomes U+FFFD, and NUL a blank. Nothing else is changed: line ends stay,
 * and no byte-order mark is looked for.
 * @param module   module whose folder is meant; NULL for the program.
 * @param fileName file name in the locale folder; not NULL unless the module's own resource file is
 *                 meant.
 * @param locales  locale list (see the head of this file).
 * @param text     receives the text, terminated; the caller's, freed with ARVMUI_free. May be NULL.
 *                 Not written on failure.
 * @return TRUE when the file was read. A read error in its middle only ends the text.
 * @lasterror those of ARVMUI_GetResourceFileNameW, and the system's where the file cannot be opened.
 * @threads any. While message popups are on, shows a message box when the file is not found, and
 *          when the library has no resources of its own for the list.
 */
ARVMUI_API BOOL ARVMUI_CALL ARVMUI_ReadTextFileW(
    HMODULE module, const WCHAR* fileName, const WCHAR* locales, WCHAR** text);

/**
 * Tells the code page of an encoding by the name that people write: "UTF-8", "Shift_JIS", "cp1252",
 * "windows-1251" or a bare number, upper and lower case alike.
 * @param name encoding name; NULL counts as unknown.
 * @return the code page; 0, which is the ANSI code page, for an unknown name and for those names
 *         that stand for it ("US-ASCII", "ISO8859_1").
 * @lasterror not set.
 * @threads any.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_TextEncodingToCodePageW(const WCHAR* name);

/** As ARVMUI_TextEncodingToCodePageW in the ANSI code page. */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_TextEncodingToCodePageA(const char* name);

/**
 * Reads a value, the keys of a section or the sections of a settings file, much as
 * GetPrivateProfileStringW does, but decoded as the file itself declares: from the line behind the
 * key "InputEncoding" of its section "Encoding" on, and in the ANSI code page before. Also:
 *  - only the first section of a name counts, and blanks inside the brackets belong to the name;
 *  - a value may stand in quotes or apostrophes; two of them in it stand for one;
 *  - two malformed lines are passed over, the third ends the search; so does the wanted key when it
 *    has no value;
 *  - 270 characters of a name or value are kept;
 *  - no other folder is searched, and nothing is kept between calls.
 * @param section      section; NULL lists the sections; a pointer of all ones means any section.
 * @param key          key; NULL lists the keys of the section.
 * @param defaultValue result where there is no value, without trailing white space; may be NULL;
 *                     used only where both section and key are given.
 * @param buffer       receives the value, or the names one behind the other, each terminated, with
 *                     an empty one at the end; filled with NULs; the caller's.
 * @param size         characters in buffer, terminators included; at least 1.
 * @param fileName     path of the file, used as it stands.
 * @return characters stored, the last terminator excluded. Where the buffer is too small: size - 1
 *         for a value, which is cut; size - 2 for a list, of which keys that fit are stored and
 *         sections not.
 * @lasterror the system's where the file cannot be opened.
 * @threads any.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_GetPrivateProfileStringW(const WCHAR* section, const WCHAR* key,
    const WCHAR* defaultValue, WCHAR* buffer, DWORD size, const WCHAR* fileName);

/**
 * As ARVMUI_GetPrivateProfileStringW with the file's name in the ANSI code page, and all other text
 * in the code page that the file declares: a UTF-8 file is asked for, and answers, in UTF-8. Sizes
 * count bytes. A value that does not fit is not stored at all; a section or key that does not exist
 * in that code page gives the default.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_GetPrivateProfileStringA(
    const char* section, const char* key, const char* defaultValue, char* buffer, DWORD size, const char* fileName);

/** @} */

/** @defgroup messages Messages
 * @{ */

/**
 * FormatMessageW in the language of the first locale of the process for which the library has
 * resources and the message exists; the system's own order of languages where there is none.
 * @param flags      as for FormatMessageW; with FORMAT_MESSAGE_ALLOCATE_BUFFER the caller frees
 *                   the text with LocalFree.
 * @param source     as for FormatMessageW.
 * @param messageId  as for FormatMessageW.
 * @param languageId ignored.
 * @param buffer     receives the text; the caller's.
 * @param size       characters in buffer, terminator included.
 * @param arguments  as for FormatMessageW.
 * @return characters written, terminator excluded; 0 on failure.
 * @lasterror those of FormatMessageW and of ARVMUI_GetResourceFileFormatW.
 * @threads any.
 */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_FormatMessageW(
    DWORD flags, const void* source, DWORD messageId, DWORD languageId, WCHAR* buffer, DWORD size, va_list* arguments);

/** As ARVMUI_FormatMessageW with FormatMessageA; size and result count bytes. */
ARVMUI_API DWORD ARVMUI_CALL ARVMUI_FormatMessageA(
    DWORD flags, const void* source, DWORD messageId, DWORD languageId, char* buffer, DWORD size, va_list* arguments);

/**
 * MessageBoxW with its buttons in the language in use; in the system's while the library has no
 * resources.
 * @param owner   owner window, or NULL.
 * @param text    text, or the identifier of a string of the program.
 * @param caption caption, or the identifier of a string of the program; NULL for the system's.
 * @param type    MB_ flags.
 * @return the button, as MessageBoxW; 0 on failure.
 * @lasterror those of MessageBoxW.
 * @threads any, several boxes at once and nested ones included.
 */
ARVMUI_API int ARVMUI_CALL ARVMUI_MessageBoxW(HWND owner, const WCHAR* text, const WCHAR* caption, UINT type);

/** As ARVMUI_MessageBoxW in the ANSI code page; buttons stay the system's if memory is lacking. */
ARVMUI_API int ARVMUI_CALL ARVMUI_MessageBoxA(HWND owner, const char* text, const char* caption, UINT type);

/**
 * Tells the common controls the language in use.
 * @return the language that they use now; 0 when COMCTL32.DLL is not loaded in this process or
 *         does not know languages.
 * @lasterror the system's on 0.
 * @threads any; the setting is the process's.
 */
ARVMUI_API LANGID ARVMUI_CALL ARVMUI_InitCommonControlsLanguage(void);

/** @} */

/** @defgroup settings Settings dialog
 * @{ */

/**
 * Shows the dialog in which preferred languages are chosen among the installed ones and ordered,
 * and stores the choice in the registry value "UILocale". The dialog comes from the library's
 * resource library. There is no A form.
 * @param owner    owner window, or NULL.
 * @param icons    two icons for the dialog, small and big, or NULL. For an icon that is NULL the
 *                 program's first one is taken. They stay the caller's.
 * @param reserved ignored.
 * @param scope    1 for the list of the machine; any other value for that of the user.
 * @return TRUE when the user saved or cancelled; FALSE when the dialog could not be shown or the
 *         list could not be stored, which message boxes report while message popups are on.
 * @lasterror 13 no resource library is loaded or no language is installed; else not defined.
 * @threads any.
 */
ARVMUI_API BOOL ARVMUI_CALL ARVMUI_SettingDialogBoxW(HWND owner, const HICON* icons, void* reserved, DWORD scope);

/** @} */

/** @defgroup installer Custom actions of the Windows Installer
 * A package calls these functions as custom actions; `session` is the MSIHANDLE that the installer
 * passes. They need the "MSI.DLL" of the installer's process, which is found when they run: programs
 * that never install anything do not load it. All but SetDefaultCSFont and StopFontResetter switch
 * message popups off. None sets a last-error code of its own; the installer calls one action of a
 * process at a time.
 * @{ */

/**
 * Chooses the language of an installation, asking the user where the package and the interface
 * level allow it, makes the session's tables speak it and stores its tag in the property "UILOCALE".
 * An immediate action.
 * @param session installer session with an active database.
 * @return 0; 1602 when the user cancelled the choice; 1627 for every failure, also when no locale of
 *         the package could be chosen.
 * @threads the installer's.
 */
ARVMUI_API UINT ARVMUI_CALL ARVMUI_MSI_SetLocale(ULONG session);

/**
 * Shows the language dialog over the installer's window as the package's users will see it, without
 * its choice. An immediate action, meant for the author of a package.
 * @param session installer session with an active database.
 * @return 0, whatever the user does; 1627 when the package's locales cannot be read.
 * @threads the installer's.
 */
ARVMUI_API UINT ARVMUI_CALL ARVMUI_MSI_SelectionDialogBoxPreview(ULONG session);

/**
 * Translates the installer's cached copy of the package, so that repair, change and removal speak
 * the language of the installation. A deferred action behind the registration of the product; its
 * "CustomActionData" is "<UILOCALE>,<ProductCodeFast>,<TRANSFORMS>". Waits for a helper process.
 * @param session installer session.
 * @return always 0: what fails leaves the copy as it was.
 * @threads the installer's.
 */
ARVMUI_API UINT ARVMUI_CALL ARVMUI_MSI_TranslateLocalPackage(ULONG session);

/**
 * The helper's entry point for RUNDLL32.EXE; rewrites a package and commits, or leaves it as it was.
 * @param window      ignored.
 * @param instance    ignored.
 * @param commandLine three escaped arguments: locale tag, path of the package, and "TRANSFORMS" or
 *                    "NOTRANSFORM".
 * @param show        ignored.
 * @threads a process of its own.
 */
ARVMUI_API void ARVMUI_CALLBACK ARVMUI_RUNDLL32_TranslateLocalPackage(
    HWND window, HINSTANCE instance, char* commandLine, int show);

/**
 * Starts the watch that gives the texts in windows titled with the product's names the font of
 * their buttons: in a helper process, or for at most a minute in the action itself. An immediate
 * action. With a helper, the library's own file is deleted at the next restart of the system.
 * @param session installer session.
 * @return always 0.
 * @threads the installer's.
 */
ARVMUI_API UINT ARVMUI_CALL ARVMUI_MSI_StartFontResetter(ULONG session);

/**
 * Ends a watch that runs in the Start action of this process.
 * @param session ignored.
 * @return always 0.
 * @threads any.
 */
ARVMUI_API UINT ARVMUI_CALL ARVMUI_MSI_StopFontResetter(ULONG session);

/**
 * The helper's entry point for RUNDLL32.EXE; watches until the process that started it ends, at
 * most an hour.
 * @param window      ignored.
 * @param instance    ignored.
 * @param commandLine escaped window titles, of which 16 count.
 * @param show        ignored.
 * @threads a process of its own.
 */
ARVMUI_API void ARVMUI_CALLBACK ARVMUI_RUNDLL32_FontResetter(
    HWND window, HINSTANCE instance, char* commandLine, int show);

/**
 * Chooses the fonts of a package's dialogs and stores their faces in the properties
 * "DEFAULTCSFONT.5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17" ("none" for no substitute) and
 * "DEFAULTUIFONT.5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17". An immediate action.
 * @param session installer session.
 * @return 0; 1627 without "MSI.DLL"; else the installer's code for the property that failed.
 * @threads the installer's.
 */
ARVMUI_API UINT ARVMUI_CALL ARVMUI_MSI_SetDefaultCSFont(ULONG session);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
