#include "text/text_reader.h"

#include <algorithm>
#include <cstring>

namespace arvmui
{
bool TextReader::Open(const wchar_t* path, UINT codePage) noexcept
{
    decoder_.SetCodePage(codePage);
    cursor_ = end_ = buffer_;
    file_ = UniqueFile(
        ::CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    lastError_ = file_ ? ERROR_SUCCESS : ::GetLastError();
    return static_cast<bool>(file_);
}

bool TextReader::Close() noexcept
{
    if (!file_) return true;
    const BOOL closed = ::CloseHandle(file_.Release());
    if (!closed) lastError_ = ::GetLastError();
    return closed != FALSE;
}

bool TextReader::Refill() noexcept
{
    const size_t left = Available();
    if (left != 0 && cursor_ != buffer_) std::memmove(buffer_, cursor_, left);
    cursor_ = buffer_;
    end_ = buffer_ + left;
    if (left == kBufferBytes) return true;

    DWORD count = 0;
    if (!::ReadFile(file_.Get(), buffer_ + left, static_cast<DWORD>(kBufferBytes - left), &count, nullptr))
    {
        lastError_ = ::GetLastError();
        return false;
    }
    end_ += count;
    return true;
}

std::uint32_t TextReader::DecodeNext() noexcept
{
    if (Available() == 0 && (!Refill() || Available() == 0)) return kEnd;
    if (*cursor_ < 128) return *cursor_++;

    for (size_t count = 1; count <= CharacterDecoder::kMaxCharacterBytes; ++count)
    {
        if (Available() < count && (!Refill() || Available() < count)) break;
        wchar_t unit = L'\0';
        if (!decoder_.Decode(cursor_, count, unit)) continue;
        cursor_ += count;
        return unit;
    }
    ++cursor_;
    return kUndecodable;
}

size_t TextReader::NextCharacters(wchar_t* units, size_t capacity) noexcept
{
    if (capacity == 0 || (Available() == 0 && (!Refill() || Available() == 0))) return 0;

    size_t used = 0;
    const size_t count = decoder_.DecodeKnown(cursor_, std::min(Available(), capacity), units, used);
    cursor_ += used;
    if (count != 0) return count;

    const std::uint32_t unit = DecodeNext();
    if (unit == kEnd) return 0;
    units[0] = static_cast<wchar_t>(unit);
    return 1;
}

}  // namespace arvmui
