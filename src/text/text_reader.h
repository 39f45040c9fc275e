// Reads a byte file through a small buffer and decodes it one UTF-16 unit at a time in a code page
// that may change between two reads. Detects no encoding and no byte-order mark, and translates no
// line ends.
//
// The decoding is defined one character at a time: a byte below 128 stands for itself; any other
// starts a character of 1 to 4 bytes which the code page turns into exactly one unit, else the byte
// becomes U+FFFD alone and the next one starts anew.
#pragma once

#include "foundation/handles.h"
#include "text/character_decoder.h"
#include "text/plain_run.h"

#include <cstddef>
#include <cstdint>

namespace arvmui
{

class TextReader
{
public:
    static constexpr std::uint32_t kEnd = 0xFFFFFFFF;
    static constexpr std::uint32_t kUndecodable = 0xFFFD;
    static constexpr size_t kBufferBytes = 1024;

    TextReader() noexcept = default;
    TextReader(const TextReader&) = delete;
    TextReader& operator=(const TextReader&) = delete;

    // FALSE with LastError() set when the file cannot be opened. Code page 0 is the ANSI code page.
    bool Open(const wchar_t* path, UINT codePage) noexcept;
    bool Close() noexcept;

    // Reads more bytes behind those that are left; FALSE with LastError() set on a read error. At
    // the end of the file it reads nothing and succeeds.
    bool Refill() noexcept;

    // The next UTF-16 unit, or kEnd.
    std::uint32_t NextCharacter() noexcept
    {
        if (cursor_ != end_ && *cursor_ < 128) return *cursor_++;
        return DecodeNext();
    }

    // Some of the units that NextCharacter would give one by one, 1 to `capacity`; 0 at the end.
    size_t NextCharacters(wchar_t* units, size_t capacity) noexcept;

    // Calls take(bytes, count) with bytes below 128 that come next, up to a line feed or `stop`. They
    // stand for themselves and count as read. More text may follow even where there are none.
    template <typename Take>
    void NextPlainRun(char stop, Take take) noexcept
    {
        const BYTE* const begin = cursor_;
        cursor_ = FindPlainRunEnd(begin, end_, stop);
        take(begin, static_cast<size_t>(cursor_ - begin));
    }

    // The bytes that have been read from the file and not decoded yet. SkipPlain takes some of them,
    // all below 128, as read.
    const BYTE* Begin() const noexcept { return cursor_; }
    const BYTE* End() const noexcept { return end_; }
    void SkipPlain(size_t count) noexcept { cursor_ += count; }

    UINT CodePage() const noexcept { return decoder_.CodePage(); }
    // From the next character on.
    void SetCodePage(UINT codePage) noexcept { decoder_.SetCodePage(codePage); }

    // The last system error of opening, reading or closing; 0 after opening.
    DWORD LastError() const noexcept { return lastError_; }

private:
    std::uint32_t DecodeNext() noexcept;
    size_t Available() const noexcept { return static_cast<size_t>(end_ - cursor_); }

    UniqueFile file_;
    CharacterDecoder decoder_;
    const BYTE* cursor_ = buffer_;  // next byte not yet decoded: buffer_ <= cursor_ <= end_
    const BYTE* end_ = buffer_;     // behind the last byte read: end_ <= buffer_ + kBufferBytes
    DWORD lastError_ = ERROR_SUCCESS;
    BYTE buffer_[kBufferBytes];
};

}  // namespace arvmui
