#pragma once

#include "arvmui.h"
#include "foundation/heap.h"
#include "locale/installed_locales.h"

// The rows of the settings dialog: the installed locales and those of the stored list, divided into the
// chosen ones, in the order of preference, and the others.

namespace arvmui
{

// `chosen` and `available` hold row indices. Together they hold every row once, so the free tail of
// each has room for a selection among the items of the other, and serves for reading it.
struct PreferredLocales
{
    DWORD count;  // rows; both index arrays have room for as many
    HeapBlock<ShortLocaleEntry> rows;
    DWORD chosenCount;
    HeapBlock<DWORD> chosen;  // in the order of preference
    DWORD availableCount;
    HeapBlock<DWORD> available;  // ascending

    // FALSE when no locale is installed.
    bool ReadInstalled() noexcept;

    // Room for the indices of the rows; FALSE when memory is lacking, as below.
    bool Reserve() noexcept;

    // Chooses what is stored under a root key. Locales that are not installed get rows, so that saving
    // keeps them.
    bool ChooseStored(HKEY store) noexcept;

    // The chosen ones as a list to store.
    bool FormatChosen(HeapBlock<wchar_t>& text) const noexcept;

    // Appends a row to the chosen ones; the available ones are rebuilt when all are.
    void Choose(DWORD row) noexcept { chosen.Get()[chosenCount++] = row; }
    void RebuildAvailable() noexcept;

    // Of the chosen ones, by position.
    void Swap(DWORD first, DWORD second) noexcept;
    void Remove(DWORD position) noexcept;

private:
    bool IsChosen(DWORD row) const noexcept;
    bool AddRow(const wchar_t* locale) noexcept;
    bool ChooseLocale(const wchar_t* locale) noexcept;
};

}  // namespace arvmui
