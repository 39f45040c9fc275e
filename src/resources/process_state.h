// Owns the one LibraryDescriptor of the process and the plain access to it. Decides nothing: what
// is stored, and when, is the business of attach, the locale search and the installer actions.
#pragma once

#include "arvmui.h"

#include <cstddef>

namespace arvmui
{

// The descriptor of this process; all zero while the library is not attached.
LibraryDescriptor& Descriptor() noexcept;

// Marks a hint slot that has been looked at and gave nothing. As a list it has no items.
inline constexpr wchar_t kNothingFound[] = L"\t";

// Text of a hint slot; an empty string for a slot that does not exist.
const wchar_t* GetLocaleHint(const LibraryDescriptor& descriptor, unsigned slot) noexcept;

// Stores at most 255 characters; null stores an empty string; a slot that does not exist is ignored.
void SetLocaleHint(LibraryDescriptor& descriptor, unsigned slot, const wchar_t* text) noexcept;

// What the descriptor's 40 bytes hold while an installation chooses its language: what the language
// dialog is to show. All zero at any other time.
struct InstallerContext
{
    void* reserved;  // null
    HICON smallIcon;
    HICON largeIcon;
    DWORD localeCount;
    const LocaleEntry* locales;
};
static_assert(sizeof(InstallerContext) == ARVMUI_INSTALLER_CONTEXT_BYTES);

// The installer context, 40 bytes.
void* GetInstallerContext(LibraryDescriptor& descriptor) noexcept;

// Copies 40 bytes; null zeroes the context.
void SetInstallerContext(LibraryDescriptor& descriptor, const void* block) noexcept;

// Whether a keyboard of the identifier's primary language was installed at attach. `position`, if
// given, receives its index in keyboardLanguages or the index where it would be inserted.
BOOL HasKeyboardLanguage(const LibraryDescriptor& descriptor, LANGID language, DWORD* position) noexcept;

// What GetThreadValue answers when the library could not get a thread-local slot.
inline void* NoThreadSlot() noexcept
{
    return reinterpret_cast<void*>(~static_cast<ULONG_PTR>(0));
}

// The calling thread's value in the library's thread-local slot.
void* GetThreadValue(const LibraryDescriptor& descriptor) noexcept;

// FALSE, storing nothing, without a slot.
BOOL SetThreadValue(const LibraryDescriptor& descriptor, void* value) noexcept;

}  // namespace arvmui
