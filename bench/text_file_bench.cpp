// Reading a translated text file, against what a program would write by hand: read the bytes in blocks
// of the same size into a buffer that grows by the same rule, then convert them in one call.
//
// The code page follows the language of the process, so this program runs itself once for each.

#include "interleaved.h"

#include <arvmui.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

namespace
{

constexpr DWORD kBlockBytes = 1024;
constexpr size_t kFirstGrowth = 256;
constexpr size_t kLargestGrowth = 0x100000;
constexpr double kLimit = 1.15;

struct Sample
{
    const char* name;
    const wchar_t* language;
    const char* text;
};

constexpr Sample kSamples[] = {
    {"ASCII", L"en", "The quick brown fox jumps over the lazy dog, and nobody minds.\r\n"},
    {"German in 1252", L"de",
        "Gr\xFC\xDF"
        "e aus M\xFCnchen: sch\xF6ne Stra\xDF"
        "en, gem\xFCtliche G\xE4rten.\r\n"},
    {"Japanese in 932", L"ja",
        "\x93\xFA\x96\x7B\x8C\xEA\x82\xCC\x83\x65\x83\x4C\x83\x58\x83\x67\x82\xF0\x93\xC7\x82\xDD\x8D\x9E\x82\xDE\x81"
        "\x42\r\n"},
};

std::wstring ProgramPath()
{
    std::array<wchar_t, MAX_PATH> path = {};
    ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return path.data();
}

void WriteText(const std::wstring& path, const std::string& text)
{
    const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    ::WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    ::CloseHandle(file);
}

wchar_t* ReadByHand(const std::wstring& path, UINT codePage)
{
    const HANDLE heap = ::GetProcessHeap();
    const HANDLE file = ::CreateFileW(
        path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    char* bytes = nullptr;
    size_t count = 0;
    size_t capacity = 0;
    char block[kBlockBytes];
    DWORD read = 0;
    while (::ReadFile(file, block, kBlockBytes, &read, nullptr) && read != 0)
    {
        while (count + read > capacity)
        {
            capacity += capacity == 0 ? kFirstGrowth : std::min(capacity, kLargestGrowth);
            bytes =
                static_cast<char*>(bytes ? ::HeapReAlloc(heap, 0, bytes, capacity) : ::HeapAlloc(heap, 0, capacity));
        }
        std::memcpy(bytes + count, block, read);
        count += read;
    }
    ::CloseHandle(file);
    const int length = ::MultiByteToWideChar(codePage, 0, bytes, static_cast<int>(count), nullptr, 0);
    wchar_t* const text = static_cast<wchar_t*>(::HeapAlloc(heap, 0, (static_cast<size_t>(length) + 1) * 2));
    ::MultiByteToWideChar(codePage, 0, bytes, static_cast<int>(count), text, length);
    text[length] = L'\0';
    ::HeapFree(heap, 0, bytes);
    return text;
}

int MeasureLanguage(const Sample& sample)
{
    const std::wstring program = ProgramPath();
    std::wstring folder = program.substr(0, program.rfind(L'\\')) + L"\\resource\\" + sample.language;
    const std::wstring path = folder + L"\\bench.txt";
    const UINT codePage = ARVMUI_GetACP(ARVMUI_GetLangID(nullptr), 0);
    for (const size_t size : {size_t{100'000}, size_t{1'000'000}})
    {
        std::string text;
        while (text.size() < size) text += sample.text;
        WriteText(path, text);

        const auto ours = []
        {
            wchar_t* result = nullptr;
            ARVMUI_ReadTextFileW(nullptr, L"bench.txt", nullptr, &result);
            ARVMUI_free(result);
        };
        const auto byHand = [&] { ::HeapFree(::GetProcessHeap(), 0, ReadByHand(path, codePage)); };
        const std::string title = std::string("text file, ") + sample.name + ", " + std::to_string(size / 1000) + " KB";
        bench::Report(title.c_str(), bench::Compare(41, size > 200'000 ? 2 : 10, ours, byHand), kLimit);
    }
    ::DeleteFileW(path.c_str());
    return 0;
}

int RunItself(const Sample& sample)
{
    std::wstring line = L"\"" + ProgramPath() + L"\" " + sample.language + L" /uilocale:" + sample.language;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process))
        return 1;
    ::WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 1;
    ::GetExitCodeProcess(process.hProcess, &exitCode);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return static_cast<int>(exitCode);
}

}  // namespace

extern "C" int wmain(int argc, wchar_t** argv)
{
    ARVMUI_ParseArgvW(&argc, argv);
    int result = 0;
    for (const Sample& sample : kSamples)
    {
        if (argc < 2)
            result |= RunItself(sample);
        else if (std::wcscmp(argv[1], sample.language) == 0)
            return MeasureLanguage(sample);
    }
    return result;
}
