// Thousands of made-up settings files: the library's answer against the plain model's, whole buffers.
// ARVMUI_GENERATED_FILES in the environment asks for another number of them.

#include "memory_file.h"
#include "plain_profile.h"
#include "settings_generator.h"

#include "arvmui.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

namespace arvmui_test
{
namespace
{

constexpr unsigned kDefaultFiles = 20000;
constexpr unsigned kQuestionsPerFile = 6;
constexpr size_t kGuardChars = 8;

unsigned FileCount()
{
    const char* const count = std::getenv("ARVMUI_GENERATED_FILES");
    return count ? static_cast<unsigned>(std::strtoul(count, nullptr, 10)) : kDefaultFiles;
}

DWORD Call(const wchar_t* section, const wchar_t* key, const wchar_t* defaultValue, wchar_t* buffer, DWORD size)
{
    return ARVMUI_GetPrivateProfileStringW(section, key, defaultValue, buffer, size, MemoryFile::kName);
}

DWORD Call(const char* section, const char* key, const char* defaultValue, char* buffer, DWORD size)
{
    return ARVMUI_GetPrivateProfileStringA(section, key, defaultValue, buffer, size, MemoryFile::kNarrowName);
}

template <typename Char>
ProfileAnswer<Char> AskLibrary(const ProfileQuery<Char>& query, bool& wroteBehind)
{
    const Char* section = query.section ? query.section->c_str() : nullptr;
    if (query.anySection) section = reinterpret_cast<const Char*>(~ULONG_PTR{0});
    constexpr Char kFilling = static_cast<Char>(0x5A);
    std::vector<Char> buffer(query.size + kGuardChars, kFilling);
    ProfileAnswer<Char> answer;
    answer.result = Call(section, query.key ? query.key->c_str() : nullptr,
        query.defaultValue ? query.defaultValue->c_str() : nullptr, buffer.data(), query.size);
    wroteBehind = std::any_of(buffer.begin() + query.size, buffer.end(), [](Char c) { return c != kFilling; });
    buffer.resize(query.size);
    answer.buffer = buffer;
    return answer;
}

template <typename Text>
std::string Visible(const Text& text)
{
    std::ostringstream out;
    out << std::hex << '"';
    for (const auto character : text)
    {
        const unsigned value = static_cast<std::make_unsigned_t<std::decay_t<decltype(character)>>>(character);
        if (value >= 32 && value < 127)
            out << static_cast<char>(value);
        else
            out << "<" << value << ">";
    }
    out << '"';
    return out.str();
}

template <typename Char>
std::string Visible(const ProfileQuery<Char>& query)
{
    std::ostringstream out;
    out << "section "
        << (query.anySection   ? "any"
               : query.section ? Visible(*query.section)
                               : "NULL")
        << ", key " << (query.key ? Visible(*query.key) : "NULL") << ", default "
        << (query.defaultValue ? Visible(*query.defaultValue) : "NULL") << ", size " << query.size;
    return out.str();
}

template <typename Char>
std::string Visible(const ProfileAnswer<Char>& answer)
{
    std::basic_string<Char> text(answer.buffer.begin(), answer.buffer.end());
    while (!text.empty() && text.back() == Char{}) text.pop_back();
    return std::to_string(answer.result) + " " + Visible(text);
}

// What kinds of answers came, lest the generator made nothing but failures.
struct Tally
{
    unsigned values = 0, emptyValues = 0, cutValues = 0, defaults = 0, sectionLists = 0, keyLists = 0, cutLists = 0;

    template <typename Char>
    void Count(const ProfileQuery<Char>& query, const ProfileAnswer<Char>& answer)
    {
        const bool isList = !query.key || (!query.section && !query.anySection);
        if (isList)
        {
            if (answer.result != 0 && answer.result == query.size - 2)
                ++cutLists;
            else if (answer.result != 0)
                ++(query.section ? keyLists : sectionLists);
        }
        else if (answer.result == query.size - 1)
            ++cutValues;
        else if (answer.result == 0)
            ++emptyValues;
        else if (query.defaultValue && !query.defaultValue->empty() && answer.buffer[0] == (*query.defaultValue)[0])
            ++defaults;
        else
            ++values;
    }
};

template <typename Char>
void ExpectPlainAnswer(const MemoryFile& file, const ProfileQuery<Char>& query, Tally& tally)
{
    const ProfileAnswer<Char> expected = AnswerPlainly(file.bytes, query);
    bool wroteBehind = false;
    const ProfileAnswer<Char> got = AskLibrary(query, wroteBehind);
    tally.Count(query, got);
    ASSERT_EQ(Visible(expected), Visible(got)) << Visible(file.bytes) << "\n" << Visible(query);
    ASSERT_TRUE(expected == got) << Visible(file.bytes) << "\n" << Visible(query);
    ASSERT_FALSE(wroteBehind) << Visible(file.bytes) << "\n" << Visible(query);
}

void ExpectEachKind(const Tally& tally, unsigned files)
{
    const unsigned least = files / 200;
    EXPECT_GT(tally.values, least);
    EXPECT_GT(tally.emptyValues, least);
    EXPECT_GT(tally.cutValues, least);
    EXPECT_GT(tally.defaults, least);
    EXPECT_GT(tally.sectionLists, least);
    EXPECT_GT(tally.keyLists, least);
    EXPECT_GT(tally.cutLists, least);
}

TEST(GeneratedSettings, WideAnswersAreThePlainOnes)
{
    SettingsGenerator generator(20090101);
    Tally tally;
    const unsigned files = FileCount();
    for (unsigned i = 0; i < files; ++i)
    {
        SCOPED_TRACE(i);
        MemoryFile file(generator.File());
        for (unsigned k = 0; k < kQuestionsPerFile; ++k)
        {
            ASSERT_NO_FATAL_FAILURE(ExpectPlainAnswer(file, generator.WideQuery(), tally));
        }
        ASSERT_EQ(file.openings.size(), static_cast<size_t>(file.closings));
    }
    ExpectEachKind(tally, files);
}

TEST(GeneratedSettings, NarrowAnswersAreThePlainOnes)
{
    SettingsGenerator generator(19700101);
    Tally tally;
    const unsigned files = FileCount();
    for (unsigned i = 0; i < files; ++i)
    {
        SCOPED_TRACE(i);
        MemoryFile file(generator.File());
        for (unsigned k = 0; k < kQuestionsPerFile; ++k)
        {
            ASSERT_NO_FATAL_FAILURE(ExpectPlainAnswer(file, generator.NarrowQuery(), tally));
        }
        ASSERT_EQ(file.openings.size(), static_cast<size_t>(file.closings));
    }
    ExpectEachKind(tally, files);
}

}  // namespace
}  // namespace arvmui_test
