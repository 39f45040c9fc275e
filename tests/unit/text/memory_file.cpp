#include "memory_file.h"

#include "support/import_replacement.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <utility>

namespace arvmui_test
{
namespace
{

MemoryFile* g_current = nullptr;

bool IsCurrent(HANDLE file)
{
    return g_current && file == static_cast<HANDLE>(g_current);
}

HANDLE WINAPI OpenFile(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD disposition,
    DWORD attributes, HANDLE templateFile)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", CreateFileW);
    if (!g_current || std::wcscmp(name, MemoryFile::kName) != 0)
    {
        return real(name, access, share, security, disposition, attributes, templateFile);
    }
    g_current->openings.push_back(
        {access, share, disposition, attributes, security != nullptr, templateFile != nullptr});
    g_current->Rewind();
    return g_current;
}

BOOL WINAPI ReadBytes(HANDLE file, LPVOID target, DWORD capacity, LPDWORD read, LPOVERLAPPED overlapped)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", ReadFile);
    if (!IsCurrent(file)) return real(file, target, capacity, read, overlapped);
    return g_current->Read(target, capacity, *read) ? TRUE : FALSE;
}

BOOL WINAPI CloseAny(HANDLE handle)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", CloseHandle);
    if (!IsCurrent(handle)) return real(handle);
    ++g_current->closings;
    return TRUE;
}

}  // namespace

MemoryFile::MemoryFile(std::string content) : bytes(std::move(content))
{
    g_current = this;
}

MemoryFile::~MemoryFile()
{
    g_current = nullptr;
}

bool MemoryFile::Read(void* target, DWORD capacity, DWORD& read)
{
    requestedBytes.push_back(capacity);
    read = 0;
    size_t limit = bytes.size();
    if (errorAt)
    {
        if (position_ >= *errorAt)
        {
            ::SetLastError(error);
            return false;
        }
        limit = std::min(limit, *errorAt);
    }
    const auto end = std::upper_bound(portionEnds.begin(), portionEnds.end(), position_);
    if (end != portionEnds.end()) limit = std::min(limit, *end);
    const size_t count = std::min<size_t>(capacity, limit - position_);
    std::memcpy(target, bytes.data() + position_, count);
    position_ += count;
    read = static_cast<DWORD>(count);
    return true;
}

}  // namespace arvmui_test

ARVMUI_REPLACE_IMPORT(CreateFileW, &arvmui_test::OpenFile)
ARVMUI_REPLACE_IMPORT(ReadFile, &arvmui_test::ReadBytes)
ARVMUI_REPLACE_IMPORT(CloseHandle, &arvmui_test::CloseAny)
