#include "build/portable_executable.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace arvmui::test
{
PortableExecutable::PortableExecutable(const std::wstring& file)
{
    std::ifstream stream(std::filesystem::path(file), std::ios::binary);
    if (!stream) throw std::runtime_error("file cannot be opened");
    bytes_.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());

    const auto dosHeader = ReadAt<IMAGE_DOS_HEADER>(0);
    if (dosHeader.e_magic != IMAGE_DOS_SIGNATURE) throw std::runtime_error("no executable");
    const auto start = static_cast<std::size_t>(dosHeader.e_lfanew);
    headers_ = ReadAt<IMAGE_NT_HEADERS64>(start);
    if (headers_.Signature != IMAGE_NT_SIGNATURE || headers_.FileHeader.Machine != IMAGE_FILE_MACHINE_AMD64)
        throw std::runtime_error("no 64-bit executable");

    const std::size_t firstSection =
        start + offsetof(IMAGE_NT_HEADERS64, OptionalHeader) + headers_.FileHeader.SizeOfOptionalHeader;
    for (std::size_t index = 0; index < headers_.FileHeader.NumberOfSections; ++index)
        sections_.push_back(ReadAt<IMAGE_SECTION_HEADER>(firstSection + index * sizeof(IMAGE_SECTION_HEADER)));
}

bool PortableExecutable::HasDirectory(unsigned directory) const
{
    return headers_.OptionalHeader.DataDirectory[directory].Size != 0;
}

const IMAGE_SECTION_HEADER* PortableExecutable::FindSection(const std::string& name) const
{
    for (const IMAGE_SECTION_HEADER& section : sections_)
    {
        char sectionName[IMAGE_SIZEOF_SHORT_NAME + 1]{};
        std::memcpy(sectionName, section.Name, IMAGE_SIZEOF_SHORT_NAME);
        if (name == sectionName) return &section;
    }
    return nullptr;
}

std::set<std::string> PortableExecutable::Exports() const
{
    std::set<std::string> names;
    if (!HasDirectory(IMAGE_DIRECTORY_ENTRY_EXPORT)) return names;
    const auto directory = ReadAtAddress<IMAGE_EXPORT_DIRECTORY>(
        headers_.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress);

    std::set<DWORD> namedFunctions;
    for (DWORD index = 0; index < directory.NumberOfNames; ++index)
    {
        namedFunctions.insert(ReadAtAddress<WORD>(directory.AddressOfNameOrdinals + index * DWORD{sizeof(WORD)}));
        const auto nameAddress = ReadAtAddress<DWORD>(directory.AddressOfNames + index * DWORD{sizeof(DWORD)});
        names.insert(TextAtAddress(nameAddress));
    }
    for (DWORD index = 0; index < directory.NumberOfFunctions; ++index)
    {
        const auto function = ReadAtAddress<DWORD>(directory.AddressOfFunctions + index * DWORD{sizeof(DWORD)});
        if (function != 0 && !namedFunctions.contains(index))
            names.insert("#" + std::to_string(directory.Base + index));
    }
    return names;
}

std::set<std::string> PortableExecutable::ImportedDlls() const
{
    std::set<std::string> dlls;
    const auto add = [&](DWORD nameAddress)
    {
        std::string name = TextAtAddress(nameAddress);
        std::transform(name.begin(), name.end(), name.begin(),
            [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
        dlls.insert(name);
    };

    const auto& directories = headers_.OptionalHeader.DataDirectory;
    if (HasDirectory(IMAGE_DIRECTORY_ENTRY_IMPORT))
    {
        DWORD address = directories[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
        for (;; address += DWORD{sizeof(IMAGE_IMPORT_DESCRIPTOR)})
        {
            const auto descriptor = ReadAtAddress<IMAGE_IMPORT_DESCRIPTOR>(address);
            if (descriptor.Name == 0) break;
            add(descriptor.Name);
        }
    }
    if (HasDirectory(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT))
    {
        DWORD address = directories[IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT].VirtualAddress;
        for (;; address += DWORD{sizeof(IMAGE_DELAYLOAD_DESCRIPTOR)})
        {
            const auto descriptor = ReadAtAddress<IMAGE_DELAYLOAD_DESCRIPTOR>(address);
            if (descriptor.DllNameRVA == 0) break;
            add(descriptor.DllNameRVA);
        }
    }
    return dlls;
}

template <typename Record>
Record PortableExecutable::ReadAt(std::size_t offset) const
{
    if (offset > bytes_.size() || bytes_.size() - offset < sizeof(Record))
        throw std::runtime_error("executable is cut off");
    Record record;
    std::memcpy(&record, bytes_.data() + offset, sizeof(Record));
    return record;
}

std::string PortableExecutable::TextAtAddress(DWORD address) const
{
    std::string text;
    for (std::size_t offset = OffsetOfAddress(address);; ++offset)
    {
        const char letter = ReadAt<char>(offset);
        if (letter == '\0') return text;
        text += letter;
    }
}

std::size_t PortableExecutable::OffsetOfAddress(DWORD address) const
{
    for (const IMAGE_SECTION_HEADER& section : sections_)
    {
        if (address >= section.VirtualAddress && address - section.VirtualAddress < section.SizeOfRawData)
            return std::size_t{section.PointerToRawData} + (address - section.VirtualAddress);
    }
    throw std::runtime_error("address lies in no section");
}
}  // namespace arvmui::test
