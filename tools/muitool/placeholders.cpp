#include "placeholders.h"

#include <algorithm>

namespace
{

// No blank: a percent sign before a word is one ("100 % der Texte").
constexpr std::wstring_view kFlagsAndSizes = L"0123456789+-#.*hlLqjztIw";
constexpr std::wstring_view kConversions = L"diouxXeEfFgGaAcCsSpn";
constexpr std::wstring_view kDigits = L"0123456789";

bool Holds(std::wstring_view set, wchar_t character)
{
    return set.find(character) != std::wstring_view::npos;
}

// Length of the printf placeholder that begins with the '%' at `at`; 0 when there is none.
std::size_t PrintfLength(std::wstring_view text, std::size_t at)
{
    std::size_t end = at + 1;
    while (end < text.size() && Holds(kFlagsAndSizes, text[end])) ++end;
    return end < text.size() && Holds(kConversions, text[end]) ? end + 1 - at : 0;
}

// The same for a numbered insert, with its format if it has one.
std::size_t InsertLength(std::wstring_view text, std::size_t at)
{
    std::size_t end = at + 1;
    while (end < text.size() && end < at + 3 && Holds(kDigits, text[end])) ++end;
    if (end == at + 1 || text[at + 1] == L'0') return 0;
    if (end < text.size() && text[end] == L'!')
    {
        const std::size_t close = text.find(L'!', end + 1);
        if (close != std::wstring_view::npos) end = close + 1;
    }
    return end - at;
}

// Every placeholder for which `length` gives a length; "%%" is stepped over.
template <typename Length>
std::vector<std::wstring> Find(std::wstring_view text, Length length)
{
    std::vector<std::wstring> found;
    for (std::size_t at = text.find(L'%'); at < text.size(); at = text.find(L'%', at))
    {
        const std::size_t count = length(text, at);
        if (count != 0) found.emplace_back(text.substr(at, count));
        const bool isEscape = count == 0 && at + 1 < text.size() && text[at + 1] == L'%';
        at += isEscape ? 2 : std::max<std::size_t>(count, 1);
    }
    return found;
}

}  // namespace

std::vector<std::wstring> PrintfPlaceholders(std::wstring_view text)
{
    return Find(text, PrintfLength);
}

std::vector<std::wstring> InsertPlaceholders(std::wstring_view text)
{
    std::vector<std::wstring> found = Find(text, InsertLength);
    std::sort(found.begin(), found.end());
    return found;
}

std::size_t PlaceholderLength(std::wstring_view text)
{
    if (text.size() > 1 && text[1] == L'%')
    {
        // An escaped placeholder belongs to a later pass and has to survive whole.
        const std::size_t escaped = PrintfLength(text, 1);
        return escaped != 0 ? escaped + 1 : 2;
    }
    return std::max(PrintfLength(text, 0), InsertLength(text, 0));
}

std::wstring TextForSecondPass(std::wstring_view text)
{
    std::wstring result;
    for (std::size_t at = 0; at < text.size();)
    {
        if (text[at] != L'%')
        {
            result += text[at++];
            continue;
        }
        const std::size_t count = PrintfLength(text, at);
        if (count == 0)
        {
            result += L'%';
            at += at + 1 < text.size() && text[at + 1] == L'%' ? 2 : 1;
        }
        else
            at += count;
    }
    return result;
}
