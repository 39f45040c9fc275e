// A file that exists in memory only, for this program: opening its name gives its bytes, in portions
// and with a read error where a test wants them. All other files are the system's.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace arvmui_test
{

class MemoryFile
{
public:
    static constexpr const wchar_t* kName = L"file in memory";
    static constexpr const char* kNarrowName = "file in memory";

    struct OpenArguments
    {
        DWORD access, share, disposition, attributes;
        bool hasSecurity, hasTemplate;
    };

    // One at a time.
    explicit MemoryFile(std::string content);
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string bytes;
    // Places at which a read ends early, ascending.
    std::vector<size_t> portionEnds;
    // No byte from here on can be read; every attempt fails with this error.
    std::optional<size_t> errorAt;
    DWORD error = ERROR_CRC;

    // What was done with it.
    std::vector<OpenArguments> openings;
    std::vector<DWORD> requestedBytes;
    int closings = 0;

    void Rewind() { position_ = 0; }
    bool Read(void* target, DWORD capacity, DWORD& read);

private:
    size_t position_ = 0;
};

}  // namespace arvmui_test
