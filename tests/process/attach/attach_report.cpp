#include "attach_report.h"

#include <cstdio>
#include <string>

namespace arvmui_test
{
namespace
{

std::wstring Variable(const wchar_t* name)
{
    wchar_t value[4096];
    const DWORD length = ::GetEnvironmentVariableW(name, value, 4096);
    return std::wstring(value, length < 4096 ? length : 0);
}

void WriteLine(const char* name, const std::wstring& value)
{
    const std::wstring text = std::wstring(name, name + std::char_traits<char>::length(name)) + L"=" + value + L"\n";
    char utf8[16384];
    const int size = ::WideCharToMultiByte(
        CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8, static_cast<int>(sizeof(utf8)), nullptr, nullptr);
    DWORD written = 0;
    ::WriteFile(::GetStdHandle(STD_OUTPUT_HANDLE), utf8, static_cast<DWORD>(size), &written, nullptr);
}

void WriteNumber(const char* name, unsigned long long value)
{
    WriteLine(name, std::to_wstring(value));
}

std::wstring WideFromAnsi(const char* text)
{
    wchar_t wide[4096];
    return ::MultiByteToWideChar(CP_ACP, 0, text, -1, wide, 4096) > 0 ? wide : L"";
}

std::wstring PublishedList()
{
    const std::wstring name = L"ARVMUI_" + std::to_wstring(::GetCurrentProcessId()) + L".IPC";
    const HANDLE section = ::OpenFileMappingW(FILE_MAP_READ, FALSE, name.c_str());
    if (!section) return L"(none)";
    std::wstring list = L"(unreadable)";
    const void* const view = ::MapViewOfFile(section, FILE_MAP_READ, 0, 0, 0);
    if (view)
    {
        const LocaleRecord& record = *static_cast<const LocaleRecord*>(view);
        list = record.size == sizeof(LocaleRecord) ? record.locales : L"(wrong size)";
        ::UnmapViewOfFile(view);
    }
    ::CloseHandle(section);
    return list;
}

std::wstring KeyboardLanguages(const LibraryDescriptor& descriptor)
{
    std::wstring text;
    for (DWORD i = 0; i < descriptor.keyboardLanguageCount; ++i)
        text += std::to_wstring(descriptor.keyboardLanguages[i]) + L" ";
    return text;
}

}  // namespace

void WriteReport(const AttachedLibrary& library, unsigned windows)
{
    const LibraryDescriptor& descriptor = *library.getDescriptor();
    WriteNumber("process", ::GetCurrentProcessId());
    WriteLine("commandLine", ::GetCommandLineW());
    WriteLine("narrowCommandLine", WideFromAnsi(library.getNarrowCommandLine()));
    WriteNumber("descriptor", reinterpret_cast<ULONG_PTR>(&descriptor));
    WriteNumber("module", reinterpret_cast<ULONG_PTR>(descriptor.module));
    WriteLine("commandLineHint", descriptor.LocaleHintTable[HINT_COMMAND_LINE]);
    WriteLine("settingsFileHint", descriptor.LocaleHintTable[HINT_SETTINGS_FILE]);
    WriteLine("browserHint", descriptor.LocaleHintTable[HINT_BROWSER]);
    WriteLine("askedHint", descriptor.LocaleHintTable[HINT_ASKED]);
    WriteLine("published", PublishedList());
    WriteNumber("hasMapping", descriptor.localeMapping != nullptr);
    WriteNumber("threadSlot", descriptor.tlsIndex);
    WriteNumber("threadValue", descriptor.tlsIndex == TLS_OUT_OF_INDEXES
                                   ? 0
                                   : reinterpret_cast<ULONG_PTR>(::TlsGetValue(descriptor.tlsIndex)));
    WriteLine("keyboardLanguages", KeyboardLanguages(descriptor));
    WriteNumber("popups", static_cast<unsigned>(descriptor.showMessagePopup));
    WriteNumber("windows", windows);

    wchar_t text[MAX_PATH] = {};
    if (descriptor.resourceLibrary) ::GetModuleFileNameW(descriptor.resourceLibrary, text, MAX_PATH);
    WriteLine("resourceLibrary", text);
    text[0] = L'\0';
    library.getLocale(nullptr, text, MAX_PATH);
    WriteLine("locale", text);
    WriteNumber("language", library.getLanguage(nullptr));
    WriteLine("end", L"");
}

void RunChild()
{
    const std::wstring lines = Variable(L"ARVMUI_TEST_CHILDREN");
    if (lines.empty()) return;
    const size_t end = lines.find(L'|');
    std::wstring line = lines.substr(0, end);
    ::SetEnvironmentVariableW(L"ARVMUI_TEST_CHILDREN", end == std::wstring::npos ? nullptr : lines.c_str() + end + 1);

    wchar_t program[MAX_PATH];
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION child = {};
    if (!::CreateProcessW(program, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &child)) return;
    ::WaitForSingleObject(child.hProcess, INFINITE);
    ::CloseHandle(child.hThread);
    ::CloseHandle(child.hProcess);
}

void WaitForTest()
{
    if (Variable(L"ARVMUI_TEST_WAIT").empty()) return;
    char character = '\0';
    DWORD read = 0;
    while (::ReadFile(::GetStdHandle(STD_INPUT_HANDLE), &character, 1, &read, nullptr) && read != 0)
    {
    }
}

}  // namespace arvmui_test
