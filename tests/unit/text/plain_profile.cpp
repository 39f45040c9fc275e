#include "plain_profile.h"

#include "plain_decoder.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <type_traits>

namespace arvmui_test
{
namespace
{

constexpr size_t kMaxTokenChars = 270;

enum class Token
{
    kNone,
    kEnd,
    kNewLine,
    kEquals,
    kSection,
    kKey,
    kValue
};

bool IsSpace(std::uint32_t character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

template <typename Char>
void CutTrailingSpace(std::basic_string<Char>& text)
{
    while (!text.empty() && IsSpace(static_cast<std::make_unsigned_t<Char>>(text.back()))) text.pop_back();
}

// Both up to their first NUL.
bool SameNoCase(const std::wstring& a, const std::wstring& b)
{
    return ::CompareStringW(0x0409, NORM_IGNORECASE | SORT_STRINGSORT, a.c_str(), -1, b.c_str(), -1) == CSTR_EQUAL;
}

bool StartsNoCase(const std::wstring& text, const std::wstring& prefix)
{
    return text.size() >= prefix.size() && SameNoCase(text.substr(0, prefix.size()), prefix);
}

class Tokens
{
public:
    explicit Tokens(std::string_view file) : decoder_(file), next_(decoder_.Next(codePage)) {}

    UINT codePage = CP_ACP;
    std::wstring text;

    Token Next()
    {
        text.clear();
        last_ = Read();
        if (text.size() > kMaxTokenChars) text.resize(kMaxTokenChars);
        return last_;
    }

private:
    bool AtEnd() const { return next_ == PlainDecoder::kEnd; }
    bool AtLineEnd() const { return AtEnd() || next_ == '\n'; }
    void Skip() { next_ = decoder_.Next(codePage); }
    void Take()
    {
        text.push_back(static_cast<wchar_t>(next_));
        Skip();
    }

    Token Read()
    {
        while (!AtLineEnd() && IsSpace(next_)) Skip();
        if (last_ == Token::kEquals) return ReadValue();
        if (AtEnd()) return Token::kEnd;
        switch (next_)
        {
            case ';':
                while (!AtLineEnd()) Skip();
                if (AtEnd()) return Token::kEnd;
                Skip();
                return Token::kNewLine;
            case '\n': Skip(); return Token::kNewLine;
            case '=': Skip(); return Token::kEquals;
            case '[':
                Skip();
                while (!AtLineEnd() && next_ != ']') Take();
                if (next_ == ']') Skip();
                return Token::kSection;
            default:
                Take();
                while (!AtLineEnd() && next_ != '=') Take();
                CutTrailingSpace(text);
                return Token::kKey;
        }
    }

    Token ReadValue()
    {
        if (next_ != '\'' && next_ != '"')
        {
            while (!AtLineEnd()) Take();
            CutTrailingSpace(text);
            return Token::kValue;
        }
        const std::uint32_t quote = next_;
        Skip();
        while (!AtLineEnd())
        {
            if (next_ == quote)
            {
                Skip();
                if (next_ != quote) break;
            }
            Take();
        }
        return Token::kValue;
    }

    PlainDecoder decoder_;
    std::uint32_t next_;
    Token last_ = Token::kNone;
};

// An argument in the widths of the two forms.
bool Widen(UINT, const std::wstring& argument, std::wstring& wide)
{
    wide = argument;
    return true;
}

bool Widen(UINT codePage, const std::string& argument, std::wstring& wide)
{
    const DWORD flags = codePage == CP_UTF8 ? 0 : MB_PRECOMPOSED;
    std::vector<wchar_t> units(argument.size() * 4 + 4);
    const int capacity = static_cast<int>(units.size());
    int count = ::MultiByteToWideChar(codePage, flags, argument.c_str(), -1, units.data(), capacity);
    if (count == 0 && ::GetLastError() == ERROR_INVALID_FLAGS)
    {
        count = ::MultiByteToWideChar(codePage, 0, argument.c_str(), -1, units.data(), capacity);
    }
    wide.assign(units.data(), count == 0 ? 0 : static_cast<size_t>(count) - 1);
    if (wide.size() > kMaxTokenChars) wide.resize(kMaxTokenChars);
    return count != 0;
}

template <typename Char>
std::basic_string<Char> Narrow(UINT codePage, const std::wstring& text)
{
    if constexpr (std::is_same_v<Char, wchar_t>)
    {
        return text;
    }
    else
    {
        std::string narrow(text.size() * 8 + 8, '\0');
        const int count = ::WideCharToMultiByte(codePage, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
            static_cast<int>(narrow.size()), nullptr, nullptr);
        narrow.resize(static_cast<size_t>(count));
        return narrow;
    }
}

// Whole characters of the default that fit; W characters are units.
std::wstring FittingDefault(UINT, const std::wstring& text, size_t capacity)
{
    return text.substr(0, capacity);
}

std::string FittingDefault(UINT codePage, const std::string& text, size_t capacity)
{
    PlainDecoder decoder(text);
    size_t kept = 0;
    while (decoder.Next(codePage) != PlainDecoder::kEnd && decoder.Position() <= capacity) kept = decoder.Position();
    return text.substr(0, kept);
}

template <typename Char>
class Scan
{
public:
    Scan(std::string_view file, const ProfileQuery<Char>& query) : query_(query), tokens_(file) {}

    ProfileAnswer<Char> Run()
    {
        if (ConvertArguments()) ScanTokens();

        const bool listsSections = !query_.section && !query_.anySection;
        const bool stands = (listsSections && reachedEnd_) || (!query_.key && sectionFound_) || keyFound_;
        if (!stands)
        {
            output_.clear();
            if (!listsSections && query_.key) output_ = DefaultText();
        }
        ProfileAnswer<Char> answer;
        answer.result = static_cast<DWORD>(output_.size());
        // No caller is told of more characters than its buffer has, not even in a buffer for one.
        if (overflow_) answer.result = keyFound_ ? query_.size - 1 : std::max<DWORD>(query_.size, 2) - 2;
        answer.buffer.assign(output_.begin(), output_.end());
        answer.buffer.resize(query_.size);
        return answer;
    }

    std::basic_string<Char> DefaultText() const
    {
        if (!query_.defaultValue) return {};
        std::basic_string<Char> text = *query_.defaultValue;
        CutTrailingSpace(text);
        return FittingDefault(tokens_.codePage, text, query_.size - 1);
    }

private:
    bool ConvertArguments()
    {
        if (query_.section && !sectionFound_ && !Widen(tokens_.codePage, *query_.section, section_)) return false;
        return !query_.key || Widen(tokens_.codePage, *query_.key, key_);
    }

    void ScanTokens()
    {
        Token token = tokens_.Next();
        for (;;)
        {
            switch (token)
            {
                case Token::kEnd: reachedEnd_ = true; return;
                case Token::kNewLine: token = tokens_.Next(); break;
                case Token::kSection:
                    if (!TakeSection(token)) return;
                    break;
                case Token::kKey:
                    if (!TakeKey(token)) return;
                    break;
                default:
                    if (!Recover(token)) return;
                    break;
            }
        }
    }

    // Each of these leaves in `token` the one to go on with, or returns false when the scan ends.

    bool TakeSection(Token& token)
    {
        if (sectionFound_) return false;
        if (!query_.section && !query_.anySection)
        {
            if (!Append(tokens_.text)) return false;
        }
        else if (!query_.anySection && SameNoCase(tokens_.text, section_))
        {
            sectionFound_ = true;
        }
        inEncoding_ = SameNoCase(tokens_.text, L"Encoding");
        token = tokens_.Next();
        return token == Token::kNewLine || Recover(token);
    }

    bool TakeKey(Token& token)
    {
        if (query_.key && (sectionFound_ || query_.anySection) && SameNoCase(tokens_.text, key_)) keyFound_ = true;
        if (!query_.key && sectionFound_ && !Append(tokens_.text)) return false;
        const bool isEncoding = inEncoding_ && SameNoCase(tokens_.text, L"InputEncoding");

        token = tokens_.Next();
        if (token != Token::kEquals)
        {
            if (keyFound_)
            {
                keyFound_ = false;
                return false;
            }
            return Recover(token);
        }
        tokens_.Next();
        if (keyFound_)
        {
            StoreValue(tokens_.text);
            return false;
        }
        if (isEncoding)
        {
            tokens_.codePage = CodePageOfEncoding(tokens_.text);
            if (!ConvertArguments()) return false;
        }
        token = tokens_.Next();
        return token == Token::kNewLine || Recover(token);
    }

    bool Recover(Token& token)
    {
        if (budget_ == 0) return false;
        --budget_;
        while (token != Token::kNewLine && token != Token::kEnd) token = tokens_.Next();
        if (token == Token::kNewLine) token = tokens_.Next();
        return true;
    }

    bool Append(const std::wstring& name)
    {
        const size_t measured = Narrow<Char>(tokens_.codePage, name).size();
        if (output_.size() + measured + 2 > query_.size)
        {
            overflow_ = true;
            return false;
        }
        output_ += Narrow<Char>(tokens_.codePage, name + L'\0');
        return true;
    }

    void StoreValue(const std::wstring& value)
    {
        output_ = Narrow<Char>(tokens_.codePage, value);
        if (output_.size() + 1 <= query_.size) return;
        overflow_ = true;
        output_.resize(std::is_same_v<Char, wchar_t> ? query_.size - 1 : 0);
    }

    const ProfileQuery<Char>& query_;
    Tokens tokens_;
    std::wstring section_;
    std::wstring key_;
    std::basic_string<Char> output_;
    bool sectionFound_ = false;
    bool keyFound_ = false;
    bool overflow_ = false;
    bool reachedEnd_ = false;
    bool inEncoding_ = false;
    int budget_ = 2;
};

template <typename Char>
ProfileAnswer<Char> Answer(std::optional<std::string_view> file, const ProfileQuery<Char>& query)
{
    if (file) return Scan<Char>(*file, query).Run();

    ProfileAnswer<Char> answer;
    if (query.key && (query.section || query.anySection))
    {
        const std::basic_string<Char> text = Scan<Char>({}, query).DefaultText();
        answer.buffer.assign(text.begin(), text.end());
    }
    answer.result = static_cast<DWORD>(answer.buffer.size());
    answer.buffer.resize(query.size);
    return answer;
}

}  // namespace

ProfileAnswer<wchar_t> AnswerPlainly(std::optional<std::string_view> file, const ProfileQuery<wchar_t>& query)
{
    return Answer(file, query);
}

ProfileAnswer<char> AnswerPlainly(std::optional<std::string_view> file, const ProfileQuery<char>& query)
{
    return Answer(file, query);
}

UINT CodePageOfEncoding(const std::wstring& name)
{
    struct Row
    {
        const wchar_t* name;
        UINT codePage;
    };
    static constexpr Row kRows[] = {
        {L"EUC-JP", 51932},
        {L"ISO8859_1", 0},
        {L"SJIS", 932},
        {L"UTF8", 65001},
        {L"GB18030", 54936},
        {L"GBK", 936},
        {L"ISO-8859-1", 28591},
        {L"Shift_JIS", 932},
        {L"US-ASCII", 0},
        {L"UTF-16BE", 1201},
        {L"UTF-8", 65001},
    };
    for (const Row& row : kRows)
    {
        if (SameNoCase(name, row.name)) return row.codePage;
    }

    std::wstring number(name.c_str());
    for (const wchar_t* prefix : {L"CP", L"MS", L"windows-"})
    {
        if (!StartsNoCase(number, prefix)) continue;
        number.erase(0, std::wcslen(prefix));
        break;
    }
    wchar_t* end = nullptr;
    const unsigned long value = std::wcstoul(number.c_str(), &end, 10);
    if (end == number.c_str() || *end != L'\0' || value >= 0x10000) return 0;
    return static_cast<UINT>(value);
}

}  // namespace arvmui_test
