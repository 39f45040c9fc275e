#include "text_conversion.h"

#include <windows.h>

std::wstring Wide(std::string_view utf8)
{
    const int size = static_cast<int>(utf8.size());
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), length);
    return wide;
}

std::string Utf8(std::wstring_view wide)
{
    const int length = static_cast<int>(wide.size());
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(), size, nullptr, nullptr);
    return utf8;
}

bool IsSameName(std::wstring_view left, std::wstring_view right)
{
    return ::CompareStringOrdinal(
               left.data(), static_cast<int>(left.size()), right.data(), static_cast<int>(right.size()), TRUE)
           == CSTR_EQUAL;
}

bool StartsWithName(std::wstring_view text, std::wstring_view start)
{
    return IsSameName(text.substr(0, start.size()), start);
}

bool EndsWithName(std::wstring_view text, std::wstring_view end)
{
    return text.size() >= end.size() && IsSameName(text.substr(text.size() - end.size()), end);
}
