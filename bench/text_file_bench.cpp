// Reading a translated text file, against what a program would write by hand: read the bytes in blocks
// of the same size, into a buffer that grows through the same sizes, then convert them in one call.
//
// By hand the growing buffer might as well be half as large, because bytes are collected in it and not
// characters. That is told, too, but is less work: large blocks are moved whenever they grow.
//
// The code page follows the language of the process, so this program runs itself once for each.

#include "interleaved.h"

#include <arvmui.h>

#include <algorithm>
#include <array>
#include <cstdlib>
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

// The bytes of a file in a buffer whose size is counted in elements.
struct FileBytes
{
    char* data = nullptr;
    size_t count = 0;
    size_t capacity = 0;  // elements

    void Append(const char* block, size_t blockBytes, size_t elementBytes)
    {
        while (count + blockBytes > capacity)
        {
            capacity += capacity == 0 ? kFirstGrowth : std::min(capacity, kLargestGrowth);
            const size_t size = capacity * elementBytes;
            const HANDLE heap = ::GetProcessHeap();
            data = static_cast<char*>(data ? ::HeapReAlloc(heap, 0, data, size) : ::HeapAlloc(heap, 0, size));
        }
        std::memcpy(data + count, block, blockBytes);
        count += blockBytes;
    }
};

// No byte gives more than one character, so one call does it; the block is then cut to the text.
wchar_t* ConvertByHand(const FileBytes& bytes, UINT codePage)
{
    const HANDLE heap = ::GetProcessHeap();
    wchar_t* text = static_cast<wchar_t*>(::HeapAlloc(heap, 0, (bytes.count + 1) * sizeof(wchar_t)));
    const int length = ::MultiByteToWideChar(
        codePage, 0, bytes.data, static_cast<int>(bytes.count), text, static_cast<int>(bytes.count));
    text = static_cast<wchar_t*>(::HeapReAlloc(heap, 0, text, (static_cast<size_t>(length) + 1) * sizeof(wchar_t)));
    text[length] = L'\0';
    return text;
}

wchar_t* ReadByHand(const std::wstring& path, UINT codePage, size_t elementBytes)
{
    const HANDLE file = ::CreateFileW(
        path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    FileBytes bytes;
    char block[kBlockBytes];
    DWORD read = 0;
    while (::ReadFile(file, block, kBlockBytes, &read, nullptr) && read != 0) bytes.Append(block, read, elementBytes);
    ::CloseHandle(file);
    wchar_t* const text = ConvertByHand(bytes, codePage);
    ::HeapFree(::GetProcessHeap(), 0, bytes.data);
    return text;
}

void ReadByLibrary()
{
    wchar_t* text = nullptr;
    ARVMUI_ReadTextFileW(nullptr, L"bench.txt", nullptr, &text);
    ARVMUI_free(text);
}

// Both must have read the same, or the times say nothing.
void CheckSameText(const std::wstring& path, UINT codePage)
{
    wchar_t* ours = nullptr;
    wchar_t* const byHand = ReadByHand(path, codePage, sizeof(wchar_t));
    if (!ARVMUI_ReadTextFileW(nullptr, L"bench.txt", nullptr, &ours) || std::wcscmp(ours, byHand) != 0) std::abort();
    ARVMUI_free(ours);
    ::HeapFree(::GetProcessHeap(), 0, byHand);
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

        CheckSameText(path, codePage);

        const std::string title = std::string("text file, ") + sample.name + ", " + std::to_string(size / 1000) + " KB";
        const auto compareWith = [&](size_t elementBytes)
        {
            return bench::Compare(41, size > 200'000 ? 2 : 10, &ReadByLibrary,
                [&] { ::HeapFree(::GetProcessHeap(), 0, ReadByHand(path, codePage, elementBytes)); });
        };
        bench::Report(title.c_str(), compareWith(sizeof(wchar_t)), kLimit);
        bench::Report("  collected in half the memory", compareWith(sizeof(char)));
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
