#include "foundation/diagnostic_log.h"
#include "foundation/heap.h"
#include "foundation/process_info.h"
#include "locale/locale_search.h"
#include "resources/locale_record.h"
#include "resources/process_state.h"

#include <cstring>

// Attach decides which language the process speaks, and detach gives everything back. Both run
// under the loader's lock: nothing here waits or starts a thread, and attach never fails.

namespace arvmui
{
namespace
{

constexpr wchar_t kLastResortList[] = L"user,system,uilang,en,de,es,fr,ja";

// Collects the primary languages of the installed keyboards, ascending and each once. Where memory
// is lacking the set stays as far as it got.
void RecordKeyboardLanguages(LibraryDescriptor& descriptor) noexcept
{
    const int wanted = ::GetKeyboardLayoutList(0, nullptr);
    HeapBlock<HKL> layouts;
    if (wanted <= 0 || !layouts.Resize(static_cast<size_t>(wanted))) return;
    const int fetched = ::GetKeyboardLayoutList(wanted, layouts.Get());
    const int count = fetched < wanted ? fetched : wanted;

    for (int i = 0; i < count; ++i)
    {
        const LANGID id = LOWORD(reinterpret_cast<ULONG_PTR>(layouts.Get()[i]));
        DWORD position = 0;
        if (HasKeyboardLanguage(descriptor, id, &position)) continue;

        const size_t bytes = (descriptor.keyboardLanguageCount + 1) * sizeof(WORD);
        void* const block = ARVMUI_realloc(descriptor.keyboardLanguages, bytes);
        if (!block) return;
        descriptor.keyboardLanguages = static_cast<WORD*>(block);
        WORD* const place = descriptor.keyboardLanguages + position;
        std::memmove(place + 1, place, (descriptor.keyboardLanguageCount - position) * sizeof(WORD));
        *place = PRIMARYLANGID(id);
        ++descriptor.keyboardLanguageCount;
    }
}

void InitialiseDescriptor(LibraryDescriptor& descriptor, HMODULE module) noexcept
{
    descriptor = {};
    descriptor.module = module;
    descriptor.tlsIndex = ::TlsAlloc();
    // Ignored: without a slot there is nothing to set.
    SetThreadValue(descriptor, nullptr);
    RecordKeyboardLanguages(descriptor);
}

void DecideLocale(LibraryDescriptor& descriptor) noexcept
{
    wchar_t list[kExpandedListChars];
    if (*GetLocaleHint(descriptor, HINT_COMMAND_LINE) == L'\0' && ReadParentLocale(list, kExpandedListChars) != 0)
        SetLocaleHint(descriptor, HINT_COMMAND_LINE, list);

    const bool decided = ExpandLocaleList(nullptr, list, kExpandedListChars) != 0;
    if (decided) SetLocaleHint(descriptor, HINT_COMMAND_LINE, list);

    HMODULE* const library = &descriptor.resourceLibrary;
    if (ARVMUI_LoadResourceLibraryW(descriptor.module, nullptr, decided ? list : nullptr, library)
        || ARVMUI_LoadResourceLibraryW(descriptor.module, nullptr, kLastResortList, library))
    {
        ARVMUI_SetMessagePopup(TRUE, nullptr);
    }
    else
    {
        LogLineW(
            L"DllMain(%p,DLL_PROCESS_ATTACH): Failed to load ARVMUIUI.DLL: %lu", descriptor.module, ::GetLastError());
    }
    if (decided) descriptor.localeMapping = PublishLocale(list);
}

void Attach(HMODULE module) noexcept
{
    LibraryDescriptor& descriptor = Descriptor();
    InitialiseDescriptor(descriptor, module);
    // Ignored: parsing always succeeds.
    ARVMUI_ParseCommandLineW(::GetCommandLineW());
    // Inside the installer the language is decided later, by the package.
    if (!IsHostedByInstaller(module)) DecideLocale(descriptor);
}

void Detach() noexcept
{
    LibraryDescriptor& descriptor = Descriptor();
    // Ignored in what follows: nothing can be done any more about what does not close.
    if (descriptor.localeMapping) ::CloseHandle(descriptor.localeMapping);
    descriptor.localeMapping = nullptr;
    if (descriptor.resourceLibrary) ::FreeLibrary(descriptor.resourceLibrary);
    descriptor.resourceLibrary = nullptr;
    if (descriptor.tlsIndex != TLS_OUT_OF_INDEXES) ::TlsFree(descriptor.tlsIndex);
    ARVMUI_free(descriptor.keyboardLanguages);
    descriptor = {};
}

}  // namespace
}  // namespace arvmui

// The C linkage is the loader's; no header declares the function.
extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*)
{
    switch (reason)
    {
        case DLL_PROCESS_ATTACH: arvmui::Attach(module); break;
        case DLL_PROCESS_DETACH: arvmui::Detach(); break;
        case DLL_THREAD_ATTACH:
            // Ignored: without a slot there is nothing to set.
            arvmui::SetThreadValue(arvmui::Descriptor(), nullptr);
            break;
        default: break;
    }
    return TRUE;
}
