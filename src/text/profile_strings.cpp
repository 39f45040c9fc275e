#include "foundation/code_page.h"
#include "foundation/plain_characters.h"
#include "foundation/text_calls.h"
#include "text/character_decoder.h"
#include "text/profile_reader.h"

#include <algorithm>
#include <climits>
#include <string_view>

// Values and lists of names from settings files: what the tokens of a file mean, and how results
// are handed back in both text widths.

namespace arvmui
{
namespace
{

constexpr int kRecoveries = 2;  // malformed lines that a call puts up with

// Converts with the flags that make the system report what it cannot convert; code pages that
// refuse them are asked without.
int ConvertToWide(UINT codePage, const char* text, wchar_t* wide, int capacity) noexcept
{
    const DWORD flags = codePage == CP_UTF8 ? 0 : MB_PRECOMPOSED;
    const int length = ::MultiByteToWideChar(codePage, flags, text, -1, wide, capacity);
    if (length != 0 || flags == 0 || ::GetLastError() != ERROR_INVALID_FLAGS) return length;
    return ::MultiByteToWideChar(codePage, 0, text, -1, wide, capacity);
}

int ConvertToNarrow(UINT codePage, const wchar_t* text, size_t length, char* narrow, size_t capacity) noexcept
{
    if (length == 0) return 0;  // which the system takes for a failure
    return ::WideCharToMultiByte(codePage, 0, text, static_cast<int>(length), narrow,
        static_cast<int>(std::min<size_t>(capacity, INT_MAX)), nullptr, nullptr);
}

// A section or key to look for. A narrow one is read in the code page of the file, so it is converted
// again whenever that changes.
template <typename Char>
class SoughtName;

template <>
class SoughtName<wchar_t>
{
public:
    explicit SoughtName(const wchar_t* name) noexcept : name_(name) {}

    bool Convert(UINT) noexcept { return true; }
    const wchar_t* Get() const noexcept { return name_; }

private:
    const wchar_t* name_;
};

template <>
class SoughtName<char>
{
public:
    explicit SoughtName(const char* name) noexcept : name_(name) {}

    // FALSE when the name does not exist in the code page.
    bool Convert(UINT codePage) noexcept
    {
        if (!name_) return true;
        const int size = ConvertToWide(codePage, name_, nullptr, 0);
        if (size <= 0 || !wide_.Resize(static_cast<size_t>(size))) return false;
        if (ConvertToWide(codePage, name_, wide_.Get(), size) != size) return false;
        if (static_cast<size_t>(size) > ProfileReader::kMaxTokenChars)
            wide_.Get()[ProfileReader::kMaxTokenChars] = L'\0';
        return true;
    }

    const wchar_t* Get() const noexcept { return wide_.Get(); }

private:
    const char* name_;
    HeapBlock<wchar_t> wide_;
};

// The caller's buffer. Wide text is copied; narrow text is converted into the code page of the file.
template <typename Char>
class ResultBuffer;

template <>
class ResultBuffer<wchar_t>
{
public:
    ResultBuffer(wchar_t* buffer, size_t size) noexcept : buffer_(buffer), size_(size) {}

    size_t Count() const noexcept { return count_; }

    // Appends a name and its terminator, leaving room for the list's own; FALSE when it does not fit.
    bool AppendName(const wchar_t* name, size_t length, UINT) noexcept
    {
        if (count_ + length + 2 > size_) return false;
        std::wmemcpy(buffer_ + count_, name, length);
        count_ += length;
        buffer_[count_++] = L'\0';
        return true;
    }

    // Stores as much of a value as fits; FALSE when that is not all of it.
    bool StoreValue(const wchar_t* value, size_t length, UINT) noexcept
    {
        count_ = std::min(length, size_ - 1);
        std::wmemcpy(buffer_, value, count_);
        return count_ == length;
    }

    void StoreDefault(const wchar_t* text, UINT) noexcept
    {
        size_t length = WideLength(text);
        while (length != 0 && IsAsciiSpace(text[length - 1])) --length;
        // Ignored: a default is cut without notice.
        StoreValue(text, length, CP_ACP);
    }

    void Clear() noexcept { count_ = 0; }
    void FillRest() noexcept { std::fill(buffer_ + count_, buffer_ + size_, L'\0'); }

private:
    wchar_t* buffer_;
    size_t size_;       // at least 1
    size_t count_ = 0;  // count_ <= size_
};

template <>
class ResultBuffer<char>
{
public:
    ResultBuffer(char* buffer, size_t size) noexcept : buffer_(buffer), size_(size) {}

    size_t Count() const noexcept { return count_; }

    bool AppendName(const wchar_t* name, size_t length, UINT codePage) noexcept
    {
        const size_t bytes = static_cast<size_t>(ConvertToNarrow(codePage, name, length, nullptr, 0));
        if (count_ + bytes + 2 > size_) return false;
        count_ += static_cast<size_t>(ConvertToNarrow(codePage, name, length + 1, buffer_ + count_, size_ - count_));
        return true;
    }

    // Deliberate: a value that does not fit stores nothing at all.
    bool StoreValue(const wchar_t* value, size_t length, UINT codePage) noexcept
    {
        const size_t bytes = static_cast<size_t>(ConvertToNarrow(codePage, value, length, nullptr, 0));
        if (bytes + 1 > size_) return false;
        count_ = static_cast<size_t>(ConvertToNarrow(codePage, value, length, buffer_, size_ - 1));
        return true;
    }

    // Whole characters of the file's code page only, as its reader would tell them.
    void StoreDefault(const char* text, UINT codePage) noexcept
    {
        const LastErrorKeeper keep;  // a file that could not be opened is still to be reported
        CharacterDecoder decoder;
        decoder.SetCodePage(codePage);
        const BYTE* const bytes = reinterpret_cast<const BYTE*>(text);
        size_t fitting = 0;  // behind the last character that fits
        size_t trimmed = 0;  // behind the last character that is no white space
        for (size_t i = 0; bytes[i] != 0;)
        {
            const bool isSpace = bytes[i] < 128 && IsAsciiSpace(bytes[i]);
            i += CharacterBytes(decoder, bytes + i);
            if (i <= size_ - 1) fitting = i;
            if (!isSpace) trimmed = i;
        }
        count_ = std::min(fitting, trimmed);
        std::memcpy(buffer_, text, count_);
    }

    void Clear() noexcept { count_ = 0; }
    void FillRest() noexcept { std::fill(buffer_ + count_, buffer_ + size_, '\0'); }

private:
    // Bytes of the character that starts here; 1 for a byte that starts none.
    static size_t CharacterBytes(CharacterDecoder& decoder, const BYTE* bytes) noexcept
    {
        wchar_t unit = L'\0';
        if (bytes[0] < 128) return 1;
        for (size_t count = 1; count <= CharacterDecoder::kMaxCharacterBytes && bytes[count - 1] != 0; ++count)
        {
            if (decoder.Decode(bytes, count, unit)) return count;
        }
        return 1;
    }

    char* buffer_;
    size_t size_;       // at least 1
    size_t count_ = 0;  // count_ <= size_
};

bool IsPlainWord(const wchar_t* text) noexcept
{
    while (*text != L'\0' && PlainCharacter(*text) != '\0') ++text;
    return *text == L'\0';
}

// One call: what is looked for, where the scan stands, and what it has found.
template <typename Char>
class ProfileQuery
{
public:
    ProfileQuery(const Char* section, const Char* key, ResultBuffer<Char>& result) noexcept
        : anySection_(reinterpret_cast<ULONG_PTR>(section) == ~ULONG_PTR{0}), listsSections_(!section),
          listsKeys_(!key), section_(anySection_ ? nullptr : section), key_(key), result_(result)
    {
    }

    void Scan(ProfileReader& reader) noexcept
    {
        if (!section_.Convert(reader.CodePage()) || !key_.Convert(reader.CodePage())) return;
        LearnKey();
        reader.KeepText(LooksAtKeys());
        reader.NextToken();
        while (ScanLine(reader))
        {
        }
    }

    // Whether what has been collected is the answer; else the default is.
    bool Stands() const noexcept
    {
        return (listsSections_ && reachedEnd_) || (listsKeys_ && sectionFound_) || keyFound_;
    }

    bool Overflowed() const noexcept { return overflowed_; }
    bool KeyFound() const noexcept { return keyFound_; }

private:
    // Whether the keys of the current section matter; else they are only checked for their form.
    bool LooksAtKeys() const noexcept { return sectionFound_ || anySection_ || inEncodingSection_; }

    // From the reader's current token on; FALSE ends the scan.
    bool ScanLine(ProfileReader& reader) noexcept
    {
        switch (reader.LastToken())
        {
            case ProfileToken::kEnd: reachedEnd_ = true; return false;
            case ProfileToken::kNewLine: return StartLine(reader);
            case ProfileToken::kSection: return ScanSection(reader);
            case ProfileToken::kKey: return ScanKey(reader);
            default: return Recover(reader);  // an equals sign without a key
        }
    }

    bool StartLine(ProfileReader& reader) noexcept
    {
        if (CanSkipEntries())
        {
            const std::wstring_view* const sought = LooksAtKeys() ? &plainKey_ : nullptr;
            while (reader.SkipPlainEntry(sought))
            {
            }
        }
        reader.NextToken();
        return true;
    }

    void LearnKey() noexcept
    {
        keyIsPlain_ = key_.Get() && IsPlainWord(key_.Get());
        if (keyIsPlain_) plainKey_ = key_.Get();
    }

    // Where keys matter, one by one only if all do or if the sought one is no plain word.
    bool CanSkipEntries() const noexcept
    {
        if (!LooksAtKeys()) return true;
        return !listsKeys_ && !inEncodingSection_ && keyIsPlain_;
    }

    bool ScanSection(ProfileReader& reader) noexcept
    {
        if (sectionFound_) return false;  // only the first section of a name counts
        const wchar_t* const name = reader.TokenText();
        if (listsSections_)
        {
            if (!Append(reader)) return false;
        }
        else if (!anySection_ && EqualsNoCase(name, section_.Get()))
        {
            sectionFound_ = true;
        }
        inEncodingSection_ = EqualsNoCase(name, L"Encoding");
        reader.KeepText(LooksAtKeys());
        return ExpectLineEnd(reader);
    }

    bool ScanKey(ProfileReader& reader) noexcept
    {
        const wchar_t* const name = reader.TokenText();
        if (listsKeys_)
        {
            if (sectionFound_ && !Append(reader)) return false;
        }
        else if ((sectionFound_ || anySection_) && EqualsNoCase(name, key_.Get()))
        {
            keyFound_ = true;
        }
        const bool declaresEncoding = inEncodingSection_ && EqualsNoCase(name, L"InputEncoding");

        if (reader.NextToken() != ProfileToken::kEquals)
        {
            if (!keyFound_) return Recover(reader);
            keyFound_ = false;  // a key without a value ends the search for it
            return false;
        }
        reader.KeepText(keyFound_ || declaresEncoding);
        reader.NextToken();
        reader.KeepText(LooksAtKeys());
        if (keyFound_)
        {
            overflowed_ = !result_.StoreValue(reader.TokenText(), reader.TokenLength(), reader.CodePage());
            return false;
        }
        if (declaresEncoding && !SwitchEncoding(reader)) return false;
        return ExpectLineEnd(reader);
    }

    bool SwitchEncoding(ProfileReader& reader) noexcept
    {
        const UINT codePage = ARVMUI_TextEncodingToCodePageW(reader.TokenText());
        if (codePage == reader.CodePage()) return true;
        reader.SetCodePage(codePage);
        if ((!sectionFound_ && !section_.Convert(codePage)) || !key_.Convert(codePage)) return false;
        LearnKey();
        return true;
    }

    bool Append(ProfileReader& reader) noexcept
    {
        if (result_.AppendName(reader.TokenText(), reader.TokenLength(), reader.CodePage())) return true;
        overflowed_ = true;
        return false;
    }

    bool ExpectLineEnd(ProfileReader& reader) noexcept
    {
        return reader.NextToken() == ProfileToken::kNewLine || Recover(reader);
    }

    // Leaves a malformed line from its current token on; FALSE when that was once too often.
    bool Recover(ProfileReader& reader) noexcept
    {
        if (recoveries_ == 0) return false;
        --recoveries_;
        ProfileToken token = reader.LastToken();
        while (token != ProfileToken::kNewLine && token != ProfileToken::kEnd) token = reader.NextToken();
        if (token == ProfileToken::kNewLine) reader.NextToken();
        return true;
    }

    const bool anySection_;
    const bool listsSections_;
    const bool listsKeys_;
    SoughtName<Char> section_;
    SoughtName<Char> key_;
    ResultBuffer<Char>& result_;
    bool keyIsPlain_ = false;
    std::wstring_view plainKey_;  // the key if it is plain
    bool sectionFound_ = false;
    bool keyFound_ = false;
    bool overflowed_ = false;
    bool reachedEnd_ = false;
    bool inEncodingSection_ = false;
    int recoveries_ = kRecoveries;
};

template <typename Char>
DWORD GetProfileString(const Char* section, const Char* key, const Char* defaultValue, Char* buffer, DWORD size,
    const wchar_t* fileName) noexcept
{
    if (!buffer || size == 0) return 0;
    ResultBuffer<Char> result(buffer, size);
    ProfileQuery<Char> query(section, key, result);
    ProfileReader reader;
    const bool opened = reader.Open(fileName);
    if (opened) query.Scan(reader);
    if (!query.Stands())
    {
        result.Clear();
        if (section && key && defaultValue) result.StoreDefault(defaultValue, reader.CodePage());
    }
    result.FillRest();
    if (!query.Overflowed()) return static_cast<DWORD>(result.Count());
    if (query.KeyFound()) return size - 1;
    return size >= 2 ? size - 2 : 0;
}

}  // namespace
}  // namespace arvmui

DWORD ARVMUI_CALL ARVMUI_GetPrivateProfileStringW(
    const WCHAR* section, const WCHAR* key, const WCHAR* defaultValue, WCHAR* buffer, DWORD size, const WCHAR* fileName)
{
    return arvmui::GetProfileString(section, key, defaultValue, buffer, size, fileName);
}

DWORD ARVMUI_CALL ARVMUI_GetPrivateProfileStringA(
    const char* section, const char* key, const char* defaultValue, char* buffer, DWORD size, const char* fileName)
{
    const arvmui::WideArgument wideFileName(fileName);
    return arvmui::GetProfileString(section, key, defaultValue, buffer, size, wideFileName.Get());
}
