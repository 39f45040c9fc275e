// The texts of one language: a resource library and what is read from it.
#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

class Texts
{
public:
    // Takes over the library.
    explicit Texts(HMODULE library) : library_(library) {}
    Texts(Texts&& other) noexcept : library_(std::exchange(other.library_, nullptr)) {}
    ~Texts()
    {
        if (library_ != nullptr) ::FreeLibrary(library_);
    }

    // For menus, accelerators and dialogs, which Windows loads itself.
    HMODULE Library() const { return library_; }

    std::wstring LocaleTag() const;

    // Empty where there is no such text.
    std::wstring Get(UINT id) const;

    // The text with %1 and %2 filled in; unlike printf's, these let a translator change the order.
    std::wstring Fill(UINT id, const std::wstring& first, const std::wstring& second = {}) const;

private:
    HMODULE library_;
};

// The texts of this program in every language that is installed: the user's first, then the others.
// Empty where none could be loaded at all.
std::vector<Texts> LoadLanguages();
