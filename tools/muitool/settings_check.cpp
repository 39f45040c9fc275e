#include "settings_check.h"

#include "library_api.h"
#include "text_conversion.h"

#include <map>
#include <string_view>

namespace
{

constexpr unsigned kToleratedLines = 2;  // malformed lines that the reader passes over
constexpr std::size_t kMaxTokenChars = 270;
constexpr std::wstring_view kSpace = L" \t\v\f\r";

std::wstring_view TrimLeft(std::wstring_view text)
{
    const std::size_t first = text.find_first_not_of(kSpace);
    return first == std::wstring_view::npos ? std::wstring_view() : text.substr(first);
}

std::wstring_view TrimRight(std::wstring_view text)
{
    const std::size_t last = text.find_last_not_of(kSpace);
    return last == std::wstring_view::npos ? std::wstring_view() : text.substr(0, last + 1);
}

// Names are compared without regard to case.
std::wstring Folded(std::wstring_view name)
{
    std::wstring folded(name.substr(0, kMaxTokenChars));
    ::CharUpperBuffW(folded.data(), static_cast<DWORD>(folded.size()));
    return folded;
}

std::wstring Decode(std::string_view bytes, UINT codePage)
{
    const int size = static_cast<int>(bytes.size());
    const int length = ::MultiByteToWideChar(codePage, 0, bytes.data(), size, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    ::MultiByteToWideChar(codePage, 0, bytes.data(), size, text.data(), length);
    return text;
}

// What may follow a name in brackets or a value in quotes: nothing, or a comment.
bool IsLineEnd(std::wstring_view rest)
{
    rest = TrimLeft(rest);
    return rest.empty() || rest.front() == L';';
}

class SettingsCheck
{
public:
    SettingsCheck(const std::filesystem::path& file, Findings& findings) : file_(file), findings_(findings) {}

    void Run(std::string_view bytes)
    {
        if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
            return Add(1, "encoding", "the file is in UTF-16, which is not read; store it in UTF-8 and declare that");
        if (bytes.starts_with("\xEF\xBB\xBF"))
            Add(1, "byte-order-mark",
                "the file begins with a byte-order mark, which becomes part of the first line: a section there is "
                "not found, \"[Encoding]\" included; remove the mark");
        while (!bytes.empty() && !hasEnded_)
        {
            const std::size_t end = bytes.find('\n');
            ++line_;
            CheckLine(std::wstring(TrimLeft(Decode(bytes.substr(0, end), codePage_))));
            bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
        }
    }

private:
    void Add(unsigned line, const char* kind, std::string text) { findings_.Add(file_, line, kind, std::move(text)); }

    void CheckLine(const std::wstring& line)
    {
        if (line.empty() || line.front() == L';') return;
        if (line.front() == L'[')
            CheckSection(std::wstring_view(line).substr(1));
        else
            CheckKey(line);
    }

    void CheckSection(std::wstring_view line)
    {
        const std::size_t end = line.find(L']');
        const std::wstring_view name = line.substr(0, end);
        if (end == std::wstring_view::npos)
            Add(line_, "section", "the name of the section is not closed by \"]\"");
        else if (!IsLineEnd(line.substr(end + 1)))
            Malformed("text follows the section's name");
        CheckLength(name, "the section's name");
        const std::wstring folded = Folded(name);
        const auto [first, isNew] = sections_.emplace(folded, line_);
        if (!isNew)
            Add(line_, "section-again",
                "the section is there already, in line " + std::to_string(first->second)
                    + "; keys in this one are never found");
        isSectionSearched_ = isNew;
        isEncodingSection_ = folded == L"ENCODING";
        keys_.clear();
    }

    void CheckKey(std::wstring_view line)
    {
        const std::size_t equals = line.find(L'=');
        const std::wstring_view name = TrimRight(line.substr(0, equals));
        if (name.empty()) return Malformed("the line has no key in front of \"=\"");
        CheckLength(name, "the key");
        if (equals == std::wstring_view::npos)
            return Malformed("the line has no \"=\"; a search for this key ends here");
        const auto [first, isNew] = keys_.emplace(Folded(name), line_);
        if (sections_.empty())
            Add(line_, "key", "the key stands before the first section and belongs to none");
        else if (!isNew && isSectionSearched_)
            Add(line_, "key-again",
                "the key is there already, in line " + std::to_string(first->second) + "; this value is never found");
        CheckValue(name, TrimLeft(line.substr(equals + 1)));
    }

    void CheckValue(std::wstring_view key, std::wstring_view rest)
    {
        std::wstring value;
        if (!rest.empty() && (rest.front() == L'"' || rest.front() == L'\''))
            value = QuotedValue(rest);
        else
            value = TrimRight(rest);
        CheckLength(value, "the value");
        // From the next line on.
        if (isEncodingSection_ && Folded(key) == L"INPUTENCODING")
            codePage_ = Library().ARVMUI_TextEncodingToCodePageW(value.c_str());
    }

    std::wstring QuotedValue(std::wstring_view rest)
    {
        const wchar_t quote = rest.front();
        std::wstring value;
        for (std::size_t at = 1; at < rest.size(); ++at)
        {
            if (rest[at] != quote)
            {
                value += rest[at];
                continue;
            }
            if (at + 1 == rest.size() || rest[at + 1] != quote)
            {
                if (!IsLineEnd(rest.substr(at + 1))) Malformed("text follows the closing quote");
                return value;
            }
            value += rest[at++];
        }
        Add(line_, "quote", "the quote is not closed; the value takes the rest of the line as it is");
        return value;
    }

    void CheckLength(std::wstring_view text, const char* what)
    {
        if (text.size() > kMaxTokenChars)
            Add(line_, "too-long",
                std::string(what) + " has " + std::to_string(text.size()) + " characters, of which "
                    + std::to_string(kMaxTokenChars) + " are kept");
    }

    void Malformed(const std::string& reason)
    {
        ++malformedLines_;
        if (malformedLines_ <= kToleratedLines)
        {
            Add(line_, "malformed",
                reason + "; it is passed over, " + std::to_string(malformedLines_) + " of "
                    + std::to_string(kToleratedLines) + " such lines");
            return;
        }
        Add(line_, "malformed", reason + "; it ends every search: nothing behind this line is ever found");
        hasEnded_ = true;
    }

    const std::filesystem::path& file_;
    Findings& findings_;
    UINT codePage_ = CP_ACP;
    unsigned line_ = 0;
    unsigned malformedLines_ = 0;
    bool hasEnded_ = false;
    bool isEncodingSection_ = false;
    bool isSectionSearched_ = false;
    std::map<std::wstring, unsigned> sections_;  // names to lines
    std::map<std::wstring, unsigned> keys_;      // of the section
};

}  // namespace

void CheckSettings(const std::filesystem::path& file, const std::string& bytes, Findings& findings)
{
    SettingsCheck(file, findings).Run(bytes);
}
