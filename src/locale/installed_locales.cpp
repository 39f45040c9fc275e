#include "locale/installed_locales.h"

#include "foundation/handles.h"
#include "foundation/heap.h"
#include "foundation/text_calls.h"
#include "locale/library_identity.h"
#include "locale/locale_list.h"
#include "resources/process_state.h"
#include "resources/resource_ids.h"
#include "resources/resource_path.h"

namespace arvmui
{
namespace
{

// Callers hand over arrays of this layout, cut at an element size of their choice.
static_assert(offsetof(LocaleEntry, LangID) == 0);
static_assert(offsetof(LocaleEntry, Locale) == 2);
static_assert(offsetof(LocaleEntry, LocaleLength) == 132);
static_assert(offsetof(LocaleEntry, EnglishName) == 136);
static_assert(offsetof(LocaleEntry, NativeName) == 264);
static_assert(offsetof(LocaleEntry, LanguageSelectionTitle) == 392);
static_assert(offsetof(LocaleEntry, LanguageSelectionDesc) == 904);
static_assert(offsetof(LocaleEntry, OK) == 1416);
static_assert(offsetof(LocaleEntry, Cancel) == 1480);
static_assert(sizeof(LocaleEntry) == 1544);
static_assert(kShortEntryBytes == 392);

struct Field
{
    size_t offset;
    size_t bytes;
    UINT string;
};

constexpr Field kTextFields[] = {
    {offsetof(LocaleEntry, Locale), sizeof(LocaleEntry::Locale), ARVMUI_STRING_LOCALE_TAG},
    {offsetof(LocaleEntry, EnglishName), sizeof(LocaleEntry::EnglishName), ARVMUI_STRING_ENGLISH_NAME},
    {offsetof(LocaleEntry, NativeName), sizeof(LocaleEntry::NativeName), ARVMUI_STRING_NATIVE_NAME},
    {offsetof(LocaleEntry, LanguageSelectionTitle), sizeof(LocaleEntry::LanguageSelectionTitle),
        ARVMUI_STRING_LANGUAGE_DIALOG_TITLE},
    {offsetof(LocaleEntry, LanguageSelectionDesc), sizeof(LocaleEntry::LanguageSelectionDesc),
        ARVMUI_STRING_LANGUAGE_DIALOG_TEXT},
    {offsetof(LocaleEntry, OK), sizeof(LocaleEntry::OK), ARVMUI_STRING_BUTTON_OK},
    {offsetof(LocaleEntry, Cancel), sizeof(LocaleEntry::Cancel), ARVMUI_STRING_BUTTON_CANCEL},
};

struct KeywordName
{
    const wchar_t* keyword;
    UINT string;
};

constexpr KeywordName kKeywords[] = {
    {kKeywordUser, ARVMUI_STRING_KEYWORD_USER},
    {kKeywordSystem, ARVMUI_STRING_KEYWORD_SYSTEM},
    {kKeywordUILanguage, ARVMUI_STRING_KEYWORD_UILANG},
    {kKeywordSettingsFile, ARVMUI_STRING_KEYWORD_KIV},
    {kKeywordBrowser, ARVMUI_STRING_KEYWORD_MSIE},
};

// The array under construction. An element is the beginning of a LocaleEntry, cut at the element
// size, so fields are reached by offset and only where they lie inside.
class EntryArray
{
public:
    explicit EntryArray(size_t elementSize) noexcept : elementSize_(elementSize) {}

    BYTE* Element(DWORD index) const noexcept { return bytes_.Get() + index * elementSize_; }
    DWORD Count() const noexcept { return count_; }
    void Raise(DWORD by) noexcept { count_ += by; }

    // Room for `extra` elements behind the counted ones.
    bool Reserve(DWORD extra) noexcept
    {
        const size_t elements = static_cast<size_t>(count_) + extra;
        if (elements > SIZE_MAX / elementSize_) return false;
        return bytes_.Resize(elements * elementSize_);
    }

    bool Holds(size_t offset, size_t bytes) const noexcept { return offset + bytes <= elementSize_; }

    // Zeroes the element at `index` after moving it and the later ones up by one.
    BYTE* Insert(DWORD index) noexcept
    {
        BYTE* const element = Element(index);
        std::memmove(element + elementSize_, element, (count_ - index) * elementSize_);
        std::memset(element, 0, elementSize_);
        return element;
    }

    void StoreTagLength(BYTE* element, DWORD length) const noexcept
    {
        if (Holds(offsetof(LocaleEntry, LocaleLength), sizeof(length)))
            std::memcpy(element + offsetof(LocaleEntry, LocaleLength), &length, sizeof(length));
    }

    BYTE* Release() noexcept { return bytes_.Release(); }

private:
    size_t elementSize_;
    HeapBlock<BYTE> bytes_;
    DWORD count_ = 0;
};

wchar_t* TextAt(BYTE* element, size_t offset) noexcept
{
    return reinterpret_cast<wchar_t*>(element + offset);
}

void StoreLanguage(BYTE* element, LANGID id) noexcept
{
    std::memcpy(element, &id, sizeof(id));
}

LANGID LanguageOf(const BYTE* element) noexcept
{
    LANGID id = 0;
    std::memcpy(&id, element, sizeof(id));
    return id;
}

bool IsOrderedAfter(LANGID left, LANGID right) noexcept
{
    if (PRIMARYLANGID(left) != PRIMARYLANGID(right)) return PRIMARYLANGID(left) > PRIMARYLANGID(right);
    return SUBLANGID(left) > SUBLANGID(right);
}

// Behind the entries of the same language, which keeps them in the order of discovery.
DWORD InsertionIndex(const EntryArray& array, LANGID id) noexcept
{
    DWORD index = 0;
    while (index < array.Count() && !IsOrderedAfter(LanguageOf(array.Element(index)), id)) ++index;
    return index;
}

bool LoadTexts(const EntryArray& array, BYTE* element, HMODULE library) noexcept
{
    for (const Field& field : kTextFields)
    {
        if (!array.Holds(field.offset, field.bytes)) continue;
        const int length = ::LoadStringW(
            library, field.string, TextAt(element, field.offset), static_cast<int>(field.bytes / sizeof(wchar_t)));
        if (length <= 0) return false;
        if (field.string == ARVMUI_STRING_LOCALE_TAG) array.StoreTagLength(element, static_cast<DWORD>(length));
    }
    return true;
}

struct FolderWalk
{
    const ResourcePathFormat<wchar_t>& format;
    EntryArray& array;
};

// A folder without a readable resource library is left out.
DWORD ARVMUI_CALLBACK AddFolder(const wchar_t* folderName, void* context)
{
    const FolderWalk& walk = *static_cast<const FolderWalk*>(context);
    EntryArray& array = walk.array;

    PathBuffer<wchar_t> path;
    if (!walk.format.Format(folderName, path)) return 0;
    const UniqueLibrary library(::LoadLibraryExW(path, nullptr, LOAD_LIBRARY_AS_DATAFILE));
    if (!library) return 0;

    LANGID id = 0;
    if (!array.Reserve(1) || !LoadLanguageId(library.Get(), id)) return 0;

    BYTE* const element = array.Insert(InsertionIndex(array, id));
    StoreLanguage(element, id);
    // Deliberate: an entry that lacks a text stays where it was inserted and is not counted, so that
    // the last entry falls outside the count instead.
    if (LoadTexts(array, element, library.Get())) array.Raise(1);
    return 0;
}

// The English resource library: the process's own where it is English, else one that `loaded` owns.
HMODULE FindEnglishLibrary(LANGID own, UniqueLibrary& loaded) noexcept
{
    const LibraryDescriptor& descriptor = Descriptor();
    if (own == kDefaultLanguage && descriptor.resourceLibrary) return descriptor.resourceLibrary;
    // Ignored: without it the guard stays empty.
    ARVMUI_LoadResourceLibraryW(descriptor.module, nullptr, MAKEINTRESOURCEW(kDefaultLanguage), loaded.Slot());
    return loaded.Get();
}

void LoadNameOrKeyword(HMODULE library, const KeywordName& name, wchar_t* text, size_t bytes) noexcept
{
    const int capacity = static_cast<int>(bytes / sizeof(wchar_t));
    // Ignored: the length, as every keyword fits.
    if (::LoadStringW(library, name.string, text, capacity) <= 0)
        CopyCut(text, static_cast<size_t>(capacity), name.keyword);
}

bool AddKeywords(EntryArray& array) noexcept
{
    const LANGID own = ARVMUI_GetLangID(nullptr);
    UniqueLibrary loaded;
    const HMODULE english = FindEnglishLibrary(own, loaded);
    constexpr DWORD kCount = ARRAYSIZE(kKeywords);
    if (!english || !array.Reserve(kCount)) return false;

    const HMODULE resources = Descriptor().resourceLibrary ? Descriptor().resourceLibrary : english;
    for (const KeywordName& name : kKeywords)
    {
        BYTE* const element = array.Insert(array.Count());
        StoreLanguage(element, own);
        array.StoreTagLength(element, static_cast<DWORD>(CopyCut(TextAt(element, offsetof(LocaleEntry, Locale)),
                                          ARVMUI_TAG_CHARS, name.keyword)));
        LoadNameOrKeyword(
            resources, name, TextAt(element, offsetof(LocaleEntry, NativeName)), sizeof(LocaleEntry::NativeName));
        LoadNameOrKeyword(
            english, name, TextAt(element, offsetof(LocaleEntry, EnglishName)), sizeof(LocaleEntry::EnglishName));
        array.Raise(1);
    }
    return true;
}

}  // namespace

BOOL EnumInstalledLocales(size_t elementSize, void** entries, DWORD* count) noexcept
{
    if (elementSize < sizeof(LANGID)) return FALSE;  // the order is by language
    ResourcePathFormat<wchar_t> format;
    if (!format.Build(Descriptor().module, nullptr)) return FALSE;

    EntryArray array(elementSize);
    FolderWalk walk = {format, array};
    // Ignored: the walk is never stopped, and no folder at all gives no entry.
    ARVMUI_EnumResourceFoldersW(Descriptor().module, AddFolder, &walk);
    if (elementSize == kShortEntryBytes && !AddKeywords(array)) return FALSE;

    *count = array.Count();
    *entries = array.Release();
    return TRUE;
}

}  // namespace arvmui
