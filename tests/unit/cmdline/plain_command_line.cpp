#include "plain_command_line.h"

#include <optional>

namespace arvmui_test
{
namespace
{

constexpr size_t kMaxTokenChars = 511;
constexpr size_t kMaxValueChars = 255;
const std::wstring kOption = L"/uilocale:";

struct Token
{
    std::wstring text;
    size_t end = 0;  // in the line, behind the token
};

bool IsBlank(wchar_t character)
{
    return std::wstring(L" \t\n\v\f\r").find(character) != std::wstring::npos;
}

size_t SkipBlanks(const std::wstring& line, size_t from)
{
    while (from < line.size() && IsBlank(line[from])) ++from;
    return from;
}

// None at the end of the line, for an empty pair of quotes and where the closing quote is missing.
std::optional<Token> NextToken(const std::wstring& line, size_t from)
{
    Token token;
    size_t i = SkipBlanks(line, from);
    if (i < line.size() && line[i] == L'"')
    {
        for (++i;; ++i)
        {
            if (i >= line.size()) return std::nullopt;
            const bool isQuote = line[i] == L'"';
            if (isQuote && (i + 1 == line.size() || line[i + 1] != L'"')) break;
            if (isQuote) ++i;
            token.text += line[i];
        }
        token.end = i + 1;
    }
    else
    {
        while (i < line.size() && !IsBlank(line[i])) token.text += line[i++];
        token.end = i;
    }
    if (token.text.empty()) return std::nullopt;
    token.text = token.text.substr(0, kMaxTokenChars);
    return token;
}

bool IsOption(const std::wstring& text)
{
    constexpr LCID kEnglish = 0x0409;
    const int length = static_cast<int>(kOption.size());
    return text.size() >= kOption.size()
           && ::CompareStringW(
                  kEnglish, NORM_IGNORECASE | SORT_STRINGSORT, text.c_str(), length, kOption.c_str(), length)
                  == CSTR_EQUAL;
}

}  // namespace

PlainLine ParsePlainly(const std::wstring& line)
{
    PlainLine result{line, L""};
    size_t cursor = 0;
    while (const std::optional<Token> token = NextToken(result.line, cursor))
    {
        if (token->text[0] != L'/' || !IsOption(token->text))
        {
            cursor = token->end;
            continue;
        }
        if (result.value.empty()) result.value = token->text.substr(kOption.size(), kMaxValueChars);
        const size_t end = cursor == 0 ? SkipBlanks(result.line, token->end) : token->end;
        result.line.erase(cursor, end - cursor);
    }
    return result;
}

std::vector<std::wstring> WithoutLocaleArguments(const std::vector<std::wstring>& arguments)
{
    std::vector<std::wstring> kept;
    for (const std::wstring& argument : arguments)
    {
        const bool isQuoted = !argument.empty() && argument[0] == L'"' && IsOption(argument.substr(1));
        if (!isQuoted && !IsOption(argument)) kept.push_back(argument);
    }
    return kept;
}

}  // namespace arvmui_test
