#include "support/child_process.h"

#include <cwchar>

namespace arvmui_test
{
namespace
{

constexpr DWORD kWaitMilliseconds = 60000;
constexpr int kStarts = 3;
constexpr DWORD kBetweenStartsMs = 200;

bool NamesVariable(const std::wstring& entry, const std::wstring& name)
{
    return entry.size() > name.size() && entry[name.size()] == L'='
           && _wcsnicmp(entry.c_str(), name.c_str(), name.size()) == 0;
}

std::vector<wchar_t> EnvironmentBlock(const ChildSettings& settings)
{
    std::vector<wchar_t> block;
    const auto append = [&block](const std::wstring& entry)
    {
        block.insert(block.end(), entry.begin(), entry.end());
        block.push_back(L'\0');
    };

    wchar_t* const own = ::GetEnvironmentStringsW();
    for (const wchar_t* p = own; *p; p += std::wcslen(p) + 1)
    {
        const std::wstring entry(p);
        bool changed = false;
        for (const auto& variable : settings.environment) changed = changed || NamesVariable(entry, variable.first);
        if (!changed) append(entry);
    }
    ::FreeEnvironmentStringsW(own);
    for (const auto& variable : settings.environment)
    {
        if (variable.second) append(variable.first + L"=" + *variable.second);
    }
    block.push_back(L'\0');
    return block;
}

struct Pipe
{
    HANDLE read = nullptr;
    HANDLE write = nullptr;
};

// Only the child's end is inherited: else the other end would never see the pipe break.
Pipe CreatePipeFor(bool childReads)
{
    Pipe pipe;
    SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
    if (!::CreatePipe(&pipe.read, &pipe.write, &inherit, 0)) return {};
    ::SetHandleInformation(childReads ? pipe.write : pipe.read, HANDLE_FLAG_INHERIT, 0);
    return pipe;
}

void Close(HANDLE& handle)
{
    if (handle) ::CloseHandle(handle);
    handle = nullptr;
}

}  // namespace

ChildProcess::ChildProcess(const ChildSettings& settings)
{
    Pipe input = CreatePipeFor(true);
    Pipe output = CreatePipeFor(false);
    input_ = input.write;
    output_ = output.read;

    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.read;
    startup.hStdOutput = output.write;
    startup.hStdError = settings.withErrors ? startup.hStdOutput : ::GetStdHandle(STD_ERROR_HANDLE);

    std::wstring line = settings.commandLine;
    std::vector<wchar_t> environment = EnvironmentBlock(settings);
    // Once in several thousand times Wine fails to start a program.
    for (int i = 0; i < kStarts && !process_; ++i)
    {
        if (i > 0) ::Sleep(kBetweenStartsMs);
        PROCESS_INFORMATION information = {};
        if (!::CreateProcessW(settings.application.c_str(), line.data(), nullptr, nullptr, TRUE,
                settings.flags | CREATE_UNICODE_ENVIRONMENT, environment.data(),
                settings.folder.empty() ? nullptr : settings.folder.c_str(), &startup, &information))
            continue;
        process_ = information.hProcess;
        id_ = information.dwProcessId;
        ::CloseHandle(information.hThread);
    }
    Close(input.read);
    Close(output.write);
}

ChildProcess::~ChildProcess()
{
    CloseInput();
    Close(output_);
    if (process_ && ::WaitForSingleObject(process_, kWaitMilliseconds) != WAIT_OBJECT_0)
        ::TerminateProcess(process_, 1);
    Close(process_);
}

bool ChildProcess::ReadLine(std::string& line)
{
    line.clear();
    for (;;)
    {
        char character = '\0';
        DWORD read = 0;
        if (!::ReadFile(output_, &character, 1, &read, nullptr) || read == 0) return !line.empty();
        if (character == '\n') return true;
        if (character != '\r') line.push_back(character);
    }
}

std::string ChildProcess::ReadAll()
{
    std::string text;
    char buffer[4096];
    DWORD read = 0;
    while (::ReadFile(output_, buffer, sizeof(buffer), &read, nullptr) && read != 0) text.append(buffer, read);
    return text;
}

void ChildProcess::CloseInput()
{
    Close(input_);
}

std::optional<DWORD> ChildProcess::Wait()
{
    DWORD code = 0;
    if (::WaitForSingleObject(process_, kWaitMilliseconds) != WAIT_OBJECT_0) return std::nullopt;
    if (!::GetExitCodeProcess(process_, &code)) return std::nullopt;
    return code;
}

std::wstring WideFromUtf8(const std::string& text)
{
    const int size = static_cast<int>(text.size());
    std::wstring wide(static_cast<size_t>(::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0)), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string Utf8FromWide(const std::wstring& text)
{
    const int size = static_cast<int>(text.size());
    std::string utf8(
        static_cast<size_t>(::WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr)), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), size, utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr);
    return utf8;
}

}  // namespace arvmui_test
