#include "support/resource_image.h"

#include <cstring>
#include <stdexcept>
#include <utility>
#include <vector>

namespace arvmui_test
{
namespace
{

constexpr DWORD kFileAlignment = 0x200;
constexpr DWORD kSectionAlignment = 0x1000;
constexpr DWORD kResourceAddress = kSectionAlignment;  // of the only section
constexpr unsigned kStringsInBlock = 16;
constexpr DWORD kStringType = 6;  // RT_STRING as a number
constexpr DWORD kIsFolder = 0x80000000;

using Bytes = std::vector<BYTE>;

DWORD RoundUp(size_t value, DWORD alignment)
{
    return static_cast<DWORD>((value + alignment - 1) / alignment * alignment);
}

template <typename Type>
void Append(Bytes& bytes, const Type& value)
{
    const BYTE* const first = reinterpret_cast<const BYTE*>(&value);
    bytes.insert(bytes.end(), first, first + sizeof(value));
}

// Strings are stored in blocks of sixteen, each a length and the characters.
std::map<DWORD, Bytes> MakeBlocks(const Strings& strings)
{
    std::map<DWORD, Bytes> blocks;
    for (const auto& [id, text] : strings) blocks[id / kStringsInBlock + 1];
    for (auto& [number, block] : blocks)
    {
        const unsigned first = (number - 1) * kStringsInBlock;
        for (unsigned id = first; id < first + kStringsInBlock; ++id)
        {
            const auto found = strings.find(id);
            const std::wstring text = found == strings.end() ? std::wstring() : found->second;
            Append(block, static_cast<WORD>(text.size()));
            for (const wchar_t character : text) Append(block, character);
        }
    }
    return blocks;
}

void AppendFolder(Bytes& bytes, size_t entries)
{
    IMAGE_RESOURCE_DIRECTORY folder = {};
    folder.NumberOfIdEntries = static_cast<WORD>(entries);
    Append(bytes, folder);
}

void AppendFolderEntry(Bytes& bytes, DWORD id, DWORD target)
{
    Append(bytes, id);
    Append(bytes, target);
}

// Three levels of folders: type, block, language (neutral).
Bytes MakeResourceSection(const Strings& strings)
{
    const std::map<DWORD, Bytes> blocks = MakeBlocks(strings);
    const size_t count = blocks.size();
    constexpr size_t kFolder = sizeof(IMAGE_RESOURCE_DIRECTORY);
    constexpr size_t kEntry = sizeof(IMAGE_RESOURCE_DIRECTORY_ENTRY);
    constexpr size_t kData = sizeof(IMAGE_RESOURCE_DATA_ENTRY);
    const size_t types = kFolder + kEntry;
    const size_t languages = types + kFolder + count * kEntry;
    const size_t data = languages + count * types;
    size_t text = data + count * kData;

    Bytes section;
    AppendFolder(section, 1);
    AppendFolderEntry(section, kStringType, static_cast<DWORD>(types) | kIsFolder);
    AppendFolder(section, count);
    size_t index = 0;
    for (const auto& [number, block] : blocks)
        AppendFolderEntry(section, number, static_cast<DWORD>(languages + index++ * types) | kIsFolder);
    for (index = 0; index < count; ++index)
    {
        AppendFolder(section, 1);
        AppendFolderEntry(section, 0, static_cast<DWORD>(data + index * kData));
    }
    for (const auto& [number, block] : blocks)
    {
        IMAGE_RESOURCE_DATA_ENTRY entry = {};
        entry.OffsetToData = static_cast<DWORD>(kResourceAddress + text);
        entry.Size = static_cast<DWORD>(block.size());
        Append(section, entry);
        text += block.size();
    }
    for (const auto& [number, block] : blocks) section.insert(section.end(), block.begin(), block.end());
    return section;
}

Bytes MakeImage(const Strings& strings)
{
    const Bytes resources = MakeResourceSection(strings);
    const DWORD fileBytes = RoundUp(resources.size(), kFileAlignment);

    IMAGE_DOS_HEADER dos = {};
    dos.e_magic = IMAGE_DOS_SIGNATURE;
    dos.e_lfanew = sizeof(dos);

    IMAGE_NT_HEADERS64 headers = {};
    headers.Signature = IMAGE_NT_SIGNATURE;
    headers.FileHeader.Machine = IMAGE_FILE_MACHINE_AMD64;
    headers.FileHeader.NumberOfSections = 1;
    headers.FileHeader.SizeOfOptionalHeader = sizeof(headers.OptionalHeader);
    headers.FileHeader.Characteristics = IMAGE_FILE_EXECUTABLE_IMAGE | IMAGE_FILE_LARGE_ADDRESS_AWARE | IMAGE_FILE_DLL;
    IMAGE_OPTIONAL_HEADER64& optional = headers.OptionalHeader;
    optional.Magic = IMAGE_NT_OPTIONAL_HDR64_MAGIC;
    optional.SizeOfInitializedData = fileBytes;
    optional.ImageBase = 0x180000000;
    optional.SectionAlignment = kSectionAlignment;
    optional.FileAlignment = kFileAlignment;
    optional.MajorOperatingSystemVersion = 6;
    optional.MajorSubsystemVersion = 6;
    optional.SizeOfImage = RoundUp(kResourceAddress + resources.size(), kSectionAlignment);
    optional.SizeOfHeaders = kFileAlignment;
    optional.Subsystem = IMAGE_SUBSYSTEM_WINDOWS_GUI;
    optional.DllCharacteristics = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT;
    optional.NumberOfRvaAndSizes = IMAGE_NUMBEROF_DIRECTORY_ENTRIES;
    optional.DataDirectory[IMAGE_DIRECTORY_ENTRY_RESOURCE] = {kResourceAddress, static_cast<DWORD>(resources.size())};

    IMAGE_SECTION_HEADER section = {};
    std::memcpy(section.Name, ".rsrc", 5);
    section.Misc.VirtualSize = static_cast<DWORD>(resources.size());
    section.VirtualAddress = kResourceAddress;
    section.SizeOfRawData = fileBytes;
    section.PointerToRawData = kFileAlignment;
    section.Characteristics = IMAGE_SCN_CNT_INITIALIZED_DATA | IMAGE_SCN_MEM_READ;

    Bytes image;
    Append(image, dos);
    Append(image, headers);
    Append(image, section);
    image.resize(kFileAlignment);
    image.insert(image.end(), resources.begin(), resources.end());
    image.resize(kFileAlignment + fileBytes);
    return image;
}

}  // namespace

std::wstring LongPath(const std::wstring& path)
{
    return L"\\\\?\\" + path;
}

void WriteResourceImageAtLongPath(const std::wstring& path, const Strings& strings)
{
    const Bytes image = MakeImage(strings);
    const HANDLE file =
        ::CreateFileW(LongPath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    const bool ok = file != INVALID_HANDLE_VALUE
                    && ::WriteFile(file, image.data(), static_cast<DWORD>(image.size()), &written, nullptr)
                    && written == image.size();
    if (file != INVALID_HANDLE_VALUE) ::CloseHandle(file);
    if (!ok) throw std::runtime_error("resource image not written");
}

void WriteResourceImage(const std::filesystem::path& path, const Strings& strings)
{
    std::filesystem::create_directories(path.parent_path());
    WriteResourceImageAtLongPath(path.wstring(), strings);
}

LoadedModule::LoadedModule(
    const std::filesystem::path& path, const Strings& strings, const std::filesystem::path& loadedAs)
{
    WriteResourceImage(path, strings);
    module_ = ::LoadLibraryW(loadedAs.empty() ? path.c_str() : loadedAs.c_str());
    if (!module_) throw std::runtime_error("resource image not loaded: " + std::to_string(::GetLastError()));
}

LoadedModule::~LoadedModule()
{
    ::FreeLibrary(module_);
}

}  // namespace arvmui_test
