// The DLL with resource libraries of the test's own beside it, and text files for it to read.
#pragma once

#include "arvmui.h"
#include "support/byte_file.h"
#include "support/module_patch.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace arvmui_test
{

// A copy of the DLL with resource libraries of the test's own beside it.
class LibraryCopy
{
public:
    explicit LibraryCopy(const TemporaryFolder& folder)
    {
        wchar_t path[MAX_PATH] = {};
        ::GetModuleFileNameW(LibraryUnderTest(), path, MAX_PATH);
        module_ = ::LoadLibraryW(folder.CopyIn(path, L"copied.dll").c_str());
        if (module_)
        {
            read_ = reinterpret_cast<decltype(read_)>(
                reinterpret_cast<void*>(::GetProcAddress(module_, "ARVMUI_ReadTextFileW")));
        }
    }
    ~LibraryCopy()
    {
        if (module_) ::FreeLibrary(module_);
    }
    LibraryCopy(const LibraryCopy&) = delete;
    LibraryCopy& operator=(const LibraryCopy&) = delete;

    std::wstring Read(HMODULE module, const wchar_t* locales) const
    {
        WCHAR* text = nullptr;
        if (!read_ || !read_(module, L"notes.txt", locales, &text)) return L"<not read>";
        const std::wstring result = text;
        ARVMUI_free(text);
        return result;
    }

private:
    HMODULE module_ = nullptr;
    decltype(&ARVMUI_ReadTextFileW) read_ = nullptr;
};

class TextLanguageTest : public testing::Test
{
protected:
    void AddLanguage(const std::wstring& tag, LANGID language) const
    {
        wchar_t number[16] = {};
        std::swprintf(number, 16, L"0x%04X", static_cast<unsigned>(language));
        WriteResourceImage(folder_.Path() / L"resource" / tag / L"copiedUI.DLL", {{1, tag}, {2, number}});
    }

    void WriteText(const std::wstring& tag, const std::string& bytes) const
    {
        WriteBytes(folder_.Path() / L"resource" / tag / L"notes.txt", bytes);
    }

    std::wstring Read(const wchar_t* locales) const
    {
        const LibraryCopy library(folder_);
        const LoadedModule module(folder_.Path() / L"program.dll");
        return library.Read(module.Get(), locales);
    }

    const TemporaryFolder folder_;
};

}  // namespace arvmui_test
