// The system and runtime calls of both text widths under one name, so that an algorithm which is
// the same for W and A is written once as a template over the character type.
#pragma once

#include "arvmui.h"
#include "foundation/text.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>

// The wide or the narrow form of one literal.
#define ARVMUI_TEXT(Char, literal) (::arvmui::TextCalls<Char>::Choose(literal, L##literal))

namespace arvmui
{

template <typename Char>
struct TextCalls;

template <>
struct TextCalls<wchar_t>
{
    using FindData = WIN32_FIND_DATAW;

    static constexpr const wchar_t* Choose(const char*, const wchar_t* wide) noexcept { return wide; }
    static size_t Length(const wchar_t* text) noexcept { return WideLength(text); }
    static size_t LengthN(const wchar_t* text, size_t limit) noexcept { return ::wcsnlen(text, limit); }
    static unsigned long ToNumber(const wchar_t* text) noexcept { return std::wcstoul(text, nullptr, 0); }

    // Printf-style; "%s" takes text of the buffer's own width. `count` bounds the characters
    // written; -1 when the text does not fit, which is then cut and terminated.
    static int FormatV(wchar_t* buffer, size_t size, size_t count, const wchar_t* format, va_list arguments) noexcept
    {
        return ::_vsnwprintf_s(buffer, size, count, format, arguments);
    }

    static const wchar_t* FindFirst(const wchar_t* text, char character) noexcept
    {
        return std::wcschr(text, static_cast<wchar_t>(character));
    }
    static const wchar_t* FindLast(const wchar_t* text, char character) noexcept
    {
        return std::wcsrchr(text, static_cast<wchar_t>(character));
    }
    // Whether ASCII white space occurs in the text.
    static bool HoldsSpace(const wchar_t* text) noexcept
    {
        for (; *text; ++text)
            if (IsAsciiSpace(*text)) return true;
        return false;
    }

    static DWORD ModuleFileName(HMODULE module, wchar_t* buffer, DWORD capacity) noexcept
    {
        return ::GetModuleFileNameW(module, buffer, capacity);
    }
    static DWORD FileAttributes(const wchar_t* path) noexcept { return ::GetFileAttributesW(path); }
    static HANDLE FindFirstEntry(const wchar_t* pattern, FindData* data) noexcept
    {
        return ::FindFirstFileW(pattern, data);
    }
    static BOOL FindNextEntry(HANDLE find, FindData* data) noexcept { return ::FindNextFileW(find, data); }
    static int LoadText(HMODULE module, UINT id, wchar_t* buffer, int capacity) noexcept
    {
        return ::LoadStringW(module, id, buffer, capacity);
    }
    static DWORD FormatSystemMessage(DWORD flags, const void* source, DWORD messageId, DWORD languageId,
        wchar_t* buffer, DWORD size, va_list* arguments) noexcept
    {
        return ::FormatMessageW(flags, source, messageId, languageId, buffer, size, arguments);
    }
    static void Debug(const wchar_t* line) noexcept { ::OutputDebugStringW(line); }
    static DWORD EnumLocales(const wchar_t* locales, ARVMUI_LocaleCallbackW callback, void* context) noexcept
    {
        return ARVMUI_EnumLocalesW(locales, callback, context);
    }
    static DWORD GetLocale(HMODULE library, wchar_t* buffer, DWORD capacity) noexcept
    {
        return ARVMUI_GetLocaleW(library, buffer, capacity);
    }
};

template <>
struct TextCalls<char>
{
    using FindData = WIN32_FIND_DATAA;

    static constexpr const char* Choose(const char* narrow, const wchar_t*) noexcept { return narrow; }
    static size_t Length(const char* text) noexcept { return NarrowLength(text); }
    static size_t LengthN(const char* text, size_t limit) noexcept { return ::strnlen(text, limit); }
    static unsigned long ToNumber(const char* text) noexcept { return std::strtoul(text, nullptr, 0); }

    static int FormatV(char* buffer, size_t size, size_t count, const char* format, va_list arguments) noexcept
    {
        return ::_vsnprintf_s(buffer, size, count, format, arguments);
    }

    // Character by character: the second byte of a double-byte character may look like any letter.
    static const char* FindFirst(const char* text, char character) noexcept
    {
        return FindMbcsChar(text, static_cast<unsigned char>(character));
    }
    static const char* FindLast(const char* text, char character) noexcept
    {
        return FindLastMbcsChar(text, static_cast<unsigned char>(character));
    }
    static bool HoldsSpace(const char* text) noexcept
    {
        while (*text)
        {
            if (IsAsciiSpace(static_cast<unsigned char>(*text))) return true;
            text = ::CharNextExA(CP_ACP, text, 0);
        }
        return false;
    }

    static DWORD ModuleFileName(HMODULE module, char* buffer, DWORD capacity) noexcept
    {
        return ::GetModuleFileNameA(module, buffer, capacity);
    }
    static DWORD FileAttributes(const char* path) noexcept { return ::GetFileAttributesA(path); }
    static HANDLE FindFirstEntry(const char* pattern, FindData* data) noexcept
    {
        return ::FindFirstFileA(pattern, data);
    }
    static BOOL FindNextEntry(HANDLE find, FindData* data) noexcept { return ::FindNextFileA(find, data); }
    static int LoadText(HMODULE module, UINT id, char* buffer, int capacity) noexcept
    {
        return ::LoadStringA(module, id, buffer, capacity);
    }
    static DWORD FormatSystemMessage(DWORD flags, const void* source, DWORD messageId, DWORD languageId, char* buffer,
        DWORD size, va_list* arguments) noexcept
    {
        return ::FormatMessageA(flags, source, messageId, languageId, buffer, size, arguments);
    }
    static void Debug(const char* line) noexcept { ::OutputDebugStringA(line); }
    static DWORD EnumLocales(const char* locales, ARVMUI_LocaleCallbackA callback, void* context) noexcept
    {
        return ARVMUI_EnumLocalesA(locales, callback, context);
    }
    static DWORD GetLocale(HMODULE library, char* buffer, DWORD capacity) noexcept
    {
        return ARVMUI_GetLocaleA(library, buffer, capacity);
    }
};

// Formats into a fixed buffer of `size` elements; -1 when the text does not fit, which is then cut
// at size - 1 and terminated. The format is always one of the library's own.
template <typename Char>
int FormatFixed(Char* buffer, size_t size, const Char* format, ...) noexcept
{
    va_list arguments;
    va_start(arguments, format);
    const int length = TextCalls<Char>::FormatV(buffer, size, _TRUNCATE, format, arguments);
    va_end(arguments);
    return length;
}

// Copies text, cut at capacity - 1 characters, and terminates it; the length copied. The capacity
// is at least 1.
template <typename Char>
size_t CopyCut(Char* destination, size_t capacity, const Char* text) noexcept
{
    const size_t length = TextCalls<Char>::LengthN(text, capacity - 1);
    std::memcpy(destination, text, length * sizeof(Char));
    destination[length] = Char{};
    return length;
}

}  // namespace arvmui
