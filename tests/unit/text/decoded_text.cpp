#include "decoded_text.h"

#include "plain_decoder.h"

#include "text/text_reader.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

namespace arvmui_test
{
namespace
{

using arvmui::TextReader;

constexpr int kGuardChars = 32;
constexpr wchar_t kGuard = 0xA5A5;
constexpr size_t kRunCapacities[] = {1, 2, 3, 7, 15, 16, 17, 256, 1023, 1024, 1025, 100000};

std::string Hex(std::wstring_view text, size_t from, size_t to)
{
    std::string hex;
    for (size_t i = from; i < std::min(to, text.size()); ++i)
    {
        char unit[8] = {};
        std::snprintf(unit, sizeof(unit), " %04X", static_cast<unsigned>(text[i]));
        hex += unit;
    }
    return hex;
}

}  // namespace

std::wstring ReadOneByOne(MemoryFile&, UINT codePage)
{
    TextReader reader;
    std::wstring text;
    if (!reader.Open(MemoryFile::kName, codePage)) return L"<not opened>";
    for (std::uint32_t unit = reader.NextCharacter(); unit != TextReader::kEnd; unit = reader.NextCharacter())
    {
        text.push_back(static_cast<wchar_t>(unit));
    }
    return text;
}

std::wstring ReadInRuns(MemoryFile&, UINT codePage, size_t capacity)
{
    TextReader reader;
    std::wstring text;
    std::vector<wchar_t> units(capacity + static_cast<size_t>(kGuardChars), kGuard);
    if (!reader.Open(MemoryFile::kName, codePage)) return L"<not opened>";
    for (;;)
    {
        const size_t count = reader.NextCharacters(units.data(), capacity);
        if (count == 0) return text;
        if (count > capacity) return L"<more than asked for>";
        if (std::count(units.begin() + static_cast<ptrdiff_t>(capacity), units.end(), kGuard) != kGuardChars)
            return L"<written behind the buffer>";
        text.append(units.data(), count);
    }
}

testing::AssertionResult Equal(std::wstring_view expected, std::wstring_view got)
{
    if (expected == got) return testing::AssertionSuccess();
    const auto place = std::mismatch(expected.begin(), expected.end(), got.begin(), got.end()).first;
    const size_t index = static_cast<size_t>(place - expected.begin());
    const size_t from = index < 6 ? 0 : index - 6;
    return testing::AssertionFailure() << expected.size() << " units expected, " << got.size()
                                       << " read, different from unit " << index << " on:\nexpected"
                                       << Hex(expected, from, index + 6) << "\nread    " << Hex(got, from, index + 6);
}

void ExpectDecoded(std::string bytes, UINT codePage, std::wstring_view expected)
{
    MemoryFile file(std::move(bytes));
    EXPECT_TRUE(Equal(expected, ReadOneByOne(file, codePage)));
    for (const size_t capacity : kRunCapacities)
    {
        EXPECT_TRUE(Equal(expected, ReadInRuns(file, codePage, capacity))) << "in runs of " << capacity;
    }
}

void ExpectDecodedPlainly(const std::string& bytes, UINT codePage)
{
    ExpectDecoded(bytes, codePage, DecodePlainly(bytes, codePage));
}

}  // namespace arvmui_test
