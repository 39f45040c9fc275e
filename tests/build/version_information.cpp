#include "build/version_information.h"

#include <winver.h>

#include <iomanip>
#include <sstream>
#include <vector>

namespace arvmui::test
{
VersionInformation ReadVersionInformation(const std::wstring& file)
{
    VersionInformation information;
    DWORD unused = 0;
    const DWORD size = ::GetFileVersionInfoSizeW(file.c_str(), &unused);
    if (size == 0) return information;
    std::vector<char> block(size);
    if (!::GetFileVersionInfoW(file.c_str(), 0, size, block.data())) return information;

    void* value = nullptr;
    UINT length = 0;
    if (!::VerQueryValueW(block.data(), L"\\", &value, &length) || length < sizeof(VS_FIXEDFILEINFO))
        return information;
    information.fixed = *static_cast<const VS_FIXEDFILEINFO*>(value);
    information.present = true;

    if (!::VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &value, &length) || length < 2 * sizeof(WORD))
        return information;
    const WORD* const translation = static_cast<const WORD*>(value);
    std::wostringstream folder;
    folder << L"\\StringFileInfo\\" << std::hex << std::setfill(L'0') << std::setw(4) << translation[0] << std::setw(4)
           << translation[1] << L'\\';
    for (const wchar_t* name : {L"CompanyName", L"FileDescription", L"FileVersion", L"InternalName",
             L"OriginalFilename", L"ProductName", L"ProductVersion"})
    {
        if (::VerQueryValueW(block.data(), (folder.str() + name).c_str(), &value, &length) && length != 0)
            information.texts[name] = static_cast<const wchar_t*>(value);
    }
    return information;
}
}  // namespace arvmui::test
