// A copy of the DLL with chosen resource libraries in a folder of its own, so that a test decides what
// the library finds beside itself.
#pragma once

#include "support/temporary_folder.h"

#include <filesystem>
#include <string>

namespace arvmui_test
{

class PrivateInstallation
{
public:
    // `folder` lies below the temporary folder; empty for that one itself.
    explicit PrivateInstallation(const std::wstring& folder = L"") : folder_(folder)
    {
        Add(L"arvmui64.dll", L"arvmui64.dll");
    }

    // Copies a file of the program folder.
    std::wstring Add(const std::wstring& name, const std::wstring& newName) const
    {
        return temporary_.CopyIn(TestProgramFolder() / name, (std::filesystem::path(folder_) / newName).wstring())
            .wstring();
    }

    void AddLocale(const std::wstring& source, const std::wstring& locale) const
    {
        Add(L"resource/" + source + L"/arvmuiUI.DLL", L"resource/" + locale + L"/arvmuiUI.DLL");
    }

    std::filesystem::path Root() const { return temporary_.Path(); }
    std::filesystem::path Folder() const { return temporary_.Path() / folder_; }
    std::wstring Library() const { return (Folder() / L"arvmui64.dll").wstring(); }

private:
    TemporaryFolder temporary_;
    std::wstring folder_;
};

}  // namespace arvmui_test
