#include "pseudo_text.h"

#include "placeholders.h"

#include <algorithm>

namespace
{

constexpr std::wstring_view kPlain = L"AaCcEeIiNnOoSsUuYyZz";
constexpr std::wstring_view kAccented = L"\u00C5\u00E5\u00C7\u00E7\u00C9\u00E9\u00CE\u00EE\u00D1\u00F1\u00D8\u00F8"
                                        L"\u0160\u0161\u00DB\u00FB\u00DD\u00FD\u017D\u017E";
constexpr wchar_t kFiller = L'~';

wchar_t Accent(wchar_t character)
{
    const std::size_t at = kPlain.find(character);
    return at == std::wstring_view::npos ? character : kAccented[at];
}

// Length of what has to stay as it is at the beginning of the text; 0 for a character of its own.
std::size_t FixedLength(std::wstring_view text)
{
    if (text.front() == L'&') return std::min<std::size_t>(2, text.size());
    return text.front() == L'%' ? PlaceholderLength(text) : 0;
}

std::wstring Accented(std::wstring_view text)
{
    std::wstring result;
    while (!text.empty())
    {
        const std::size_t fixed = FixedLength(text);
        if (fixed == 0)
            result += Accent(text.front());
        else
            result += text.substr(0, fixed);
        text.remove_prefix(std::max<std::size_t>(fixed, 1));
    }
    return result;
}

}  // namespace

std::wstring PseudoTranslate(std::wstring_view text, std::size_t room)
{
    if (text.empty()) return {};
    const std::wstring accented = Accented(text);
    constexpr std::size_t kBrackets = 2;
    const std::size_t wanted = accented.size() / 3 + 1;
    const std::size_t spare = room == 0 ? wanted + kBrackets : room - std::min(room, accented.size());
    if (spare < kBrackets) return accented;
    return L'[' + accented + std::wstring(std::min(wanted, spare - kBrackets), kFiller) + L']';
}
