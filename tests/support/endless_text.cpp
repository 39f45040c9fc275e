#include "support/endless_text.h"

#include <algorithm>

namespace arvmui_test
{
namespace
{

constexpr size_t kPieceBytes = size_t{64} << 20;
constexpr size_t kTextBytes = size_t{4} << 30;
constexpr int kAttempts = 8;

void Fill(void* view, bool narrow)
{
    if (narrow)
        std::fill_n(static_cast<char*>(view), kPieceBytes, 'x');
    else
        std::fill_n(static_cast<wchar_t*>(view), kPieceBytes / sizeof(wchar_t), L'x');
}

}  // namespace

EndlessText::EndlessText(bool narrow)
{
    section_ = ::CreateFileMappingW(
        INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, static_cast<DWORD>(kPieceBytes), nullptr);
    if (!section_) return;
    void* const view = ::MapViewOfFile(section_, FILE_MAP_WRITE, 0, 0, 0);
    if (!view) return;
    Fill(view, narrow);
    ::UnmapViewOfFile(view);

    // Free addresses are found by reserving and giving them back; another thread may take one between.
    for (int i = 0; i < kAttempts; ++i)
    {
        void* const free = ::VirtualAlloc(nullptr, kTextBytes, MEM_RESERVE, PAGE_NOACCESS);
        if (!free) return;
        ::VirtualFree(free, 0, MEM_RELEASE);
        if (MapAt(static_cast<BYTE*>(free))) return;
    }
}

EndlessText::~EndlessText()
{
    for (void* const view : views_) ::UnmapViewOfFile(view);
    if (section_) ::CloseHandle(section_);
}

bool EndlessText::MapAt(BYTE* base)
{
    for (size_t offset = 0; offset < kTextBytes; offset += kPieceBytes)
    {
        void* const view = ::MapViewOfFileEx(section_, FILE_MAP_READ, 0, 0, 0, base + offset);
        if (!view)
        {
            for (void* const mapped : views_) ::UnmapViewOfFile(mapped);
            views_.clear();
            return false;
        }
        views_.push_back(view);
    }
    return true;
}

}  // namespace arvmui_test
