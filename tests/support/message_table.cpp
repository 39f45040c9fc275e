#include "support/message_table.h"

#include <stdexcept>
#include <vector>

namespace arvmui_test
{
namespace
{

using Bytes = std::vector<BYTE>;

template <typename Type>
void Append(Bytes& bytes, Type value)
{
    const BYTE* const first = reinterpret_cast<const BYTE*>(&value);
    bytes.insert(bytes.end(), first, first + sizeof(value));
}

// MESSAGE_RESOURCE_DATA with a block of its own for each message.
Bytes MakeTable(const Messages& messages)
{
    const size_t headSize = sizeof(DWORD) + messages.size() * sizeof(MESSAGE_RESOURCE_BLOCK);
    Bytes blocks;
    Bytes entries;
    Append(blocks, static_cast<DWORD>(messages.size()));
    for (const auto& [id, text] : messages)
    {
        Append(blocks, id);
        Append(blocks, id);
        Append(blocks, static_cast<DWORD>(headSize + entries.size()));

        const size_t size = 2 * sizeof(WORD) + (text.size() + 1) * sizeof(wchar_t);
        const size_t end = entries.size() + (size + 3) / 4 * 4;  // entries begin at multiples of four
        Append(entries, static_cast<WORD>(end - entries.size()));
        Append(entries, static_cast<WORD>(MESSAGE_RESOURCE_UNICODE));
        for (const wchar_t character : text) Append(entries, character);
        entries.resize(end);
    }
    blocks.insert(blocks.end(), entries.begin(), entries.end());
    return blocks;
}

}  // namespace

void WriteMessageTables(const std::filesystem::path& file, const MessageTables& tables)
{
    const HANDLE update = ::BeginUpdateResourceW(file.c_str(), TRUE);
    bool done = update != nullptr;
    for (const auto& [language, messages] : tables)
    {
        Bytes table = MakeTable(messages);
        done = done
               && ::UpdateResourceW(update, RT_MESSAGETABLE, MAKEINTRESOURCEW(1), language, table.data(),
                   static_cast<DWORD>(table.size()));
    }
    if (update) done = ::EndUpdateResourceW(update, done ? FALSE : TRUE) && done;
    if (!done) throw std::runtime_error("message tables not written: " + std::to_string(::GetLastError()));
}

}  // namespace arvmui_test
