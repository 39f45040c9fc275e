#include "file_bytes.h"
#include "translation_checks.h"

#include <windows.h>

#include <cstring>

namespace
{

// A record of the file; false where the file ends before it does.
template <typename T>
bool ReadAt(const std::string& bytes, std::size_t offset, T& record)
{
    if (offset > bytes.size() || sizeof(T) > bytes.size() - offset) return false;
    std::memcpy(&record, bytes.data() + offset, sizeof(T));
    return true;
}

bool HasCode(const std::string& bytes, std::size_t sections, WORD count)
{
    for (WORD i = 0; i < count; ++i)
    {
        IMAGE_SECTION_HEADER section;
        if (!ReadAt(bytes, sections + i * sizeof(section), section)) return false;
        if ((section.Characteristics & (IMAGE_SCN_CNT_CODE | IMAGE_SCN_MEM_EXECUTE)) && section.SizeOfRawData != 0)
            return true;
    }
    return false;
}

}  // namespace

void CheckImage(const std::filesystem::path& path, Findings& findings)
{
    const std::string bytes = ReadFileBytes(path);
    IMAGE_DOS_HEADER dos;
    IMAGE_NT_HEADERS64 headers;
    if (!ReadAt(bytes, 0, dos) || dos.e_magic != IMAGE_DOS_SIGNATURE
        || !ReadAt(bytes, static_cast<std::size_t>(dos.e_lfanew), headers) || headers.Signature != IMAGE_NT_SIGNATURE)
    {
        findings.Add(path, 0, "image", "the file is no Windows library");
        return;
    }
    if (headers.OptionalHeader.Magic != IMAGE_NT_OPTIONAL_HDR64_MAGIC)
    {
        findings.Add(path, 0, "image", "the file is a 32-bit library, which a 64-bit program cannot load");
        return;
    }
    if (headers.OptionalHeader.AddressOfEntryPoint != 0)
        findings.Add(path, 0, "image", "the file has an entry point, so loading it runs code");
    if (headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].Size != 0)
        findings.Add(path, 0, "image", "the file imports functions, so loading it loads other libraries");
    const std::size_t sections = static_cast<std::size_t>(dos.e_lfanew) + offsetof(IMAGE_NT_HEADERS64, OptionalHeader)
                                 + headers.FileHeader.SizeOfOptionalHeader;
    if (HasCode(bytes, sections, headers.FileHeader.NumberOfSections))
        findings.Add(path, 0, "image", "the file holds code");
}
