#include "tool_error.h"

#include "text_conversion.h"

std::string SystemErrorText(DWORD code)
{
    wchar_t text[512] = L"";
    const DWORD length = ::FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text, ARRAYSIZE(text), nullptr);
    std::wstring_view message(text, length);
    while (!message.empty() && (message.back() == L'\n' || message.back() == L'\r' || message.back() == L' '))
        message.remove_suffix(1);
    const std::string number = "error " + std::to_string(code);
    return message.empty() ? number : Utf8(message) + " (" + number + ")";
}
