#include "resource_library.h"

#include "text_conversion.h"
#include "tool_error.h"

#include <algorithm>
#include <cstring>

namespace
{

constexpr UINT kStringsInBlock = 16;

BOOL CALLBACK CollectNumber(HMODULE, const wchar_t*, wchar_t* name, LONG_PTR context)
{
    if (IS_INTRESOURCE(name))
        reinterpret_cast<std::vector<UINT>*>(context)->push_back(static_cast<UINT>(reinterpret_cast<ULONG_PTR>(name)));
    return TRUE;
}

// One block holds sixteen strings, each a length in front of its characters.
void ReadBlock(const std::vector<BYTE>& bytes, UINT block, std::map<UINT, std::wstring>& strings)
{
    std::size_t at = 0;
    for (UINT i = 0; i < kStringsInBlock && at + sizeof(WORD) <= bytes.size(); ++i)
    {
        WORD length = 0;
        std::memcpy(&length, bytes.data() + at, sizeof(length));
        at += sizeof(length);
        const std::size_t size = std::min<std::size_t>(length * sizeof(wchar_t), bytes.size() - at);
        if (length != 0)
        {
            std::wstring text(size / sizeof(wchar_t), L'\0');
            std::memcpy(text.data(), bytes.data() + at, text.size() * sizeof(wchar_t));
            strings[(block - 1) * kStringsInBlock + i] = std::move(text);
        }
        at += size;
    }
}

}  // namespace

ResourceLibrary::ResourceLibrary(const std::filesystem::path& path) : path_(path)
{
    module_ = ::LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    if (!module_) throw ToolError("cannot open " + Utf8(path.wstring()) + ": " + SystemErrorText(::GetLastError()));
}

ResourceLibrary::~ResourceLibrary()
{
    ::FreeLibrary(module_);
}

std::map<UINT, std::wstring> ResourceLibrary::Strings() const
{
    std::map<UINT, std::wstring> strings;
    for (const UINT block : Numbers(RT_STRING))
        if (block != 0) ReadBlock(Bytes(RT_STRING, MAKEINTRESOURCEW(block)), block, strings);
    return strings;
}

std::vector<BYTE> ResourceLibrary::Bytes(const wchar_t* type, const wchar_t* name) const
{
    const HRSRC resource = ::FindResourceW(module_, name, type);
    const HGLOBAL loaded = resource ? ::LoadResource(module_, resource) : nullptr;
    const BYTE* const bytes = loaded ? static_cast<const BYTE*>(::LockResource(loaded)) : nullptr;
    if (!bytes) return {};
    return {bytes, bytes + ::SizeofResource(module_, resource)};
}

std::vector<UINT> ResourceLibrary::Numbers(const wchar_t* type) const
{
    std::vector<UINT> numbers;
    ::EnumResourceNamesW(module_, type, CollectNumber, reinterpret_cast<LONG_PTR>(&numbers));
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}
