// A module with resource libraries in a folder of one test's own, and a process that has no locale list yet
// and shows no boxes for errors.
#pragma once

#include "arvmui.hpp"
#include "support/byte_file.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace arvmui_test
{

class TranslatedModule
{
public:
    TranslatedModule() : module_(folder_.Path() / L"editor64.dll")
    {
        for (auto& hint : ARVMUI_GetDescriptor()->LocaleHintTable) hint[0] = L'\0';
    }

    HMODULE Get() const { return module_.Get(); }
    std::filesystem::path Folder() const { return folder_.Path(); }

    // The path of a file in a locale's folder; without a name, of the resource library.
    std::filesystem::path File(std::wstring_view locale, std::wstring_view name = L"editorUI.DLL") const
    {
        return folder_.Path() / L"resource" / locale / name;
    }
    void AddLibrary(std::wstring_view locale, const Strings& strings) const
    {
        WriteResourceImage(File(locale), strings);
    }
    void AddFile(std::wstring_view locale, std::wstring_view name, std::string_view bytes) const
    {
        WriteBytes(File(locale, name), bytes);
    }

private:
    arvmui::MessagePopups quiet_{false};
    TemporaryFolder folder_;
    LoadedModule module_;
};

// Whether a library is loaded in this process.
inline bool IsLoaded(const std::filesystem::path& path)
{
    return ::GetModuleHandleW(path.c_str()) != nullptr;
}

}  // namespace arvmui_test
