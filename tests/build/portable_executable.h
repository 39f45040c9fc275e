// Reads the headers of a program or DLL file, without loading it.
#pragma once

#include <windows.h>

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace arvmui::test
{
class PortableExecutable
{
public:
    // Throws std::runtime_error when the file is missing or no 64-bit executable.
    explicit PortableExecutable(const std::wstring& file);

    std::size_t FileSize() const { return bytes_.size(); }
    DWORD EntryPoint() const { return headers_.OptionalHeader.AddressOfEntryPoint; }
    WORD DllCharacteristics() const { return headers_.OptionalHeader.DllCharacteristics; }
    bool IsDll() const { return (headers_.FileHeader.Characteristics & IMAGE_FILE_DLL) != 0; }
    // Whether the loader may put the file at another address than the one it was linked for.
    bool IsMovable() const { return (headers_.FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED) == 0; }
    bool HasDirectory(unsigned directory) const;
    const IMAGE_SECTION_HEADER* FindSection(const std::string& name) const;
    const std::vector<IMAGE_SECTION_HEADER>& Sections() const { return sections_; }

    // Names of all exports; one that has only a number appears as "#number".
    std::set<std::string> Exports() const;
    // Upper-case names of the DLLs that the loader brings in.
    std::set<std::string> ImportedDlls() const;

private:
    template <typename Record>
    Record ReadAt(std::size_t offset) const;
    std::string TextAtAddress(DWORD address) const;
    std::size_t OffsetOfAddress(DWORD address) const;
    template <typename Record>
    Record ReadAtAddress(DWORD address) const
    {
        return ReadAt<Record>(OffsetOfAddress(address));
    }

    std::vector<char> bytes_;
    IMAGE_NT_HEADERS64 headers_{};
    std::vector<IMAGE_SECTION_HEADER> sections_;
};
}  // namespace arvmui::test
