// Thousands of made-up settings files: the library's answer against the plain model's, whole buffers.
// ARVMUI_GENERATED_FILES in the environment asks for another number of them.

#include "memory_file.h"
#include "plain_profile.h"
#include "profile_comparison.h"
#include "settings_generator.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace arvmui_test
{
namespace
{

constexpr unsigned kDefaultFiles = 20000;
constexpr unsigned kQuestionsPerFile = 6;

unsigned FileCount()
{
    const char* const count = std::getenv("ARVMUI_GENERATED_FILES");
    return count ? static_cast<unsigned>(std::strtoul(count, nullptr, 10)) : kDefaultFiles;
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
            const auto query = generator.WideQuery();
            tally.Count(query, ExpectPlainAnswer(file, query));
            ASSERT_FALSE(HasFailure());
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
            const auto query = generator.NarrowQuery();
            tally.Count(query, ExpectPlainAnswer(file, query));
            ASSERT_FALSE(HasFailure());
        }
        ASSERT_EQ(file.openings.size(), static_cast<size_t>(file.closings));
    }
    ExpectEachKind(tally, files);
}

}  // namespace
}  // namespace arvmui_test
