/*
 * A program that greets in the language of its user and shows how that language was found.
 *
 *   hello [/uilocale:<list>] [<settings file>] [/text] [/child] [/box]
 *
 * It has no text of its own: all of it lies in resource\<locale>\helloUI.DLL beside the program,
 * one file for each language, and ARVMUI picks the file.
 *
 * Exit code: 0, 1 for a wrong command line, 2 when something failed.
 */
#include <windows.h>

#include <array>
#include <string>
#include <string_view>

#include "arvmui.h"
#include "text_ids.h"
#include "text_output.h"

namespace
{

enum ExitCode : int
{
    kDone = 0,
    kWrongCommandLine = 1,
    kFailed = 2
};

struct Options
{
    bool showText = false;
    bool startChild = false;
    bool showBox = false;
    bool showUsage = false;
    std::wstring_view unknownSwitch;
};

/** The program's texts in the language that ARVMUI chose. */
class Texts
{
public:
    Texts() = default;
    Texts(const Texts&) = delete;
    Texts& operator=(const Texts&) = delete;
    ~Texts()
    {
        if (library_ != nullptr) ::FreeLibrary(library_);
    }

    /** This program's texts (not a DLL's), under the usual file name, in the locales of this process. */
    bool Load() { return ARVMUI_LoadResourceLibraryW(nullptr, nullptr, nullptr, &library_) != FALSE; }

    HMODULE Library() const { return library_; }

    std::wstring Get(UINT id) const
    {
        // A size of 0 asks for the text where it lies instead of a copy that might be cut.
        const wchar_t* text = nullptr;
        const int length = ::LoadStringW(library_, id, reinterpret_cast<LPWSTR>(&text), 0);
        return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
    }

    /** The text with %1 and %2 filled in; unlike printf's, these let a translator change the order. */
    std::wstring Fill(UINT id, const std::wstring& first, const std::wstring& second = {}) const
    {
        const std::wstring format = Get(id);
        std::array<DWORD_PTR, 2> values = {
            reinterpret_cast<DWORD_PTR>(first.c_str()), reinterpret_cast<DWORD_PTR>(second.c_str())};
        wchar_t* text = nullptr;
        const DWORD length = ::FormatMessageW(
            FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY, format.c_str(),
            0, 0, reinterpret_cast<LPWSTR>(&text), 0, reinterpret_cast<va_list*>(values.data()));
        const std::wstring filled(text != nullptr ? text : L"", length);
        ::LocalFree(text);
        return filled;
    }

private:
    HMODULE library_ = nullptr;
};

Options ReadOptions(int argc, wchar_t** argv)
{
    // ARVMUI has taken its option out of the process's command line, but the C runtime may have
    // copied the arguments before.
    ARVMUI_ParseArgvW(&argc, argv);

    Options options;
    for (int i = 1; i < argc; ++i)
    {
        const std::wstring_view argument = argv[i];
        if (argument == L"/text")
            options.showText = true;
        else if (argument == L"/child")
            options.startChild = true;
        else if (argument == L"/box")
            options.showBox = true;
        else if (argument == L"/?")
            options.showUsage = true;
        else if (argument.starts_with(L'/') && options.unknownSwitch.empty())
            options.unknownSwitch = argument;
        // Anything else is a file, and in the first one ARVMUI has looked for a list of locales already.
    }
    return options;
}

void PrintLocaleInUse(const Texts& texts)
{
    std::array<wchar_t, ARVMUI_TAG_CHARS> tag = {};
    ARVMUI_GetLocaleW(texts.Library(), tag.data(), static_cast<DWORD>(tag.size()));

    std::array<wchar_t, 8> identifier = {};
    ::wsprintfW(identifier.data(), L"0x%04X", ARVMUI_GetLangID(texts.Library()));

    PrintLine(texts.Fill(TEXT_ID_LOCALE_IN_USE, tag.data(), identifier.data()));
}

/**
 * Puts a locale into the path format. The "%s" for it is the folder that holds the file; a "%" before
 * that is part of the program's own path, which is why the format never goes to a printf function.
 */
std::wstring ResourcePath(const std::wstring& format, const wchar_t* locale)
{
    const std::size_t fileAt = format.rfind(L'\\');
    const std::size_t folderAt = format.rfind(L'\\', fileAt - 1);
    return format.substr(0, folderAt + 1) + locale + format.substr(fileAt);
}

/** Prints one candidate and stops at the first whose file exists. */
DWORD CALLBACK PrintCandidate(const WCHAR* locale, void* context)
{
    if (locale == nullptr) return 1;  // the user was asked for a language and refused
    const std::wstring path = ResourcePath(*static_cast<const std::wstring*>(context), locale);
    const bool found = ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    PrintLine((found ? L"  [x] " : L"  [ ] ") + std::wstring(locale) + L": " + path);
    return found ? 1 : 0;
}

bool PrintCandidates(const Texts& texts)
{
    std::array<wchar_t, MAX_PATH> buffer = {};
    if (ARVMUI_GetResourceFileFormatW(nullptr, nullptr, buffer.data(), static_cast<DWORD>(buffer.size())) == 0)
        return false;

    std::wstring format = buffer.data();
    PrintLine(texts.Get(TEXT_ID_CANDIDATES));
    return ARVMUI_EnumLocalesW(nullptr, PrintCandidate, &format) != 0;
}

/** Prints what Windows says about an error, in the program's language instead of that of Windows. */
bool PrintSystemError(const Texts& texts, DWORD error)
{
    wchar_t* message = nullptr;
    if (ARVMUI_FormatMessageW(
            FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
            0, reinterpret_cast<LPWSTR>(&message), 0, nullptr)
        == 0)
        return false;

    std::wstring text = message;
    ::LocalFree(message);
    text.erase(text.find_last_not_of(L"\r\n ") + 1);  // the system's messages end with a line break
    PrintLine(texts.Fill(TEXT_ID_SYSTEM_ERROR, std::to_wstring(error), text));
    return true;
}

/** Prints a text file that lies beside the program's texts, in the code page of its language. */
bool PrintTextFile()
{
    wchar_t* content = nullptr;
    if (!ARVMUI_ReadTextFileW(nullptr, L"hello.txt", nullptr, &content)) return false;
    std::wstring text = content;
    ARVMUI_free(content);
    text.erase(text.find_last_not_of(L"\r\n") + 1);
    PrintLine(text);
    return true;
}

int ShowBox(const Texts& texts)
{
    const int answer = ARVMUI_MessageBoxW(nullptr, texts.Get(TEXT_ID_BOX_QUESTION).c_str(),
        texts.Get(TEXT_ID_BOX_CAPTION).c_str(), MB_YESNOCANCEL | MB_ICONQUESTION);
    switch (answer)
    {
        case IDYES: PrintLine(texts.Get(TEXT_ID_ANSWER_YES)); return kDone;
        case IDNO: PrintLine(texts.Get(TEXT_ID_ANSWER_NO)); return kDone;
        case IDCANCEL: PrintLine(texts.Get(TEXT_ID_ANSWER_CANCEL)); return kDone;
        default: return kFailed;  // no box could be shown
    }
}

/**
 * Starts this program again without any option and waits for it. The child has no language of its
 * own on its command line, so ARVMUI there takes over the parent's.
 */
int RunChild(const Texts& texts)
{
    std::array<wchar_t, MAX_PATH> program = {};
    const DWORD length = ::GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
    if (length == 0 || length == program.size()) return kFailed;
    std::wstring commandLine = L'"' + std::wstring(program.data()) + L'"';

    PrintLine(L"");
    PrintLine(texts.Get(TEXT_ID_CHILD));
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child = {};
    if (!::CreateProcessW(
            program.data(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &child))
        return kFailed;

    DWORD exitCode = kFailed;
    ::WaitForSingleObject(child.hProcess, INFINITE);
    ::GetExitCodeProcess(child.hProcess, &exitCode);
    ::CloseHandle(child.hThread);
    ::CloseHandle(child.hProcess);
    return static_cast<int>(exitCode);
}

}  // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    Texts texts;
    if (!texts.Load())
    {
        PrintErrorLine(L"hello: no helloUI.DLL found in any language under the folder \"resource\".");
        return kFailed;
    }

    const Options options = ReadOptions(argc, argv);
    if (!options.unknownSwitch.empty())
    {
        PrintErrorLine(texts.Fill(TEXT_ID_UNKNOWN_SWITCH, std::wstring(options.unknownSwitch)));
        PrintErrorLine(texts.Get(TEXT_ID_USAGE));
        return kWrongCommandLine;
    }
    if (options.showUsage)
    {
        PrintLine(texts.Get(TEXT_ID_USAGE));
        return kDone;
    }

    PrintLine(texts.Get(TEXT_ID_GREETING));
    PrintLocaleInUse(texts);
    if (!PrintCandidates(texts)) return kFailed;
    if (!PrintSystemError(texts, ERROR_FILE_NOT_FOUND)) return kFailed;

    if (options.showText && !PrintTextFile()) return kFailed;

    int exitCode = kDone;
    if (options.showBox) exitCode = ShowBox(texts);
    if (options.startChild && exitCode == kDone) exitCode = RunChild(texts);
    return exitCode;
}
