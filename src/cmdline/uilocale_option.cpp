#include "cmdline/file_hints.h"
#include "cmdline/tokens.h"
#include "foundation/code_page.h"
#include "foundation/text_calls.h"
#include "resources/process_state.h"

// The option "/uilocale:": taking it off command lines and argument vectors, and writing it for a
// child process. Files on a command line are looked at on the way.

namespace arvmui
{
namespace
{

constexpr size_t kLocaleOptionChars = 10;  // "/uilocale:"
constexpr size_t kQuoteChars = 2;          // around an option that holds blanks

template <typename Char>
bool StartsAsLocaleOption(const Char* text) noexcept
{
    return HasPrefixNoCase(text, ARVMUI_TEXT(Char, "/uilocale:"), kLocaleOptionChars);
}

// The first value becomes the list of the process; later ones are dropped.
void KeepFirstValue(const wchar_t* value) noexcept
{
    LibraryDescriptor& descriptor = Descriptor();
    if (*GetLocaleHint(descriptor, HINT_COMMAND_LINE) == L'\0') SetLocaleHint(descriptor, HINT_COMMAND_LINE, value);
}

void RemoveLocaleOptions(wchar_t* line) noexcept
{
    const LastErrorKeeper keep;  // an argument that names no file is no error
    wchar_t token[kTokenChars];
    for (wchar_t* cursor = line;;)
    {
        const wchar_t* next = nullptr;
        if (NextCommandLineToken(cursor, token, kTokenChars, &next) == 0) return;
        if (token[0] != L'/' || !StartsAsLocaleOption<wchar_t>(token))
        {
            if (token[0] != L'/' && IsDataFile(token)) RecordFileHints(token);
            cursor += next - cursor;
            continue;
        }

        KeepFirstValue(token + kLocaleOptionChars);
        if (cursor == line) next = SkipSpace(next);  // nothing stands before the blanks that follow
        // The cursor stands behind the previous token, so the blanks before the option go with it.
        std::wmemmove(cursor, next, WideLength(next) + 1);
    }
}

template <typename Char>
BOOL RemoveLocaleArguments(int* argc, Char** argv) noexcept
{
    BOOL removed = FALSE;
    for (int i = 0; i < *argc && argv[i];)
    {
        // A value with blanks is quoted as a whole, the quote before the slash.
        const Char* const option = argv[i][0] == Char{'"'} ? argv[i] + 1 : argv[i];
        if (!StartsAsLocaleOption(option))
        {
            ++i;
            continue;
        }
        for (int j = i; j < *argc; ++j) argv[j] = argv[j + 1];  // with the terminating null
        --*argc;
        removed = TRUE;
    }
    return removed;
}

template <typename Char>
int WriteLocaleOption(Char* buffer, DWORD size) noexcept
{
    if (!buffer || size == 0) return 0;
    Char locale[ARVMUI_TAG_CHARS];
    const size_t length = TextCalls<Char>::GetLocale(nullptr, locale, ARVMUI_TAG_CHARS);
    locale[ARVMUI_TAG_CHARS - 1] = Char{};
    if (length == 0 || kLocaleOptionChars + length + kQuoteChars >= size)
    {
        buffer[0] = Char{};
        return 0;
    }
    const Char* const format =
        TextCalls<Char>::HoldsSpace(locale) ? ARVMUI_TEXT(Char, "\"%s%s\"") : ARVMUI_TEXT(Char, "%s%s");
    return FormatFixed<Char>(buffer, size, format, ARVMUI_TEXT(Char, "/uilocale:"), static_cast<const Char*>(locale));
}

}  // namespace
}  // namespace arvmui

BOOL ARVMUI_CALL ARVMUI_ParseCommandLineW(WCHAR* commandLine)
{
    if (!arvmui::IsIntegerIdentifier(commandLine)) arvmui::RemoveLocaleOptions(commandLine);
    return TRUE;
}

BOOL ARVMUI_CALL ARVMUI_ParseCommandLineA(char* commandLine)
{
    if (arvmui::IsIntegerIdentifier(commandLine)) return TRUE;
    const arvmui::HeapBlock<wchar_t> wide(arvmui::DupWideFromAnsi(commandLine, -1));
    if (!wide) return FALSE;
    const BOOL result = ARVMUI_ParseCommandLineW(wide.Get());

    // Measured first, as a failed conversion leaves half of its text behind; so the line stays whole.
    const int room = static_cast<int>(arvmui::NarrowLength(commandLine)) + 1;
    const int bytes = ::WideCharToMultiByte(CP_ACP, 0, wide.Get(), -1, nullptr, 0, nullptr, nullptr);
    if (bytes > 0 && bytes <= room)
        ::WideCharToMultiByte(CP_ACP, 0, wide.Get(), -1, commandLine, room, nullptr, nullptr);
    return result;
}

BOOL ARVMUI_CALL ARVMUI_ParseArgvW(int* argc, WCHAR** argv)
{
    return argc && argv && arvmui::RemoveLocaleArguments(argc, argv);
}

BOOL ARVMUI_CALL ARVMUI_ParseArgvA(int* argc, char** argv)
{
    return argc && argv && arvmui::RemoveLocaleArguments(argc, argv);
}

WCHAR* ARVMUI_CALL ARVMUI_GetCommandLineW(void)
{
    WCHAR* const line = ::GetCommandLineW();
    ARVMUI_ParseCommandLineW(line);
    return line;
}

char* ARVMUI_CALL ARVMUI_GetCommandLineA(void)
{
    char* const line = ::GetCommandLineA();
    ARVMUI_ParseCommandLineA(line);
    return line;
}

int ARVMUI_CALL ARVMUI_GetCommandLineOptionW(WCHAR* buffer, DWORD size)
{
    return arvmui::WriteLocaleOption(buffer, size);
}

int ARVMUI_CALL ARVMUI_GetCommandLineOptionA(char* buffer, DWORD size)
{
    return arvmui::WriteLocaleOption(buffer, size);
}
