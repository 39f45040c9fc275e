#include "resources/process_state.h"

#include <cstring>
#include <cwchar>

namespace arvmui
{

// Other programs of the product family read the descriptor by these offsets.
static_assert(offsetof(LibraryDescriptor, module) == 0);
static_assert(offsetof(LibraryDescriptor, resourceLibrary) == 8);
static_assert(offsetof(LibraryDescriptor, localeMapping) == 16);
static_assert(offsetof(LibraryDescriptor, tlsIndex) == 24);
static_assert(offsetof(LibraryDescriptor, LocaleHintTable) == 28);
static_assert(sizeof(LibraryDescriptor::LocaleHintTable) == sizeof(wchar_t) * 4 * 256);
static_assert(offsetof(LibraryDescriptor, keyboardLanguageCount) == 2076);
static_assert(offsetof(LibraryDescriptor, keyboardLanguages) == 2080);
static_assert(offsetof(LibraryDescriptor, installerContext) == 2088);
static_assert(offsetof(LibraryDescriptor, showMessagePopup) == 2128);
static_assert(sizeof(LibraryDescriptor) == 2136);

namespace
{

constinit LibraryDescriptor g_descriptor = {};

}  // namespace

LibraryDescriptor& Descriptor() noexcept
{
    return g_descriptor;
}

const wchar_t* GetLocaleHint(const LibraryDescriptor& descriptor, unsigned slot) noexcept
{
    return slot < ARVMUI_HINT_COUNT ? descriptor.LocaleHintTable[slot] : L"";
}

void SetLocaleHint(LibraryDescriptor& descriptor, unsigned slot, const wchar_t* text) noexcept
{
    if (slot >= ARVMUI_HINT_COUNT) return;

    wchar_t* const destination = descriptor.LocaleHintTable[slot];
    const size_t length = text ? ::wcsnlen(text, ARVMUI_HINT_CHARS - 1) : 0;
    if (length != 0) std::wmemmove(destination, text, length);
    destination[length] = L'\0';
}

void* GetInstallerContext(LibraryDescriptor& descriptor) noexcept
{
    return descriptor.installerContext;
}

void SetInstallerContext(LibraryDescriptor& descriptor, const void* block) noexcept
{
    if (block)
        std::memmove(descriptor.installerContext, block, sizeof(descriptor.installerContext));
    else
        std::memset(descriptor.installerContext, 0, sizeof(descriptor.installerContext));
}

BOOL HasKeyboardLanguage(const LibraryDescriptor& descriptor, LANGID language, DWORD* position) noexcept
{
    const WORD primary = PRIMARYLANGID(language);
    DWORD low = 0;
    DWORD high = descriptor.keyboardLanguageCount;
    BOOL found = FALSE;
    while (low < high)  // everything before low is smaller, everything from high on is not
    {
        const DWORD middle = low + (high - low) / 2;
        if (descriptor.keyboardLanguages[middle] < primary)
        {
            low = middle + 1;
            continue;
        }
        high = middle;
        if (descriptor.keyboardLanguages[middle] == primary) found = TRUE;
    }
    if (position) *position = low;
    return found;
}

void* GetThreadValue(const LibraryDescriptor& descriptor) noexcept
{
    if (descriptor.tlsIndex == TLS_OUT_OF_INDEXES) return NoThreadSlot();
    return ::TlsGetValue(descriptor.tlsIndex);
}

BOOL SetThreadValue(const LibraryDescriptor& descriptor, void* value) noexcept
{
    if (descriptor.tlsIndex == TLS_OUT_OF_INDEXES) return FALSE;
    return ::TlsSetValue(descriptor.tlsIndex, value);
}

}  // namespace arvmui

LibraryDescriptor* ARVMUI_CALL ARVMUI_GetDescriptor(void)
{
    return &arvmui::Descriptor();
}
