#include "translation.h"

#include "text_conversion.h"

#include <cstring>
#include <cwchar>

namespace
{

constexpr WORD kUnicodeMessage = 1;

std::wstring MessageText(const MESSAGE_RESOURCE_ENTRY& entry)
{
    const std::size_t size = entry.Length - offsetof(MESSAGE_RESOURCE_ENTRY, Text);
    std::wstring text;
    if (entry.Flags & kUnicodeMessage)
    {
        text.resize(size / sizeof(wchar_t));
        std::memcpy(text.data(), entry.Text, text.size() * sizeof(wchar_t));
    }
    else
        for (std::size_t i = 0; i < size; ++i) text += static_cast<wchar_t>(entry.Text[i]);
    text.resize(::wcsnlen(text.c_str(), text.size()));
    return text;
}

// The table's entries follow one another; each tells its length.
std::map<UINT, std::wstring> ReadMessages(const std::vector<BYTE>& bytes)
{
    std::map<UINT, std::wstring> messages;
    if (bytes.size() < sizeof(MESSAGE_RESOURCE_DATA)) return messages;
    const auto& table = *reinterpret_cast<const MESSAGE_RESOURCE_DATA*>(bytes.data());
    for (DWORD block = 0; block < table.NumberOfBlocks; ++block)
    {
        std::size_t at = table.Blocks[block].OffsetToEntries;
        for (DWORD id = table.Blocks[block].LowId; id <= table.Blocks[block].HighId; ++id)
        {
            if (at + sizeof(MESSAGE_RESOURCE_ENTRY) > bytes.size()) return messages;
            const auto& entry = *reinterpret_cast<const MESSAGE_RESOURCE_ENTRY*>(bytes.data() + at);
            if (entry.Length < sizeof(MESSAGE_RESOURCE_ENTRY) || at + entry.Length > bytes.size()) return messages;
            messages[id] = MessageText(entry);
            at += entry.Length;
        }
    }
    return messages;
}

std::wstring StringOrEmpty(const std::map<UINT, std::wstring>& strings, UINT number)
{
    const auto found = strings.find(number);
    return found == strings.end() ? std::wstring() : found->second;
}

}  // namespace

std::wstring Translation::Tag() const
{
    return StringOrEmpty(strings, kTagString);
}

LANGID Translation::Language() const
{
    return static_cast<LANGID>(std::wcstoul(StringOrEmpty(strings, kLanguageString).c_str(), nullptr, 0));
}

bool Translation::IsLibraryOwn() const
{
    return IsSameName(path.filename().wstring(), L"arvmuiUI.DLL");
}

Translation ReadTranslation(const std::filesystem::path& path)
{
    const ResourceLibrary library(path);
    Translation translation;
    translation.path = path;
    translation.folder = path.parent_path().filename().wstring();
    translation.strings = library.Strings();
    for (const UINT number : library.Numbers(RT_DIALOG))
        translation.dialogs[number] = ParseDialogTemplate(library.Bytes(RT_DIALOG, MAKEINTRESOURCEW(number)));
    translation.messages = ReadMessages(library.Bytes(RT_MESSAGETABLE, MAKEINTRESOURCEW(1)));
    return translation;
}
