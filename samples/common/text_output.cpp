#include "text_output.h"

#include <windows.h>

#include <string>

namespace
{

// The results of writing are ignored: where output fails there is nowhere to say so.
void WriteText(DWORD stream, std::wstring_view text)
{
    const HANDLE output = ::GetStdHandle(stream);
    const int length = static_cast<int>(text.size());
    DWORD mode = 0;
    DWORD written = 0;
    if (::GetConsoleMode(output, &mode))
    {
        ::WriteConsoleW(output, text.data(), static_cast<DWORD>(length), &written, nullptr);
        return;
    }
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    ::WriteFile(output, bytes.data(), static_cast<DWORD>(size), &written, nullptr);
}

void WriteLine(DWORD stream, std::wstring_view line)
{
    std::wstring text(line);
    text += L"\r\n";
    WriteText(stream, text);
}

}  // namespace

void PrintLine(std::wstring_view line)
{
    WriteLine(STD_OUTPUT_HANDLE, line);
}

void PrintErrorLine(std::wstring_view line)
{
    WriteLine(STD_ERROR_HANDLE, line);
}
