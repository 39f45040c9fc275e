// Reading settings files: against the system's reader of the same format, which is given a fresh copy
// each time because it keeps what it has read; against inih, a small reader that programs carry with
// them; and against merely reading the file.

#include "interleaved.h"

#include <arvmui.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <ini.h>
#include <string>

namespace
{

constexpr int kSections = 20;
constexpr int kManyKeys = 20'000;  // 0.9 MB
constexpr size_t kTypicalBytes = 500;
constexpr DWORD kBlockBytes = 1024;
const wchar_t* const kAnySection = reinterpret_cast<const wchar_t*>(~static_cast<ULONG_PTR>(0));

std::wstring TemporaryFile(const wchar_t* name)
{
    std::array<wchar_t, MAX_PATH> folder = {};
    ::GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    return std::wstring(folder.data()) + L"arvmui_bench_" + std::to_wstring(::GetCurrentProcessId()) + name;
}

class ScratchFile
{
public:
    ScratchFile(const wchar_t* name, const std::string& text) : path_(TemporaryFile(name))
    {
        const HANDLE file = ::CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        ::WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
        ::CloseHandle(file);
    }
    ~ScratchFile() { ::DeleteFileW(path_.c_str()); }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const wchar_t* Path() const { return path_.c_str(); }

private:
    std::wstring path_;
};

// Keys are numbered through all sections, so the last one is in one place only.
std::string MakeSettings(int keys)
{
    std::string text;
    for (int section = 0; section < kSections; ++section)
    {
        text += "[Section" + std::to_string(section) + "]\r\n";
        for (int key = 0; key < keys / kSections; ++key)
            text += "SomeKeyName" + std::to_string(section * (keys / kSections) + key) + " = some words as a value\r\n";
    }
    return text;
}

std::wstring LastKey(int keys)
{
    return L"SomeKeyName" + std::to_wstring(keys - 1);
}

void Read(const wchar_t* section, const std::wstring& key, const wchar_t* path)
{
    std::array<wchar_t, 256> value = {};
    if (ARVMUI_GetPrivateProfileStringW(section, key.c_str(), L"", value.data(), static_cast<DWORD>(value.size()), path)
        == 0)
        std::abort();  // a benchmark of failures would be worthless
}

void ReadBySystem(const std::wstring& key, const wchar_t* path)
{
    std::array<wchar_t, 256> value = {};
    if (::GetPrivateProfileStringW(L"Section19", key.c_str(), L"", value.data(), static_cast<DWORD>(value.size()), path)
        == 0)
        std::abort();
}

void ReadBytes(const wchar_t* path)
{
    const HANDLE file =
        ::CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    char block[kBlockBytes];
    DWORD read = 0;
    while (::ReadFile(file, block, kBlockBytes, &read, nullptr) && read != 0)
    {
    }
    ::CloseHandle(file);
}

struct WantedEntry
{
    const char* section;
    std::string key;
    std::array<char, 256> value;
};

int KeepWanted(void* user, const char* section, const char* key, const char* value)
{
    WantedEntry& wanted = *static_cast<WantedEntry*>(user);
    if (std::strcmp(section, wanted.section) == 0 && wanted.key == key)
        std::snprintf(wanted.value.data(), wanted.value.size(), "%s", value);
    return 1;
}

void ReadByInih(const std::string& key, const std::string& path)
{
    WantedEntry wanted = {"Section19", key, {}};
    if (ini_parse(path.c_str(), &KeepWanted, &wanted) != 0 || wanted.value[0] == '\0') std::abort();
}

// The copies are made before and deleted after the clock runs.
void CompareWithSystem()
{
    constexpr int kRounds = 15;
    const std::string text = MakeSettings(kManyKeys);
    const std::wstring key = LastKey(kManyKeys);
    const ScratchFile file(L".ini", text);
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int round = 0; round < kRounds; ++round)
    {
        const ScratchFile copy((L"_" + std::to_wstring(round) + L".ini").c_str(), text);
        auto readOurs = [&] { Read(L"Section19", key, file.Path()); };
        auto readTheirs = [&] { ReadBySystem(key, copy.Path()); };
        ours.push_back(bench::TimeOnce(readOurs, 1));
        theirs.push_back(bench::TimeOnce(readTheirs, 1));
    }
    bench::Report("last of 20,000 keys, against the system's reader",
        {bench::Median(std::move(ours)), bench::Median(std::move(theirs))}, 0.2);
}

void CompareWithInih()
{
    const ScratchFile file(L".ini", MakeSettings(kManyKeys));
    const std::wstring key = LastKey(kManyKeys);
    const std::string narrowKey(key.begin(), key.end());
    const std::string narrowPath = std::filesystem::path(file.Path()).string();
    bench::Report("last of 20,000 keys, against inih",
        bench::Compare(
            15, 1, [&] { Read(L"Section19", key, file.Path()); }, [&] { ReadByInih(narrowKey, narrowPath); }),
        0.12);
}

void CompareSections()
{
    const ScratchFile file(L".ini", MakeSettings(kManyKeys));
    const std::wstring key = LastKey(kManyKeys);
    bench::Report("last of 20,000 keys, in any section against in one",
        bench::Compare(
            31, 3, [&] { Read(kAnySection, key, file.Path()); }, [&] { Read(L"Section19", key, file.Path()); }),
        1.5);
}

// The time for a megabyte must not depend on how many there are.
void CompareSizes(int keys, const char* title)
{
    const std::string smallText = MakeSettings(kManyKeys);
    const std::string largeText = MakeSettings(keys);
    const ScratchFile small(L"_small.ini", smallText);
    const ScratchFile large(L"_large.ini", largeText);
    bench::Comparison comparison = bench::Compare(
        9, 1, [&] { Read(L"Section19", LastKey(keys), large.Path()); },
        [&] { Read(L"Section19", LastKey(kManyKeys), small.Path()); });
    comparison.ours /= static_cast<double>(largeText.size()) / 1e6;
    comparison.theirs /= static_cast<double>(smallText.size()) / 1e6;
    bench::Report(title, comparison, 1.2);
}

void CompareTypicalFile(const char* title, const std::string& value)
{
    std::string text = "[Section19]\r\n";
    for (int key = 0; text.size() < kTypicalBytes; ++key) text += "Key" + std::to_string(key) + "=" + value + "\r\n";
    text += "Last=1\r\n";
    const ScratchFile file(L"_typical.ini", text);
    bench::Report(title,
        bench::Compare(
            41, 50, [&] { Read(L"Section19", L"Last", file.Path()); }, [&] { ReadBytes(file.Path()); }),
        1.3);
}

}  // namespace

int main()
{
    CompareWithSystem();
    CompareWithInih();
    CompareSections();
    CompareSizes(200'000, "a megabyte of a 9 MB file against one of a 0.9 MB file");
    CompareSizes(1'080'000, "a megabyte of a 50 MB file against one of a 0.9 MB file");
    CompareTypicalFile("0.5 KB file, against opening, reading and closing it", "value of a key");
    CompareTypicalFile("0.5 KB file with umlauts, against the same", "Wert des Schl\xFCssels");
    return 0;
}
