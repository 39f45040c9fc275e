#include "support/dialog_resources.h"

#include <stdexcept>
#include <string>

namespace arvmui_test
{
namespace
{

constexpr WORD kNeutral = MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL);

bool CopyDialog(HANDLE update, HMODULE source, WORD dialog)
{
    const HRSRC place = ::FindResourceW(source, MAKEINTRESOURCEW(dialog), RT_DIALOG);
    if (!place) return false;
    void* const bytes = ::LockResource(::LoadResource(source, place));
    return bytes
           && ::UpdateResourceW(
               update, RT_DIALOG, MAKEINTRESOURCEW(dialog), kNeutral, bytes, ::SizeofResource(source, place));
}

}  // namespace

void CopyDialogs(
    const std::filesystem::path& file, const std::filesystem::path& source, const std::vector<WORD>& dialogs)
{
    const HMODULE library = ::LoadLibraryExW(source.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    const HANDLE update = ::BeginUpdateResourceW(file.c_str(), FALSE);
    bool done = library != nullptr && update != nullptr;
    for (const WORD dialog : dialogs) done = done && CopyDialog(update, library, dialog);
    if (update) done = ::EndUpdateResourceW(update, done ? FALSE : TRUE) && done;
    if (library) ::FreeLibrary(library);
    if (!done) throw std::runtime_error("dialogs not written: " + std::to_string(::GetLastError()));
}

}  // namespace arvmui_test
