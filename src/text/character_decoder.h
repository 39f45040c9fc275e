// Decodes the bytes of a code page into UTF-16 units, a character or a run of them at a time. Knows
// nothing of files.
//
// What the system says of one or two bytes is remembered, so that the characters of most code pages are
// asked for once. UTF-8 is decoded by hand: the system turns the mere beginning of a character into
// one unit, and systems differ in how many units ill-formed bytes give.
#pragma once

#include "foundation/heap.h"

namespace arvmui
{

class CharacterDecoder
{
public:
    static constexpr size_t kMaxCharacterBytes = 4;
    static constexpr size_t kByteValues = 256;
    static constexpr size_t kUpperBytes = 128;  // byte values from 128 up

    // As it was set: the numbers that stand for a setting of the system (CP_ACP and its kin) stay.
    UINT CodePage() const noexcept { return codePage_; }
    void SetCodePage(UINT codePage) noexcept;

    // Whether exactly these bytes, the first of them 128 or above, are one character that takes one
    // unit. The mere beginning of a character is none.
    bool Decode(const BYTE* bytes, size_t count, wchar_t& unit) noexcept;

    // Decodes the characters that come next as long as nobody has to be asked about them; the units
    // written, at most `count`. `used` receives the bytes decoded.
    size_t DecodeKnown(const BYTE* bytes, size_t count, wchar_t* units, size_t& used) const noexcept;

private:
    void LearnSingleBytes() noexcept;
    wchar_t* Remembered(const BYTE* bytes, size_t count) noexcept;

    UINT codePage_ = CP_ACP;
    UINT realCodePage_ = CP_ACP;        // what codePage_ stands for on this system
    bool isUnknown_ = false;            // the system does not have realCodePage_
    bool hasLearnt_ = false;            // LearnSingleBytes has been called
    bool isComplete_ = false;           // every byte is a character by itself, and all are in single_
    bool isLatin_ = false;              // from A0 up each byte is its own unit
    wchar_t single_[kByteValues] = {};  // from 128 up; below, each byte is itself
    HeapBlock<wchar_t> pairs_;          // kUpperBytes rows of 256, once a pair was asked for and if memory allows
};

}  // namespace arvmui
