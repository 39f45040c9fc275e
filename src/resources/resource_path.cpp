#include "resources/resource_path.h"

#include "foundation/heap.h"

namespace arvmui
{
namespace
{

constexpr DWORD kResourceFolderChars = 10;  // "\resource\" between the module's folder and the locale
constexpr DWORD kPlaceholderChars = 2;      // "%s"

template <typename Char>
Char* SplitModulePathAs(HMODULE module, PathBuffer<Char>& path) noexcept
{
    if (!GetModulePath(module, path)) return nullptr;

    const Char* const backslash = TextCalls<Char>::FindLast(path, '\\');
    if (!backslash)
    {
        ::SetLastError(ERROR_BAD_PATHNAME);
        return nullptr;
    }
    const size_t folderLength = static_cast<size_t>(backslash - path);
    path[folderLength] = Char{};
    return path + folderLength + 1;
}

// -1 when the format does not fit, which is then cut.
template <typename Char>
int FormatPathFormat(const Char* folder, Char* moduleName, const Char* fileName, Char* buffer, DWORD capacity) noexcept
{
    if (fileName)
        return FormatFixed<Char>(buffer, capacity, ARVMUI_TEXT(Char, "%s\\resource\\%%s\\%s"), folder, fileName);

    const Char* const dot = TextCalls<Char>::FindLast(moduleName, '.');
    if (dot) moduleName[dot - moduleName] = Char{};
    return FormatFixed<Char>(buffer, capacity, ARVMUI_TEXT(Char, "%s\\resource\\%%s\\%.6sUI.DLL"), folder, moduleName);
}

template <typename Char>
DWORD WritePathFormatAs(
    HMODULE module, const Char* fileName, Char* buffer, DWORD capacity, DWORD* localeOffset) noexcept
{
    if ((!buffer && capacity != 0) || (fileName && IsIntegerIdentifier(fileName)))
    {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (capacity != 0) buffer[0] = Char{};

    PathBuffer<Char> folder;
    Char* const moduleName = SplitModulePathAs(module, folder);
    if (!moduleName) return 0;

    const int length = capacity != 0 ? FormatPathFormat(folder, moduleName, fileName, buffer, capacity) : -1;
    if (length < 0)
    {
        ::SetLastError(ERROR_BUFFER_OVERFLOW);
        return 0;
    }
    if (localeOffset) *localeOffset = static_cast<DWORD>(TextCalls<Char>::Length(folder)) + kResourceFolderChars;
    return static_cast<DWORD>(length);
}

}  // namespace

DWORD WritePathFormat(
    HMODULE module, const wchar_t* fileName, wchar_t* buffer, DWORD capacity, DWORD* localeOffset) noexcept
{
    return WritePathFormatAs(module, fileName, buffer, capacity, localeOffset);
}

DWORD WritePathFormat(HMODULE module, const char* fileName, char* buffer, DWORD capacity, DWORD* localeOffset) noexcept
{
    return WritePathFormatAs(module, fileName, buffer, capacity, localeOffset);
}

wchar_t* SplitModulePath(HMODULE module, PathBuffer<wchar_t>& path) noexcept
{
    return SplitModulePathAs(module, path);
}

char* SplitModulePath(HMODULE module, PathBuffer<char>& path) noexcept
{
    return SplitModulePathAs(module, path);
}

template <typename Char>
const Char* ResourcePathFormat<Char>::FileName() const noexcept
{
    const Char* const backslash = TextCalls<Char>::FindLast(text_, '\\');
    return backslash ? backslash + 1 : text_;
}

template <typename Char>
bool ResourcePathFormat<Char>::Format(const Char* locale, PathBuffer<Char>& path) const noexcept
{
    const Char* const rest = text_ + localeOffset_ + kPlaceholderChars;
    size_t length = 0;
    bool fits = true;
    const auto append = [&](const Char* part, size_t partLength)
    {
        const size_t room = kMaxPathChars - 1 - length;
        if (partLength > room)
        {
            fits = false;
            partLength = room;
        }
        std::memcpy(path + length, part, partLength * sizeof(Char));
        length += partLength;
    };
    append(text_, localeOffset_);
    append(locale, TextCalls<Char>::Length(locale));
    append(rest, length_ - localeOffset_ - kPlaceholderChars);
    path[length] = Char{};
    return fits;
}

template class ResourcePathFormat<wchar_t>;
template class ResourcePathFormat<char>;

}  // namespace arvmui
