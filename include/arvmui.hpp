/*
 * ARVMUI for C++20: a thin layer over arvmui.h, in this header alone and with wide text only.
 *
 * What the library hands out is owned by an object; enumerations call any callable, lambdas above all. A
 * function that can fail returns a Result with the value or the system's error code. Nothing here throws by
 * itself (standard strings may, without memory) or needs exceptions or run-time type information. An
 * exception cannot pass the library, so one that leaves a callable ends the program.
 *
 * Threads: as in arvmui.h.
 */
#ifndef ARVMUI_HPP
#define ARVMUI_HPP

#include "arvmui.h"

#include <concepts>
#include <cstddef>
#include <cwchar>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace arvmui
{

// Deliberate: arguments convert implicitly, so that callers write plain text, numbers and values.
// NOLINTBEGIN(google-explicit-constructor)

/** A value, used like that of a std::optional, or the system's error code that tells why there is none. */
template <typename Value>
class [[nodiscard]] Result : private std::optional<Value>
{
    using Base = std::optional<Value>;

public:
    Result(Value value) : Base(std::move(value)) {}
    static Result Failure(DWORD error) noexcept { return Result(std::nullopt, error); }

    /** The failure of the call just made on this thread. */
    static Result LastFailure() noexcept { return Failure(::GetLastError()); }

    /** Of the failure; ERROR_SUCCESS when there is a value. */
    DWORD Error() const noexcept { return error_; }

    using Base::operator bool;
    using Base::operator*;
    using Base::operator->;
    using Base::value_or;

private:
    Result(std::nullopt_t, DWORD error) noexcept : error_(error) {}

    DWORD error_ = ERROR_SUCCESS;
};

/** Text; or a number in its place, of a string resource or a language; or neither, for the default. */
class TextOrId
{
public:
    TextOrId() noexcept = default;
    TextOrId(WORD id) noexcept : id_(id) {}
    TextOrId(std::wstring_view text) : text_(text) {}
    TextOrId(const std::wstring& text) : text_(text) {}
    TextOrId(const wchar_t* text)
    {
        if (text) text_.emplace(text);
    }

    /** As the functions of arvmui.h take it; valid as long as this object. */
    const wchar_t* Get() const noexcept { return text_ ? text_->c_str() : MAKEINTRESOURCEW(id_); }

private:
    std::optional<std::wstring> text_;
    WORD id_ = 0;
};

/** A locale list such as L"de-DE,fr", a language identifier, or nothing for the list of the process. */
using LocaleList = TextOrId;

/** Which resource file is meant; reads best as {.fileName = L"about.txt", .locales = L"fr"}. */
struct ResourceQuery
{
    HMODULE module = nullptr;  // the module in whose folder it lies; null for the program
    TextOrId fileName = {};    // in the locale folder; nothing: derived from the module's name
    LocaleList locales = {};
};

namespace detail
{

/** Room for any path of the system, terminator included. */
constexpr DWORD kPathChars = 32768;

struct FreeBlock
{
    void operator()(void* block) const noexcept { ARVMUI_free(block); }
};

struct FreeModule
{
    void operator()(HMODULE module) const noexcept { ::FreeLibrary(module); }
};

struct CloseProcess
{
    void operator()(HANDLE process) const noexcept { ::CloseHandle(process); }
};

/** Calls write(buffer, capacity) with ever more room until what it returns shows that nothing was cut. */
template <typename Write>
std::wstring WriteWhole(DWORD capacity, Write write)
{
    constexpr DWORD kMaxCapacity = 0x40000000;
    for (;; capacity *= 2)
    {
        std::wstring text(capacity, L'\0');
        const DWORD length = write(text.data(), capacity);
        // What is cut fills the buffer but for one terminator, a list but for two.
        if (length + 2 >= capacity && capacity < kMaxCapacity) continue;
        text.resize(length);
        return text;
    }
}

/** Calls the callable to which `context` leads; one that returns nothing lets the enumeration go on. */
template <typename Callable, typename Argument>
DWORD ARVMUI_CALLBACK CallThrough(const WCHAR* text, void* context) noexcept
{
    Callable& callable = **static_cast<Callable**>(context);
    const Argument argument = text ? Argument(text) : Argument();
    if constexpr (std::is_void_v<std::invoke_result_t<Callable&, Argument>>)
        return callable(argument), DWORD{0};
    else
        return static_cast<DWORD>(callable(argument));
}

}  // namespace detail

/* ---- Locales ---------------------------------------------------------------------------------- */

/**
 * Offers callable(std::optional<std::wstring_view> tag) each candidate of a list until it returns other than
 * zero. No tag means that the user refused to choose a language.
 * @return what the callable returned last; 0 when it returns nothing.
 */
template <typename Callable>
DWORD EnumLocales(const LocaleList& locales, Callable&& callable) noexcept
{
    using Target = std::remove_reference_t<Callable>;
    Target* target = std::addressof(callable);
    return ARVMUI_EnumLocalesW(locales.Get(), detail::CallThrough<Target, std::optional<std::wstring_view>>, &target);
}

/** The locale tag of a resource library, null for the library's own one; L"en-US" where none is stored. */
inline std::wstring LocaleOf(HMODULE library)
{
    return detail::WriteWhole(
        ARVMUI_TAG_CHARS, [=](wchar_t* buffer, DWORD size) { return ARVMUI_GetLocaleW(library, buffer, size); });
}

/** The language of a resource library, null for the library's own one; 1033 where none is stored. */
inline LANGID LanguageOf(HMODULE library) noexcept
{
    return ARVMUI_GetLangID(library);
}

/** The ANSI code page of a language; fails for one that the system does not know or that has none. */
inline Result<UINT> AnsiCodePage(LANGID language, WORD sortId = 0) noexcept
{
    const DWORD codePage = ARVMUI_GetACP(language, sortId);
    return codePage != 0 ? Result<UINT>(codePage) : Result<UINT>::LastFailure();
}

/** The state of the library in this process. */
inline const LibraryDescriptor& Descriptor() noexcept
{
    return *ARVMUI_GetDescriptor();
}

/* ---- Resource files --------------------------------------------------------------------------- */

/** The path format of a module's resource files; errors as of ARVMUI_GetResourceFileFormatW. */
inline Result<std::wstring> ResourceFileFormat(HMODULE module = nullptr, const TextOrId& fileName = {})
{
    std::wstring format(detail::kPathChars, L'\0');
    const DWORD length = ARVMUI_GetResourceFileFormatW(module, fileName.Get(), format.data(), detail::kPathChars);
    return length != 0 ? format.substr(0, length) : Result<std::wstring>::LastFailure();
}

/** The path of the first resource file that exists; fails with 2 for none, 1223 when the user refused. */
inline Result<std::wstring> ResourceFileName(const ResourceQuery& query = {})
{
    std::wstring path(detail::kPathChars, L'\0');
    const DWORD length = ARVMUI_GetResourceFileNameW(
        query.module, query.fileName.Get(), query.locales.Get(), path.data(), detail::kPathChars);
    return length != 0 ? path.substr(0, length) : Result<std::wstring>::LastFailure();
}

/**
 * Calls callable(std::wstring_view folder) for every locale folder of a module until it returns other than zero.
 * @return what the callable returned last, 0 when it has seen all; fails where there are no folders to list.
 */
template <typename Callable>
Result<DWORD> EnumResourceFolders(HMODULE module, Callable&& callable) noexcept
{
    using Target = std::remove_reference_t<Callable>;
    Target* target = std::addressof(callable);
    const DWORD stopped = ARVMUI_EnumResourceFoldersW(module, detail::CallThrough<Target, std::wstring_view>, &target);
    if (stopped != 0 || ::GetLastError() == ERROR_NO_MORE_FILES) return stopped;
    return Result<DWORD>::LastFailure();
}

/* ---- Resource libraries ----------------------------------------------------------------------- */

/** A string where it lies in a module, valid as long as the module is loaded; empty where there is none. */
inline std::wstring_view StringOf(HMODULE module, UINT id) noexcept
{
    const wchar_t* text = nullptr;
    // Without room for a copy the system tells where the text lies.
    const int length = ::LoadStringW(module, id, reinterpret_cast<wchar_t*>(&text), 0);
    return length > 0 ? std::wstring_view(text, static_cast<std::size_t>(length)) : std::wstring_view();
}

/** A loaded resource library, freed with this object. */
class ResourceLibrary
{
public:
    /** Takes over a module, which FreeLibrary is to free; null for none. */
    explicit ResourceLibrary(HMODULE library = nullptr) noexcept : library_(library) {}

    /** Loads the first one that exists; fails with 126 for none, 1223 when the user refused to choose. */
    static Result<ResourceLibrary> Load(const ResourceQuery& query = {})
    {
        HMODULE library = nullptr;
        if (!ARVMUI_LoadResourceLibraryW(query.module, query.fileName.Get(), query.locales.Get(), &library))
            return Result<ResourceLibrary>::LastFailure();
        return ResourceLibrary(library);
    }

    /** Finds the first one that is loaded already, without owning it; fails as Load does. */
    static Result<HMODULE> FindLoaded(const ResourceQuery& query = {})
    {
        HMODULE library = nullptr;
        if (!ARVMUI_GetResourceHandleW(query.module, query.fileName.Get(), query.locales.Get(), &library))
            return Result<HMODULE>::LastFailure();
        return library;
    }

    HMODULE Get() const noexcept { return library_.get(); }
    explicit operator bool() const noexcept { return library_ != nullptr; }

    /** Hands the module over to the caller, who frees it with FreeLibrary. */
    HMODULE Release() noexcept { return library_.release(); }

    /** As LocaleOf, LanguageOf and StringOf; without a module there are no strings. */
    std::wstring Locale() const { return LocaleOf(Get()); }
    LANGID Language() const noexcept { return LanguageOf(Get()); }
    std::wstring_view String(UINT id) const noexcept { return library_ ? StringOf(Get(), id) : std::wstring_view(); }

private:
    std::unique_ptr<std::remove_pointer_t<HMODULE>, detail::FreeModule> library_;
};

/* ---- Text and settings files ------------------------------------------------------------------ */

/** Terminated text in a block of the library's. */
using Text = std::unique_ptr<wchar_t, detail::FreeBlock>;

/** Reads a translated text file whole; fails as ResourceFileName does, and when it cannot be opened. */
inline Result<Text> ReadTextFile(const ResourceQuery& query)
{
    wchar_t* block = nullptr;
    if (!ARVMUI_ReadTextFileW(query.module, query.fileName.Get(), query.locales.Get(), &block))
        return Result<Text>::LastFailure();
    return Text(block);
}

/** The code page of an encoding name; 0, the ANSI code page, for an unknown one. */
inline UINT CodePageOfEncoding(const std::wstring& name)
{
    return ARVMUI_TextEncodingToCodePageW(name.c_str());
}

/** A settings file, read anew with each call. One that cannot be opened has no content. */
class SettingsFile
{
public:
    explicit SettingsFile(std::wstring_view path) : path_(path) {}

    /** The value of a key; the default, without white space at its end, where there is none. */
    std::wstring Value(const std::wstring& section, const std::wstring& key, const std::wstring& missing = {}) const
    {
        return Ask(section.c_str(), key.c_str(), missing.c_str());
    }

    /** As Value, from the first section that has the key. */
    std::wstring ValueInAnySection(const std::wstring& key, const std::wstring& missing = {}) const
    {
        return Ask(reinterpret_cast<const wchar_t*>(~ULONG_PTR{0}), key.c_str(), missing.c_str());
    }

    /** The keys of a section; the sections of the file. */
    std::vector<std::wstring> Keys(const std::wstring& section) const { return Names(Ask(section.c_str(), nullptr)); }
    std::vector<std::wstring> Sections() const { return Names(Ask(nullptr, nullptr)); }

private:
    std::wstring Ask(const wchar_t* section, const wchar_t* key, const wchar_t* missing = nullptr) const
    {
        const auto ask = [=, this](wchar_t* buffer, DWORD size)
        { return ARVMUI_GetPrivateProfileStringW(section, key, missing, buffer, size, path_.c_str()); };
        constexpr DWORD kUsualChars = 512;
        return detail::WriteWhole(kUsualChars, ask);
    }

    /** Cuts a list of terminated names apart. */
    static std::vector<std::wstring> Names(std::wstring_view list)
    {
        std::vector<std::wstring> names;
        for (std::size_t begin = 0; begin < list.size(); begin += names.back().size() + 1)
            names.emplace_back(list.substr(begin, list.find(L'\0', begin) - begin));
        return names;
    }

    std::wstring path_;
};

/* ---- Messages and dialogs --------------------------------------------------------------------- */

/** A value for "%1" and so on: text, or a number for "%1!d!". */
class Insert
{
public:
    Insert(const wchar_t* text) : text_(text) {}
    Insert(std::wstring_view text) : text_(text) {}
    Insert(const std::wstring& text) : text_(text) {}
    template <std::integral Number>
    Insert(Number number) noexcept : number_(static_cast<DWORD_PTR>(number))
    {
    }

    /** As FormatMessageW takes it; valid as long as this object. */
    DWORD_PTR Get() const noexcept { return text_ ? reinterpret_cast<DWORD_PTR>(text_->c_str()) : number_; }

private:
    std::optional<std::wstring> text_;
    DWORD_PTR number_ = 0;
};

/** A list of values for a message. */
using Inserts = std::initializer_list<Insert>;

/** ARVMUI_FormatMessageW with the flags of a source; where an insert is not given, empty text stands for it. */
inline Result<std::wstring> FormatMessageFrom(
    DWORD sourceFlags, const void* source, DWORD messageId, Inserts inserts = {})
{
    constexpr std::size_t kMaxInserts = 99;
    DWORD_PTR values[kMaxInserts];
    for (DWORD_PTR& value : values) value = reinterpret_cast<DWORD_PTR>(L"");
    std::size_t count = 0;
    for (const Insert& insert : inserts)
        if (count < kMaxInserts) values[count++] = insert.Get();

    wchar_t* text = nullptr;
    const DWORD length =
        ARVMUI_FormatMessageW(sourceFlags | FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_ARGUMENT_ARRAY, source,
            messageId, 0, reinterpret_cast<wchar_t*>(&text), 0, reinterpret_cast<va_list*>(values));
    if (length == 0) return Result<std::wstring>::LastFailure();
    const std::unique_ptr<wchar_t, decltype(&::LocalFree)> owner(text, &::LocalFree);
    return std::wstring(text, length);
}

/** What the system says about an error code, line end included; fails for a code without message. */
inline Result<std::wstring> SystemMessage(DWORD error)
{
    return FormatMessageFrom(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error);
}

/** A message of a module's message table; fails where the module has none or not this one. */
inline Result<std::wstring> ModuleMessage(HMODULE module, DWORD messageId, Inserts inserts = {})
{
    return FormatMessageFrom(FORMAT_MESSAGE_FROM_HMODULE, module, messageId, inserts);
}

/** Fills the inserts of a text, such as a string of a resource library; fails without memory. */
inline Result<std::wstring> FormatText(std::wstring_view format, Inserts inserts = {})
{
    // With a blank in front, because the system takes text without any character for a failure.
    const std::wstring blankFormat = L' ' + std::wstring(format);
    Result<std::wstring> text = FormatMessageFrom(FORMAT_MESSAGE_FROM_STRING, blankFormat.c_str(), 0, inserts);
    if (text) text->erase(0, 1);
    return text;
}

/** A message box with buttons in the language in use; identifiers are those of the program's strings. */
inline Result<int> ShowMessage(HWND owner, const TextOrId& text, const TextOrId& caption = {}, UINT type = MB_OK)
{
    const int button = ARVMUI_MessageBoxW(owner, text.Get(), caption.Get(), type);
    return button != 0 ? Result<int>(button) : Result<int>::LastFailure();
}

/** Whose list of preferred languages the settings dialog changes. */
enum class SettingsScope : DWORD
{
    User = 0,
    Machine = 1
};

/** Lets the user choose preferred languages; FALSE when it could not be shown or the choice not be stored. */
inline bool ShowSettingsDialog(HWND owner, SettingsScope scope = SettingsScope::User, const HICON (*icons)[2] = nullptr)
{
    return ARVMUI_SettingDialogBoxW(owner, icons ? *icons : nullptr, nullptr, static_cast<DWORD>(scope)) != FALSE;
}

/** Tells the common controls the language in use, and which one they use now; fails where they are missing. */
inline Result<LANGID> InitCommonControlsLanguage() noexcept
{
    const LANGID language = ARVMUI_InitCommonControlsLanguage();
    return language != 0 ? Result<LANGID>(language) : Result<LANGID>::LastFailure();
}

/** Switches the library's boxes for errors on or off as long as this object lives; they are usually on. */
class MessagePopups
{
public:
    explicit MessagePopups(bool enable) noexcept { ARVMUI_SetMessagePopup(enable, &previous_); }
    ~MessagePopups() { ARVMUI_SetMessagePopup(previous_, nullptr); }
    MessagePopups(const MessagePopups&) = delete;
    MessagePopups& operator=(const MessagePopups&) = delete;

private:
    BOOL previous_ = FALSE;
};

/* ---- Command line ------------------------------------------------------------------------------ */

/** Removes every option "/uilocale:"; the first sets the locale list of the process if it has none yet. */
inline void ParseCommandLine(std::wstring& commandLine)
{
    ARVMUI_ParseCommandLineW(commandLine.data());
    commandLine.resize(std::wcslen(commandLine.c_str()));
}

/** Removes every option "/uilocale:" from a vector that a null pointer ends; whether there was one. */
inline bool ParseArguments(int& argc, wchar_t** argv) noexcept
{
    return ARVMUI_ParseArgvW(&argc, argv) != FALSE;
}

/** The process's command line without the option, in the system's own buffer. */
inline std::wstring_view CommandLine() noexcept
{
    return ARVMUI_GetCommandLineW();
}

/** The option that makes another process speak the language in use, such as L"/uilocale:de-DE". */
inline std::wstring LocaleOption()
{
    for (DWORD capacity = 2 * ARVMUI_TAG_CHARS;; capacity *= 2)
    {
        std::wstring option(capacity, L'\0');
        const int length = ARVMUI_GetCommandLineOptionW(option.data(), capacity);
        if (length == 0 && capacity < detail::kPathChars) continue;
        option.resize(static_cast<std::size_t>(length));
        return option;
    }
}

/** A process; ending the object closes its handle and lets it run on. */
using Process = std::unique_ptr<void, detail::CloseProcess>;

/** Starts a program that speaks the language in use if its command line names none; CreateProcessW's errors. */
inline Result<Process> StartChild(std::wstring_view commandLine, DWORD creationFlags = 0)
{
    std::wstring line = std::wstring(commandLine) + L' ' + LocaleOption();
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child = {};
    if (!::CreateProcessW(
            nullptr, line.data(), nullptr, nullptr, FALSE, creationFlags, nullptr, nullptr, &startup, &child))
        return Result<Process>::LastFailure();
    ::CloseHandle(child.hThread);
    return Process(child.hProcess);
}

// NOLINTEND(google-explicit-constructor)

}  // namespace arvmui

#endif
