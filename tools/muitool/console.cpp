#include "console.h"

#include "text_conversion.h"

#include <windows.h>

#include <string>

namespace
{

std::string WithWindowsLineEnds(std::string_view text)
{
    std::string result;
    result.reserve(text.size() + 16);
    for (const char character : text)
    {
        if (character == '\n') result += '\r';
        result += character;
    }
    return result;
}

// The results of writing are ignored: where output fails there is nowhere to say so.
void Write(DWORD stream, std::string_view text)
{
    const HANDLE output = ::GetStdHandle(stream);
    const std::string bytes = WithWindowsLineEnds(text);
    DWORD mode = 0;
    DWORD written = 0;
    if (::GetConsoleMode(output, &mode))
    {
        const std::wstring wide = Wide(bytes);
        ::WriteConsoleW(output, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
        return;
    }
    ::WriteFile(output, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace

void Print(std::string_view text)
{
    Write(STD_OUTPUT_HANDLE, text);
}

void PrintLine(std::string_view line)
{
    Print(std::string(line) + '\n');
}

void PrintError(std::string_view line)
{
    Write(STD_ERROR_HANDLE, std::string(line) + '\n');
}
