#include "po_file.h"

#include "tool_error.h"

#include <cstdio>
#include <cstdlib>

namespace
{

std::string Quoted(std::string_view text)
{
    std::string result = "\"";
    for (const char character : text)
    {
        const unsigned char byte = static_cast<unsigned char>(character);
        if (character == '\n')
            result += "\\n";
        else if (character == '\r')
            result += "\\r";
        else if (character == '\t')
            result += "\\t";
        else if (character == '"' || character == '\\')
            (result += '\\') += character;
        else if (byte < 0x20)
        {
            char escape[8];
            std::snprintf(escape, sizeof(escape), "\\%03o", static_cast<unsigned>(byte));
            result += escape;
        }
        else
            result += character;
    }
    return result += '"';
}

// A text of several lines is written as several strings, which is how editors show it best.
std::string Keyword(const char* keyword, std::string_view text)
{
    const std::size_t firstEnd = text.find('\n');
    if (firstEnd == std::string_view::npos || firstEnd + 1 == text.size())
        return std::string(keyword) + ' ' + Quoted(text) + '\n';
    std::string result = std::string(keyword) + " \"\"\n";
    while (!text.empty())
    {
        const std::size_t end = text.find('\n');
        const std::size_t length = end == std::string_view::npos ? text.size() : end + 1;
        result += Quoted(text.substr(0, length)) + '\n';
        text.remove_prefix(length);
    }
    return result;
}

class PoReader
{
public:
    explicit PoReader(std::string_view text) : text_(text) {}

    std::map<std::string, std::string> Read()
    {
        while (!text_.empty())
        {
            const std::size_t end = text_.find('\n');
            std::string_view line = text_.substr(0, end);
            text_.remove_prefix(end == std::string_view::npos ? text_.size() : end + 1);
            ++lineNumber_;
            while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
            while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
            if (lineNumber_ == 1 && line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
            ReadLine(line);
        }
        Finish();
        return std::move(translations_);
    }

private:
    void ReadLine(std::string_view line)
    {
        if (line.empty()) return Finish();
        if (line.front() == '#')
        {
            if (field_ == &translation_) Finish();
            isDoubtful_ = isDoubtful_ || (line.starts_with("#,") && line.find("fuzzy") != std::string_view::npos);
            return;
        }
        if (line.front() == '"') return ReadString(line);
        if (Take(line, "msgctxt"))
        {
            if (field_ == &translation_) Finish();
            field_ = &context_;
        }
        else if (Take(line, "msgid"))
            field_ = &original_;
        else if (Take(line, "msgstr"))
            field_ = &translation_;
        else
            Refuse("neither a comment nor msgctxt, msgid or msgstr");
        ReadString(line);
    }

    static bool Take(std::string_view& line, std::string_view keyword)
    {
        if (!line.starts_with(keyword) || line.size() == keyword.size()) return false;
        const char next = line[keyword.size()];
        if (next != ' ' && next != '\t' && next != '"') return false;
        line.remove_prefix(line.find_first_not_of(" \t", keyword.size()));
        return true;
    }

    void ReadString(std::string_view line)
    {
        if (!field_ || line.size() < 2 || line.front() != '"' || line.back() != '"')
            Refuse("a string in quotes is expected");
        line = line.substr(1, line.size() - 2);
        for (std::size_t at = 0; at < line.size();)
        {
            if (line[at] == '"') Refuse("a quote inside a string needs a backslash");
            *field_ += line[at] == '\\' ? Unescape(line, at) : line[at++];
        }
    }

    char Unescape(std::string_view line, std::size_t& at)
    {
        if (++at == line.size()) Refuse("a backslash at the end of a string");
        const char escaped = line[at++];
        switch (escaped)
        {
            case 'n': return '\n';
            case 'r': return '\r';
            case 't': return '\t';
            case '"':
            case '\\': return escaped;
            default: break;
        }
        if (escaped < '0' || escaped > '7') Refuse("an unknown escape");
        int value = escaped - '0';
        for (int digits = 1; digits < 3 && at < line.size() && line[at] >= '0' && line[at] <= '7'; ++digits)
            value = value * 8 + (line[at++] - '0');
        return static_cast<char>(value);
    }

    void Finish()
    {
        if (field_ == &translation_ && !isDoubtful_ && !context_.empty() && !translation_.empty())
            translations_[context_] = translation_;
        context_.clear();
        original_.clear();
        translation_.clear();
        field_ = nullptr;
        isDoubtful_ = false;
    }

    [[noreturn]] void Refuse(const char* reason) const
    {
        throw ToolError("line " + std::to_string(lineNumber_) + ": " + reason);
    }

    std::string_view text_;
    int lineNumber_ = 0;
    std::string context_;
    std::string original_;
    std::string translation_;
    std::string* field_ = nullptr;
    bool isDoubtful_ = false;
    std::map<std::string, std::string> translations_;
};

}  // namespace

std::string WritePo(const std::string& language, const std::vector<PoEntry>& entries)
{
    std::string text = "msgid \"\"\nmsgstr \"\"\n\"Language: " + language
                       + "\\n\"\n\"MIME-Version: 1.0\\n\"\n\"Content-Type: text/plain; charset=UTF-8\\n\"\n"
                         "\"Content-Transfer-Encoding: 8bit\\n\"\n";
    for (const PoEntry& entry : entries)
    {
        text += '\n';
        for (const std::string& comment : entry.comments) text += "#. " + comment + '\n';
        if (entry.isFormat) text += "#, c-format\n";
        text +=
            Keyword("msgctxt", entry.context) + Keyword("msgid", entry.original) + Keyword("msgstr", entry.translation);
    }
    return text;
}

std::map<std::string, std::string> ReadPo(std::string_view text)
{
    return PoReader(text).Read();
}
