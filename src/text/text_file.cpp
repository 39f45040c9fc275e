#include "foundation/heap.h"
#include "resources/process_state.h"
#include "resources/resource_path.h"
#include "text/text_reader.h"

#include <algorithm>
#include <emmintrin.h>

// Translated text files, read whole in the code page of their language.

namespace arvmui
{
namespace
{

constexpr size_t kFirstGrowth = 256;         // characters
constexpr size_t kLargestGrowth = 0x100000;  // characters

// The text must not hold its own terminator, so a NUL becomes a blank.
void ReplaceNuls(wchar_t* text, size_t count) noexcept
{
    // Eight units at a time are looked at: text hardly ever holds one.
    constexpr size_t kBlock = 8;
    size_t i = 0;
    for (; i + kBlock <= count; i += kBlock)
    {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(block, _mm_setzero_si128())) != 0)
            std::replace(text + i, text + i + kBlock, L'\0', L' ');
    }
    std::replace(text + i, text + count, L'\0', L' ');
}

// Text under construction: room doubles up to the largest growth.
class FileText
{
public:
    bool ReadAll(TextReader& reader) noexcept
    {
        for (;;)
        {
            const size_t added = ReadSome(reader);
            if (failed_) return false;
            if (added == 0) break;
            ReplaceNuls(text_.Get() + count_, added);
            count_ += added;
        }
        if (!text_.Resize(count_ + 1)) return false;
        text_.Get()[count_] = L'\0';
        return true;
    }

    wchar_t* Release() noexcept { return text_.Release(); }

private:
    // Grows only once there is another character for which there is no room.
    size_t ReadSome(TextReader& reader) noexcept
    {
        if (count_ < capacity_) return reader.NextCharacters(text_.Get() + count_, capacity_ - count_);
        const std::uint32_t unit = reader.NextCharacter();
        if (unit == TextReader::kEnd) return 0;
        const size_t growth = capacity_ == 0 ? kFirstGrowth : std::min(capacity_, kLargestGrowth);
        if (!text_.Resize(capacity_ + growth))
        {
            failed_ = true;
            return 0;
        }
        capacity_ += growth;
        text_.Get()[count_] = static_cast<wchar_t>(unit);
        return 1;
    }

    HeapBlock<wchar_t> text_;
    size_t count_ = 0;
    size_t capacity_ = 0;  // count_ <= capacity_
    bool failed_ = false;
};

// The ANSI code page of the language of the resources that the same list of locales gives.
UINT FindTextCodePage(const wchar_t* locales) noexcept
{
    UniqueLibrary library;
    // Ignored: without a library of its own the list stands for the language of the process.
    if (locales) ARVMUI_LoadResourceLibraryW(Descriptor().module, nullptr, locales, library.Slot());
    return ARVMUI_GetACP(ARVMUI_GetLangID(library.Get()), 0);
}

}  // namespace
}  // namespace arvmui

BOOL ARVMUI_CALL ARVMUI_ReadTextFileW(HMODULE module, const WCHAR* fileName, const WCHAR* locales, WCHAR** text)
{
    using namespace arvmui;
    wchar_t path[kMaxPathChars];
    if (ARVMUI_GetResourceFileNameW(module, fileName, locales, path, kMaxPathChars) == 0) return FALSE;

    TextReader reader;
    if (!reader.Open(path, FindTextCodePage(locales))) return FALSE;
    FileText content;
    if (!content.ReadAll(reader)) return FALSE;
    // Ignored: the text has been read, whatever becomes of the handle.
    reader.Close();
    if (text) *text = content.Release();
    return TRUE;
}
