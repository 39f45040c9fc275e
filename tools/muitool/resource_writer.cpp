#include "resource_writer.h"

#include "text_conversion.h"
#include "tool_error.h"

#include <cstring>

namespace
{

namespace fs = std::filesystem;

constexpr UINT kStringsInBlock = 16;
constexpr std::size_t kMaxStringChars = 0xFFFF;

struct Update
{
    const wchar_t* type;
    UINT number;
    std::vector<BYTE> bytes;
};

template <typename T>
void Append(std::vector<BYTE>& bytes, const T& value)
{
    const BYTE* const begin = reinterpret_cast<const BYTE*>(&value);
    bytes.insert(bytes.end(), begin, begin + sizeof(T));
}

void AppendText(std::vector<BYTE>& bytes, const std::wstring& text)
{
    for (const wchar_t character : text) Append(bytes, character);
}

std::vector<BYTE> StringBlock(const std::map<UINT, std::wstring>& strings, UINT block)
{
    std::vector<BYTE> bytes;
    for (UINT i = 0; i < kStringsInBlock; ++i)
    {
        const auto text = strings.find((block - 1) * kStringsInBlock + i);
        const std::wstring content = text == strings.end() ? std::wstring() : text->second;
        if (content.size() > kMaxStringChars) throw ToolError("a string is longer than the format allows");
        Append(bytes, static_cast<WORD>(content.size()));
        AppendText(bytes, content);
    }
    return bytes;
}

// One block for each run of numbers; every text as UTF-16.
std::vector<BYTE> MessageTable(const std::map<UINT, std::wstring>& messages)
{
    std::vector<MESSAGE_RESOURCE_BLOCK> blocks;
    std::vector<BYTE> entries;
    for (const auto& [number, text] : messages)
    {
        if (blocks.empty() || number != blocks.back().HighId + 1)
            blocks.push_back({number, number, static_cast<DWORD>(entries.size())});
        blocks.back().HighId = number;
        const std::size_t unpadded = 2 * sizeof(WORD) + (text.size() + 1) * sizeof(wchar_t);
        const std::size_t length = (unpadded + 3) / 4 * 4;
        Append(entries, static_cast<WORD>(length));
        Append(entries, WORD{1});
        AppendText(entries, text);
        entries.resize(entries.size() + length - unpadded + sizeof(wchar_t));
    }
    std::vector<BYTE> bytes;
    Append(bytes, static_cast<DWORD>(blocks.size()));
    const DWORD begin = static_cast<DWORD>(sizeof(DWORD) + blocks.size() * sizeof(MESSAGE_RESOURCE_BLOCK));
    for (MESSAGE_RESOURCE_BLOCK& block : blocks)
    {
        block.OffsetToEntries += begin;
        Append(bytes, block);
    }
    bytes.insert(bytes.end(), entries.begin(), entries.end());
    return bytes;
}

std::vector<Update> Differences(const Translation& original, const Translation& changed)
{
    std::vector<Update> updates;
    UINT lastBlock = 0;
    for (const auto& [number, text] : changed.strings)
    {
        const UINT block = number / kStringsInBlock + 1;
        const auto old = original.strings.find(number);
        if (block == lastBlock || (old != original.strings.end() && old->second == text)) continue;
        lastBlock = block;
        updates.push_back({RT_STRING, block, StringBlock(changed.strings, block)});
    }
    for (const auto& [number, dialog] : changed.dialogs)
    {
        std::vector<BYTE> bytes = WriteDialogTemplate(dialog);
        const auto old = original.dialogs.find(number);
        if (old == original.dialogs.end() || WriteDialogTemplate(old->second) != bytes)
            updates.push_back({RT_DIALOG, number, std::move(bytes)});
    }
    if (changed.messages != original.messages) updates.push_back({RT_MESSAGETABLE, 1, MessageTable(changed.messages)});
    return updates;
}

BOOL CALLBACK TakeLanguage(HMODULE, const wchar_t*, const wchar_t*, WORD language, LONG_PTR context)
{
    reinterpret_cast<std::vector<WORD>*>(context)->push_back(language);
    return TRUE;
}

// A resource is changed in the language in which it is there; several would be several translations.
WORD LanguageOf(HMODULE module, const wchar_t* type, UINT number)
{
    std::vector<WORD> languages;
    ::EnumResourceLanguagesW(
        module, type, MAKEINTRESOURCEW(number), TakeLanguage, reinterpret_cast<LONG_PTR>(&languages));
    if (languages.size() != 1)
        throw ToolError("resource " + std::to_string(number) + " is there in " + std::to_string(languages.size())
                        + " languages; a resource library holds one");
    return languages.front();
}

[[noreturn]] void RefuseWriting(const fs::path& path)
{
    throw ToolError("cannot write " + Utf8(path.wstring()) + ": " + SystemErrorText(::GetLastError()));
}

void Apply(const Translation& original, const std::vector<Update>& updates, const fs::path& file)
{
    std::vector<WORD> languages;
    {
        const ResourceLibrary library(original.path);
        for (const Update& update : updates)
            languages.push_back(LanguageOf(library.Module(), update.type, update.number));
    }
    const HANDLE handle = ::BeginUpdateResourceW(file.c_str(), FALSE);
    if (!handle) RefuseWriting(file);
    for (std::size_t i = 0; i < updates.size(); ++i)
    {
        std::vector<BYTE> bytes = updates[i].bytes;
        if (!::UpdateResourceW(handle, updates[i].type, MAKEINTRESOURCEW(updates[i].number), languages[i], bytes.data(),
                static_cast<DWORD>(bytes.size())))
        {
            const DWORD error = ::GetLastError();
            ::EndUpdateResourceW(handle, TRUE);
            ::SetLastError(error);
            RefuseWriting(file);
        }
    }
    if (!::EndUpdateResourceW(handle, FALSE)) RefuseWriting(file);
}

}  // namespace

void WriteTranslation(const Translation& original, const Translation& changed, const fs::path& target)
{
    fs::path temporary = target;
    temporary += L".new";
    std::error_code error;
    fs::copy_file(original.path, temporary, fs::copy_options::overwrite_existing, error);
    if (error) throw ToolError("cannot write " + Utf8(temporary.wstring()) + ": " + error.message());
    try
    {
        const std::vector<Update> updates = Differences(original, changed);
        if (!updates.empty()) Apply(original, updates, temporary);
    }
    catch (...)
    {
        fs::remove(temporary, error);
        throw;
    }
    fs::rename(temporary, target, error);
    if (error)
    {
        const std::string reason = error.message();
        fs::remove(temporary, error);
        throw ToolError("cannot write " + Utf8(target.wstring()) + ": " + reason);
    }
}
