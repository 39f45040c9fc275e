#include "foundation/code_page.h"

namespace arvmui
{
namespace
{

// Where the ANSI code page is UTF-8 the system refuses the flag, which changes nothing there.
int ToWide(const char* text, int length, wchar_t* wide, int capacity) noexcept
{
    const int count = ::MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, text, length, wide, capacity);
    if (count != 0 || ::GetLastError() != ERROR_INVALID_FLAGS) return count;
    return ::MultiByteToWideChar(CP_ACP, 0, text, length, wide, capacity);
}

}  // namespace

wchar_t* DupWideFromAnsi(const char* text, int length) noexcept
{
    if (IsIntegerIdentifier(text)) return reinterpret_cast<wchar_t*>(reinterpret_cast<ULONG_PTR>(text));

    const int size = ToWide(text, length, nullptr, 0);
    HeapBlock<wchar_t> copy;
    if (size <= 0 || !copy.Resize(static_cast<size_t>(size))) return nullptr;
    if (ToWide(text, length, copy.Get(), size) != size) return nullptr;
    return copy.Release();
}

char* DupAnsiFromWide(const wchar_t* text, int length) noexcept
{
    if (IsIntegerIdentifier(text)) return reinterpret_cast<char*>(reinterpret_cast<ULONG_PTR>(text));

    const int size = ::WideCharToMultiByte(CP_ACP, 0, text, length, nullptr, 0, nullptr, nullptr);
    HeapBlock<char> copy;
    if (size <= 0 || !copy.Resize(static_cast<size_t>(size))) return nullptr;
    if (::WideCharToMultiByte(CP_ACP, 0, text, length, copy.Get(), size, nullptr, nullptr) != size) return nullptr;
    return copy.Release();
}

}  // namespace arvmui
