// Growable text: what is appended where, and by which steps a block grows.
#include "foundation/growable_text.h"

#include "foundation/heap.h"
#include "support/import_replacement.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace
{

// Sizes asked of the heap while recording, and the growth that is to fail.
bool g_recording = false;
SIZE_T g_sizes[64];
size_t g_sizeCount = 0;
size_t g_failAt = SIZE_MAX;

bool Refuse(SIZE_T bytes)
{
    if (!g_recording) return false;
    const size_t number = g_sizeCount;
    if (number < std::size(g_sizes)) g_sizes[g_sizeCount++] = bytes;
    return number == g_failAt;
}

LPVOID WINAPI RecordAlloc(HANDLE heap, DWORD flags, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc);
    return Refuse(bytes) ? nullptr : real(heap, flags, bytes);
}

LPVOID WINAPI RecordReAlloc(HANDLE heap, DWORD flags, LPVOID block, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapReAlloc);
    return Refuse(bytes) ? nullptr : real(heap, flags, block, bytes);
}

std::vector<int> g_loadCapacities;

int WINAPI RecordLoadString(HINSTANCE module, UINT id, LPWSTR buffer, int capacity)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"user32.dll", LoadStringW);
    const bool recording = g_recording;
    g_recording = false;
    g_loadCapacities.push_back(capacity);
    g_recording = recording;
    return real(module, id, buffer, capacity);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(HeapAlloc, &RecordAlloc)
ARVMUI_REPLACE_IMPORT(HeapReAlloc, &RecordReAlloc)
ARVMUI_REPLACE_IMPORT(LoadStringW, &RecordLoadString)

namespace
{

using namespace arvmui;

using Sizes = std::vector<size_t>;

class GrowableText : public testing::Test
{
protected:
    GrowableText()
    {
        g_sizeCount = 0;
        g_failAt = SIZE_MAX;
        g_loadCapacities.clear();
    }
    ~GrowableText() override { g_recording = false; }

    // Runs a call and gives its result; the sizes are then known in elements.
    template <typename Call>
    static int Record(Call call)
    {
        g_sizeCount = 0;
        g_recording = true;
        const int result = call();
        g_recording = false;
        return result;
    }
    static Sizes RecordedSizes(size_t elementBytes)
    {
        Sizes sizes;
        for (size_t i = 0; i < g_sizeCount; ++i) sizes.push_back(g_sizes[i] / elementBytes);
        return sizes;
    }
};

TEST_F(GrowableText, NullTextIsEmpty)
{
    HeapBlock<wchar_t> text;
    EXPECT_EQ(AppendFormat(text.Slot(), -1, L"%s-%lu", L"abc", 42ul), 6);
    EXPECT_STREQ(text.Get(), L"abc-42");
    HeapBlock<char> narrow;
    EXPECT_EQ(AppendFormat(narrow.Slot(), -1, "%s-%lu", "abc", 42ul), 6);
    EXPECT_STREQ(narrow.Get(), "abc-42");
}

TEST_F(GrowableText, NegativePositionIsTheEnd)
{
    HeapBlock<wchar_t> text;
    AppendFormat(text.Slot(), -1, L"one");
    EXPECT_EQ(AppendFormat(text.Slot(), -1, L", %s", L"two"), 5);
    EXPECT_EQ(AppendFormat(text.Slot(), -2, L"!"), 1);
    EXPECT_STREQ(text.Get(), L"one, two!");
    HeapBlock<char> narrow;
    AppendFormat(narrow.Slot(), -1, "one");
    EXPECT_EQ(AppendFormat(narrow.Slot(), -1, ", %s", "two"), 5);
    EXPECT_STREQ(narrow.Get(), "one, two");
}

TEST_F(GrowableText, PositionIsWhereTextIsWritten)
{
    HeapBlock<wchar_t> text;
    AppendFormat(text.Slot(), -1, L"abcdef");
    EXPECT_EQ(AppendFormat(text.Slot(), 2, L"%d", 7), 1);
    EXPECT_STREQ(text.Get(), L"ab7");
    EXPECT_EQ(AppendFormat(text.Slot(), 0, L"x"), 1);
    EXPECT_STREQ(text.Get(), L"x");
    HeapBlock<char> narrow;
    AppendFormat(narrow.Slot(), -1, "abcdef");
    EXPECT_EQ(AppendFormat(narrow.Slot(), 2, "%d", 7), 1);
    EXPECT_STREQ(narrow.Get(), "ab7");
}

TEST_F(GrowableText, NothingAppendedIsZero)
{
    HeapBlock<wchar_t> text;
    AppendFormat(text.Slot(), -1, L"abc");
    EXPECT_EQ(AppendFormat(text.Slot(), -1, L"%s", L""), 0);
    EXPECT_STREQ(text.Get(), L"abc");
}

struct GrowthCase
{
    const char* name;
    size_t outputChars;  // of the format "%s"
    Sizes sizes;
    friend void PrintTo(const GrowthCase& entry, std::ostream* stream) { *stream << entry.name; }
};

// The format has two characters, so the first guess is 5 + 256.
const GrowthCase kGrowth[] = {
    {"Empty", 0, {261}},
    {"FillsTheFirstGuess", 260, {261}},
    {"OneTooLongForTheFirst", 261, {261, 522}},
    {"FillsTheSecond", 521, {261, 522}},
    {"OneTooLongForTheSecond", 522, {261, 522, 1044}},
    {"FillsTheLastDoubled", 4175, {261, 522, 1044, 2088, 4176}},
    {"FirstAdded", 4176, {261, 522, 1044, 2088, 4176, 8272}},
    {"SecondAdded", 8272, {261, 522, 1044, 2088, 4176, 8272, 12368}},
};

class FormatGrowth : public GrowableText, public testing::WithParamInterface<GrowthCase>
{
};

TEST_P(FormatGrowth, OfWideTextGoesInSteps)
{
    const std::wstring output(GetParam().outputChars, L'x');
    HeapBlock<wchar_t> text;
    EXPECT_EQ(
        Record([&] { return AppendFormat(text.Slot(), -1, L"%s", output.c_str()); }), static_cast<int>(output.size()));
    EXPECT_EQ(text.Get(), output);
    EXPECT_EQ(RecordedSizes(sizeof(wchar_t)), GetParam().sizes);
}

TEST_P(FormatGrowth, OfNarrowTextGoesInSteps)
{
    const std::string output(GetParam().outputChars, 'x');
    HeapBlock<char> text;
    EXPECT_EQ(
        Record([&] { return AppendFormat(text.Slot(), -1, "%s", output.c_str()); }), static_cast<int>(output.size()));
    EXPECT_EQ(text.Get(), output);
    EXPECT_EQ(RecordedSizes(sizeof(char)), GetParam().sizes);
}

TEST_P(FormatGrowth, StartsBehindThePosition)
{
    HeapBlock<wchar_t> text;
    AppendFormat(text.Slot(), -1, L"0123456789");
    const std::wstring output(GetParam().outputChars, L'x');
    Record([&] { return AppendFormat(text.Slot(), -1, L"%s", output.c_str()); });
    EXPECT_EQ(text.Get(), L"0123456789" + output);
    Sizes expected = GetParam().sizes;
    for (size_t& size : expected) size += 10;
    EXPECT_EQ(RecordedSizes(sizeof(wchar_t)), expected);
}

INSTANTIATE_TEST_SUITE_P(
    , FormatGrowth, testing::ValuesIn(kGrowth), [](const auto& entry) { return entry.param.name; });

struct FirstGuess
{
    size_t formatChars;
    size_t size;
};

// Twice the format and one, then a step: by 256 below 256, doubled below 4096, by 4096 from there.
const FirstGuess kFirstGuesses[] = {{0, 257}, {127, 511}, {128, 514}, {2047, 8190}, {2048, 8193}, {3000, 10097}};

TEST_F(GrowableText, FirstGuessDependsOnTheFormatsLength)
{
    for (const FirstGuess& entry : kFirstGuesses)
    {
        SCOPED_TRACE(entry.formatChars);
        const std::wstring format(entry.formatChars, L'f');
        HeapBlock<wchar_t> text;
        EXPECT_EQ(
            Record([&] { return AppendFormat(text.Slot(), -1, format.c_str()); }), static_cast<int>(entry.formatChars));
        EXPECT_EQ(RecordedSizes(sizeof(wchar_t)), Sizes{entry.size});

        const std::string narrowFormat(entry.formatChars, 'f');
        HeapBlock<char> narrow;
        EXPECT_EQ(Record([&] { return AppendFormat(narrow.Slot(), -1, narrowFormat.c_str()); }),
            static_cast<int>(entry.formatChars));
        EXPECT_EQ(RecordedSizes(sizeof(char)), Sizes{entry.size});
    }
}

TEST_F(GrowableText, FirstGrowthThatFailsLeavesTheOldText)
{
    HeapBlock<wchar_t> text;
    AppendFormat(text.Slot(), -1, L"abc");
    wchar_t* const old = text.Get();
    g_failAt = 0;
    EXPECT_EQ(Record([&] { return AppendFormat(text.Slot(), -1, L"def"); }), -1);
    EXPECT_EQ(text.Get(), old);
    EXPECT_STREQ(text.Get(), L"abc");
}

TEST_F(GrowableText, LaterGrowthThatFailsLeavesABlockToFree)
{
    const std::wstring output(300, L'x');
    HeapBlock<wchar_t> text;
    g_failAt = 1;
    EXPECT_EQ(Record([&] { return AppendFormat(text.Slot(), -1, L"%s", output.c_str()); }), -1);
    ASSERT_TRUE(text);
    EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, text.Get()), 261 * sizeof(wchar_t));
}

TEST_F(GrowableText, NarrowGrowthThatFailsLeavesTheOldText)
{
    HeapBlock<char> text;
    AppendFormat(text.Slot(), -1, "abc");
    g_failAt = 0;
    EXPECT_EQ(Record([&] { return AppendFormat(text.Slot(), -1, "def"); }), -1);
    EXPECT_STREQ(text.Get(), "abc");
}

// The second attempt must not read arguments where the first one stopped.
TEST_F(GrowableText, EveryAttemptReadsTheArgumentsFromTheStart)
{
    const std::wstring padding(300, L' ');
    HeapBlock<wchar_t> text;
    EXPECT_EQ(AppendFormat(text.Slot(), -1, L"%s%d,%s,%lu", padding.c_str(), 1, L"two", 3ul), 307);
    EXPECT_EQ(text.Get(), padding + L"1,two,3");
}

// Cut text is recognised as such whatever it begins with.
TEST_F(GrowableText, TextWithATerminatorInsideIsAppendedWhole)
{
    const std::wstring output(300, L'x');
    HeapBlock<wchar_t> text;
    ASSERT_EQ(AppendFormat(text.Slot(), -1, L"%c%s", L'\0', output.c_str()), 301);
    EXPECT_EQ(std::wstring(text.Get() + 1), output);
}

int AppendThroughList(wchar_t** text, const wchar_t* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int length = AppendFormatV(text, -1, format, arguments);
    va_end(arguments);
    return length;
}

int AppendThroughList(char** text, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int length = AppendFormatV(text, -1, format, arguments);
    va_end(arguments);
    return length;
}

TEST_F(GrowableText, TakesAnArgumentList)
{
    HeapBlock<wchar_t> wide;
    EXPECT_EQ(AppendThroughList(wide.Slot(), L"%s=%d", L"a", 1), 3);
    EXPECT_STREQ(wide.Get(), L"a=1");
    HeapBlock<char> narrow;
    EXPECT_EQ(AppendThroughList(narrow.Slot(), "%s=%d", "a", 1), 3);
    EXPECT_STREQ(narrow.Get(), "a=1");
}

// "%s" takes text of the format's own width, "%S" and "%hs" the other or the narrow one.
TEST_F(GrowableText, TextPlaceholdersFollowTheFormatsWidth)
{
    HeapBlock<wchar_t> wide;
    AppendFormat(wide.Slot(), -1, L"%s %S %hs %ls", L"w", "n", "n", L"w");
    EXPECT_STREQ(wide.Get(), L"w n n w");
    HeapBlock<char> narrow;
    AppendFormat(narrow.Slot(), -1, "%s %S %hs %ls", "n", L"w", "n", L"w");
    EXPECT_STREQ(narrow.Get(), "n w n w");
}

TEST_F(GrowableText, TextBeyondTheLimitIsRefused)
{
    HeapBlock<wchar_t> text;
    AppendFormat(text.Slot(), -1, L"abc");
    EXPECT_EQ(AppendFormat(text.Slot(), 0x7FFFFFFF, L"x"), -1);
    EXPECT_STREQ(text.Get(), L"abc");
}

// String resources of every length at which the loading changes.
class ResourceString : public GrowableText
{
protected:
    static constexpr UINT kMissing = 0x4000;  // its block is missing too
    static constexpr UINT kMissingInBlock = 17;

    ResourceString() : module_(folder_.Path() / L"strings.dll", MakeStrings()) {}

    static arvmui_test::Strings MakeStrings()
    {
        arvmui_test::Strings strings;
        for (const unsigned length : kLengths) strings[Id(length)] = TextOf(length);
        strings[16] = L"neighbour";
        return strings;
    }
    static unsigned Id(unsigned length) { return 100 + length; }
    // Different at every place, so that a piece in the wrong place shows.
    static std::wstring TextOf(unsigned length)
    {
        std::wstring text;
        for (unsigned i = 0; i < length; ++i) text += static_cast<wchar_t>(0x4E00 + i);
        return text;
    }

    static constexpr unsigned kLengths[] = {1, 62, 63, 64, 126, 127, 128, 4094, 4095, 4096, 5000, 8190, 8191, 9000};
    arvmui_test::TemporaryFolder folder_;
    arvmui_test::LoadedModule module_;
};

struct ResourceGrowth
{
    unsigned length;
    std::vector<int> capacities;
};

const ResourceGrowth kResourceGrowth[] = {
    {1, {64}},
    {62, {64}},
    {63, {64, 128}},
    {64, {64, 128}},
    {126, {64, 128}},
    {127, {64, 128, 256}},
    {128, {64, 128, 256}},
    {4094, {64, 128, 256, 512, 1024, 2048, 4096}},
    {4095, {64, 128, 256, 512, 1024, 2048, 4096, 8192}},
    {4096, {64, 128, 256, 512, 1024, 2048, 4096, 8192}},
    {5000, {64, 128, 256, 512, 1024, 2048, 4096, 8192}},
    {8190, {64, 128, 256, 512, 1024, 2048, 4096, 8192}},
    {8191, {64, 128, 256, 512, 1024, 2048, 4096, 8192, 12288}},
    {9000, {64, 128, 256, 512, 1024, 2048, 4096, 8192, 12288}},
};

TEST_F(ResourceString, IsAppendedWholeWhateverItsLength)
{
    for (const ResourceGrowth& entry : kResourceGrowth)
    {
        SCOPED_TRACE(entry.length);
        HeapBlock<wchar_t> text;
        AppendFormat(text.Slot(), -1, L"abc");
        EXPECT_EQ(
            AppendResourceString(module_.Get(), Id(entry.length), text.Slot(), -1), static_cast<int>(entry.length));
        EXPECT_EQ(text.Get(), L"abc" + TextOf(entry.length));
    }
}

TEST_F(ResourceString, IsLoadedIntoGrowingRooms)
{
    for (const ResourceGrowth& entry : kResourceGrowth)
    {
        SCOPED_TRACE(entry.length);
        g_loadCapacities.clear();
        HeapBlock<wchar_t> text;
        Record([&] { return AppendResourceString(module_.Get(), Id(entry.length), text.Slot(), 10); });
        EXPECT_EQ(g_loadCapacities, entry.capacities);
        Sizes expected;
        for (const int capacity : entry.capacities) expected.push_back(static_cast<size_t>(capacity) + 10);
        EXPECT_EQ(RecordedSizes(sizeof(wchar_t)), expected);
    }
}

TEST_F(ResourceString, PositionIsWhereItIsWritten)
{
    HeapBlock<wchar_t> text;
    AppendFormat(text.Slot(), -1, L"abcdef");
    EXPECT_EQ(AppendResourceString(module_.Get(), Id(1), text.Slot(), 2), 1);
    EXPECT_STREQ(text.Get(), L"ab\x4E00");
}

TEST_F(ResourceString, MissingOneAppendsNothing)
{
    for (const UINT id : {kMissing, kMissingInBlock})
    {
        SCOPED_TRACE(id);
        HeapBlock<wchar_t> text;
        AppendFormat(text.Slot(), -1, L"abc");
        EXPECT_EQ(AppendResourceString(module_.Get(), id, text.Slot(), -1), 0);
        EXPECT_STREQ(text.Get(), L"abc");
    }
}

TEST_F(ResourceString, GrowthThatFailsLeavesTheOldText)
{
    HeapBlock<wchar_t> text;
    AppendFormat(text.Slot(), -1, L"abc");
    g_failAt = 0;
    EXPECT_EQ(Record([&] { return AppendResourceString(module_.Get(), Id(1), text.Slot(), -1); }), -1);
    EXPECT_STREQ(text.Get(), L"abc");
}

TEST_F(ResourceString, LaterGrowthThatFailsLeavesABlockToFree)
{
    HeapBlock<wchar_t> text;
    g_failAt = 1;
    EXPECT_EQ(Record([&] { return AppendResourceString(module_.Get(), Id(63), text.Slot(), -1); }), -1);
    ASSERT_TRUE(text);
    EXPECT_EQ(::HeapSize(::GetProcessHeap(), 0, text.Get()), 64 * sizeof(wchar_t));
}

}  // namespace
