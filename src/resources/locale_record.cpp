#include "resources/locale_record.h"

#include "foundation/handles.h"
#include "foundation/process_info.h"
#include "foundation/text_calls.h"

namespace arvmui
{
namespace
{

static_assert(offsetof(LocaleRecord, size) == 0);
static_assert(offsetof(LocaleRecord, locales) == 4);
static_assert(sizeof(LocaleRecord) == 132);

constexpr size_t kSectionNameChars = 32;  // "ARVMUI_4294967295.IPC" and its terminator fit

class SectionName
{
public:
    explicit SectionName(DWORD processId) noexcept
    {
        // Ignored: the length, as every number fits.
        FormatFixed<wchar_t>(text_, kSectionNameChars, L"ARVMUI_%lu.IPC", processId);
    }
    const wchar_t* Get() const noexcept { return text_; }

private:
    wchar_t text_[kSectionNameChars];
};

// Whether the whole record can be touched: a section that another process made may reserve its memory
// without there being any.
bool IsBacked(const void* view) noexcept
{
    MEMORY_BASIC_INFORMATION region;
    return ::VirtualQuery(view, &region, sizeof(region)) == sizeof(region) && region.State == MEM_COMMIT
           && region.RegionSize >= sizeof(LocaleRecord);
}

}  // namespace

HANDLE PublishLocale(const wchar_t* list) noexcept
{
    const SectionName name(::GetCurrentProcessId());
    UniqueHandle section(
        ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(LocaleRecord), name.Get()));
    if (!section) return nullptr;
    const UniqueView view(::MapViewOfFile(section.Get(), FILE_MAP_WRITE, 0, 0, sizeof(LocaleRecord)));
    if (!view || !IsBacked(view.Get())) return nullptr;

    LocaleRecord& record = *static_cast<LocaleRecord*>(view.Get());
    record.size = sizeof(LocaleRecord);
    // Ignored: a list that is cut is the list from now on.
    CopyCut(record.locales, ARRAYSIZE(record.locales), list);
    return section.Release();  // open until detach: children read it while we live
}

DWORD ReadParentLocale(wchar_t* buffer, DWORD capacity) noexcept
{
    if (capacity == 0) return 0;
    buffer[0] = L'\0';
    const DWORD parent = GetParentProcessId(::GetCurrentProcessId());
    if (parent == kNoProcess) return 0;

    const SectionName name(parent);
    const UniqueHandle section(::OpenFileMappingW(FILE_MAP_READ, FALSE, name.Get()));
    if (!section) return 0;
    const UniqueView view(::MapViewOfFile(section.Get(), FILE_MAP_READ, 0, 0, sizeof(LocaleRecord)));
    if (!view || !IsBacked(view.Get())) return 0;

    // The other process may be writing at this moment: each character is read once, and no more of
    // them than the record holds, terminated or not.
    const volatile LocaleRecord& record = *static_cast<const LocaleRecord*>(view.Get());
    if (record.size < sizeof(LocaleRecord)) return 0;
    const DWORD limit = capacity - 1 < ARVMUI_TAG_CHARS ? capacity - 1 : ARVMUI_TAG_CHARS;
    DWORD length = 0;
    for (; length < limit; ++length)
    {
        const wchar_t character = record.locales[length];
        if (character == L'\0') break;
        buffer[length] = character;
    }
    buffer[length] = L'\0';
    return length;
}

}  // namespace arvmui
