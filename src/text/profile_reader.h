// Cuts a settings file into tokens: section names, keys, values, equals signs and line ends. What
// the tokens mean is its user's business.
#pragma once

#include "text/text_reader.h"

#include <string_view>

namespace arvmui
{

enum class ProfileToken : std::uint32_t
{
    kNone = 0,  // before the first token
    kEnd = 0xFFFFFFFF,
    kNewLine = 10,  // the end of a comment, too
    kEquals = 61,
    kSection = 0x200001,
    kKey = 0x200002,
    kValue = 0x200003
};

class ProfileReader
{
public:
    static constexpr size_t kMaxTokenChars = 270;  // terminator excluded; the rest is dropped

    // FALSE with the last error set when the file cannot be opened. It is decoded in the ANSI code
    // page until SetCodePage says otherwise.
    bool Open(const wchar_t* path) noexcept;

    ProfileToken NextToken() noexcept;

    // After a line end: takes the next line as a whole, leaving its own end as the last token, if it is
    // a key with a value, so plain that its tokens would tell nothing more, and not a key that could
    // equal `sought`, a word of plain characters (null: no key is sought).
    bool SkipPlainEntry(const std::wstring_view* sought) noexcept;

    // Whether keys and values get a text; without, they are only told from one another, which is
    // quicker. Sections always have theirs.
    void KeepText(bool keep) noexcept { keepsText_ = keep; }

    ProfileToken LastToken() const noexcept { return lastToken_; }

    // Text of the last section, key or value; terminated.
    const wchar_t* TokenText() const noexcept { return tokenText_; }
    size_t TokenLength() const noexcept { return tokenLength_; }

    UINT CodePage() const noexcept { return reader_.CodePage(); }

    // From the character behind the next one on, which has been read already.
    void SetCodePage(UINT codePage) noexcept { reader_.SetCodePage(codePage); }

private:
    ProfileToken ReadToken() noexcept;
    ProfileToken ReadValue() noexcept;
    ProfileToken ReadQuotedValue(std::uint32_t quote) noexcept;
    ProfileToken SkipComment() noexcept;
    ProfileToken ReadSection() noexcept;
    ProfileToken ReadKey() noexcept;

    bool CouldBe(const BYTE* keyEnd, std::wstring_view sought) const noexcept;
    void Advance() noexcept { lookahead_ = reader_.NextCharacter(); }
    bool AtLineEnd() const noexcept { return lookahead_ == L'\n' || lookahead_ == TextReader::kEnd; }
    void StartText(bool keep) noexcept;
    void Take(char stop) noexcept;
    void TakePlain(const BYTE* bytes, size_t count) noexcept;
    void FinishText() noexcept;
    void FinishTrimmedText() noexcept;

    TextReader reader_;
    std::uint32_t lookahead_ = TextReader::kEnd;  // next character, decoded already
    ProfileToken lastToken_ = ProfileToken::kNone;
    bool keepsText_ = true;
    bool takesText_ = true;     // of the token being read
    size_t takenLength_ = 0;    // characters of the token, dropped ones included
    size_t trimmedLength_ = 0;  // the same without trailing white space
    size_t tokenLength_ = 0;    // characters in tokenText_
    wchar_t tokenText_[kMaxTokenChars + 1] = {};
};

}  // namespace arvmui
