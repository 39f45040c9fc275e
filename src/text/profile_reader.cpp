#include "text/profile_reader.h"

#include "foundation/plain_characters.h"
#include "foundation/text.h"

#include <algorithm>

namespace arvmui
{
namespace
{

bool IsSpace(std::uint32_t character) noexcept
{
    return character < 128 && IsAsciiSpace(static_cast<wchar_t>(character));
}

// Whether a line that starts with the character, which is no white space, starts with a key.
bool StartsKey(std::uint32_t character) noexcept
{
    return character != TextReader::kEnd && character != L';' && character != L'=' && character != L'['
           && !IsSpace(character);
}

}  // namespace

bool ProfileReader::Open(const wchar_t* path) noexcept
{
    if (!reader_.Open(path, CP_ACP)) return false;
    Advance();
    return true;
}

ProfileToken ProfileReader::NextToken() noexcept
{
    lastToken_ = ReadToken();
    return lastToken_;
}

bool ProfileReader::SkipPlainEntry(const std::wstring_view* sought) noexcept
{
    if (!StartsKey(lookahead_)) return false;
    const BYTE* const end = reader_.End();
    const BYTE* p = FindPlainRunEnd(reader_.Begin(), end, '=');
    if (p == end || *p != '=' || (sought && CouldBe(p, *sought))) return false;
    ++p;
    while (p != end && *p != '\n' && IsSpace(*p)) ++p;
    if (p == end || *p == '"' || *p == '\'') return false;
    p = FindPlainRunEnd(p, end, '\n');
    if (p == end || *p != '\n') return false;

    reader_.SkipPlain(static_cast<size_t>(p + 1 - reader_.Begin()));
    Advance();
    lastToken_ = ProfileToken::kNewLine;
    return true;
}

// Whether the key that starts with the next character and ends, but for white space, before `keyEnd`
// could equal the sought one.
bool ProfileReader::CouldBe(const BYTE* keyEnd, std::wstring_view sought) const noexcept
{
    const BYTE* const begin = reader_.Begin();
    while (keyEnd != begin && IsSpace(keyEnd[-1])) --keyEnd;
    const size_t length = static_cast<size_t>(keyEnd - begin) + 1;
    if (length > kMaxTokenChars) return true;  // its text is cut
    if (PlainCharacter(lookahead_) == '\0' || !IsPlainWord(begin, keyEnd, reader_.End())) return true;
    if (length != sought.size()) return false;
    // Names of one length that begin alike often are numbered.
    for (size_t i = length - 1; i != 0; --i)
    {
        if (PlainCharacter(begin[i - 1]) != PlainCharacter(sought[i])) return false;
    }
    return PlainCharacter(lookahead_) == PlainCharacter(sought[0]);
}

ProfileToken ProfileReader::ReadToken() noexcept
{
    while (lookahead_ != L'\n' && IsSpace(lookahead_)) Advance();
    if (lastToken_ == ProfileToken::kEquals) return ReadValue();

    switch (lookahead_)
    {
        case TextReader::kEnd: return ProfileToken::kEnd;
        case L';': return SkipComment();
        case L'\n': Advance(); return ProfileToken::kNewLine;
        case L'=': Advance(); return ProfileToken::kEquals;
        case L'[': return ReadSection();
        default: return ReadKey();
    }
}

ProfileToken ProfileReader::ReadValue() noexcept
{
    StartText(keepsText_);
    if (lookahead_ == L'\'' || lookahead_ == L'"') return ReadQuotedValue(lookahead_);
    while (!AtLineEnd()) Take('\n');
    FinishTrimmedText();
    return ProfileToken::kValue;
}

// Without its closing quote a value takes the rest of the line as it is.
ProfileToken ProfileReader::ReadQuotedValue(std::uint32_t quote) noexcept
{
    Advance();
    while (!AtLineEnd())
    {
        if (lookahead_ == quote)
        {
            Advance();
            if (lookahead_ != quote) break;  // else two quotes stand for one
        }
        Take(static_cast<char>(quote));
    }
    FinishText();
    return ProfileToken::kValue;
}

ProfileToken ProfileReader::SkipComment() noexcept
{
    while (!AtLineEnd())
    {
        reader_.NextPlainRun('\n', [](const BYTE*, size_t) {});
        Advance();
    }
    if (lookahead_ == TextReader::kEnd) return ProfileToken::kEnd;
    Advance();
    return ProfileToken::kNewLine;
}

ProfileToken ProfileReader::ReadSection() noexcept
{
    StartText(true);
    Advance();
    while (!AtLineEnd() && lookahead_ != L']') Take(']');
    if (lookahead_ == L']') Advance();
    FinishText();
    return ProfileToken::kSection;
}

ProfileToken ProfileReader::ReadKey() noexcept
{
    StartText(keepsText_);
    do
    {
        Take('=');
    } while (!AtLineEnd() && lookahead_ != L'=');
    FinishTrimmedText();
    return ProfileToken::kKey;
}

void ProfileReader::StartText(bool keep) noexcept
{
    takesText_ = keep;
    takenLength_ = 0;
    trimmedLength_ = 0;
}

// Takes the next character into the token, and those behind it up to the stop.
void ProfileReader::Take(char stop) noexcept
{
    if (takesText_)
    {
        if (takenLength_ < kMaxTokenChars) tokenText_[takenLength_] = static_cast<wchar_t>(lookahead_);
        ++takenLength_;
        if (!IsSpace(lookahead_)) trimmedLength_ = takenLength_;
    }
    reader_.NextPlainRun(stop,
        [this](const BYTE* bytes, size_t count)
        {
            if (takesText_) TakePlain(bytes, count);
        });
    Advance();
}

void ProfileReader::TakePlain(const BYTE* bytes, size_t count) noexcept
{
    const size_t room = takenLength_ < kMaxTokenChars ? kMaxTokenChars - takenLength_ : 0;
    if (room != 0) std::copy_n(bytes, std::min(count, room), tokenText_ + takenLength_);
    size_t trimmed = count;
    while (trimmed != 0 && IsSpace(bytes[trimmed - 1])) --trimmed;
    if (trimmed != 0) trimmedLength_ = takenLength_ + trimmed;
    takenLength_ += count;
}

void ProfileReader::FinishText() noexcept
{
    tokenLength_ = std::min(takenLength_, kMaxTokenChars);
    tokenText_[tokenLength_] = L'\0';
}

void ProfileReader::FinishTrimmedText() noexcept
{
    takenLength_ = trimmedLength_;
    FinishText();
}

}  // namespace arvmui
