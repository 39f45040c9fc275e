#include "foundation/handles.h"
#include "foundation/text_calls.h"
#include "resources/process_state.h"
#include "resources/resource_path.h"

// Messages in the language of the first locale of the process for which resources exist, instead of
// the language of Windows.

namespace arvmui
{
namespace
{

// The caller's arguments, and the result: characters stored, 0 until a language has the message.
template <typename Char>
struct FormatRequest
{
    ResourcePathFormat<wchar_t> format;
    DWORD flags;
    const void* source;
    DWORD messageId;
    Char* buffer;
    DWORD size;
    va_list* arguments;
    DWORD result = 0;
};

// An attempt may consume arguments before it fails, so each one gets a list of its own. An array of
// arguments is only read, and ignored inserts must not be touched at all.
template <typename Char>
DWORD FormatInLanguage(const FormatRequest<Char>& request, LANGID language) noexcept
{
    constexpr DWORD kWithoutList = FORMAT_MESSAGE_ARGUMENT_ARRAY | FORMAT_MESSAGE_IGNORE_INSERTS;
    if (!request.arguments || (request.flags & kWithoutList))
        return TextCalls<Char>::FormatSystemMessage(request.flags, request.source, request.messageId, language,
            request.buffer, request.size, request.arguments);

    va_list arguments;
    va_copy(arguments, *request.arguments);
    const DWORD length = TextCalls<Char>::FormatSystemMessage(
        request.flags, request.source, request.messageId, language, request.buffer, request.size, &arguments);
    va_end(arguments);
    return length;
}

// Accepts the locale in whose language the message exists. The locale's library is opened only to
// learn that language.
template <typename Char>
DWORD ARVMUI_CALLBACK AcceptMessageLanguage(const wchar_t* locale, void* context)
{
    FormatRequest<Char>& request = *static_cast<FormatRequest<Char>*>(context);
    if (!locale) return 0;
    PathBuffer<wchar_t> path;
    if (!request.format.Format(locale, path)) return 0;
    const UniqueLibrary library(::LoadLibraryExW(path, nullptr, LOAD_LIBRARY_AS_DATAFILE));
    if (!library) return 0;
    const LANGID language = ARVMUI_GetLangID(library.Get());
    if (language == 0) return 0;
    request.result = FormatInLanguage(request, language);
    return request.result != 0;
}

template <typename Char>
DWORD FormatMessageInUILanguage(
    DWORD flags, const void* source, DWORD messageId, Char* buffer, DWORD size, va_list* arguments) noexcept
{
    FormatRequest<Char> request = {{}, flags, source, messageId, buffer, size, arguments};
    if (!request.format.Build(Descriptor().module, nullptr)) return 0;
    if (ARVMUI_EnumLocalesW(nullptr, AcceptMessageLanguage<Char>, &request) != 0) return request.result;
    return FormatInLanguage(request, 0);  // the system's own order of languages
}

}  // namespace
}  // namespace arvmui

DWORD ARVMUI_CALL ARVMUI_FormatMessageW(
    DWORD flags, const void* source, DWORD messageId, DWORD, WCHAR* buffer, DWORD size, va_list* arguments)
{
    return arvmui::FormatMessageInUILanguage(flags, source, messageId, buffer, size, arguments);
}

DWORD ARVMUI_CALL ARVMUI_FormatMessageA(
    DWORD flags, const void* source, DWORD messageId, DWORD, char* buffer, DWORD size, va_list* arguments)
{
    return arvmui::FormatMessageInUILanguage(flags, source, messageId, buffer, size, arguments);
}
