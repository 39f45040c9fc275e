// Every one and two bytes from 128 up in names and values of files that declare their encoding, against the
// plain model, in both text widths.

#include "decoded_text.h"
#include "memory_file.h"
#include "profile_comparison.h"

#include <gtest/gtest.h>

#include <string>

namespace arvmui_test
{
namespace
{

constexpr DWORD kRoomyChars = 32768;

std::string Declaration(UINT codePage)
{
    return "[Encoding]\r\nInputEncoding = cp" + std::to_string(codePage) + "\r\n";
}

// The keys of the only section behind the declaration.
template <typename Char>
DWORD ExpectPlainKeys(const MemoryFile& file)
{
    ProfileQuery<Char> query;
    query.section = std::basic_string<Char>(1, Char{'s'});
    query.size = kRoomyChars;
    return ExpectPlainAnswer(file, query).result;
}

template <typename Char>
DWORD ExpectPlainValue(const MemoryFile& file)
{
    ProfileQuery<Char> query;
    query.section = std::basic_string<Char>(1, Char{'s'});
    query.key = std::basic_string<Char>(1, Char{'k'});
    query.size = 40;
    return ExpectPlainAnswer(file, query).result;
}

class EncodedSettingsTest : public testing::TestWithParam<CodePageCase>
{
};

INSTANTIATE_TEST_SUITE_P(CodePages, EncodedSettingsTest, testing::ValuesIn(kCodePages),
    [](const auto& information) { return std::string(information.param.name); });

TEST_P(EncodedSettingsTest, KeysOfEveryTwoBytes)
{
    for (unsigned first = 0x80; first < 0x100; ++first)
    {
        std::string bytes = Declaration(GetParam().codePage) + "[s]\r\n";
        for (unsigned second = 0; second < 0x100; ++second)
            bytes += {'k', Byte(first), Byte(second), 'z', '=', '1', '\n'};
        const MemoryFile file(bytes);
        EXPECT_GT(ExpectPlainKeys<wchar_t>(file), 256u) << "hardly any key was read";
        ExpectPlainKeys<char>(file);
        ASSERT_FALSE(HasFailure()) << first;
    }
}

TEST_P(EncodedSettingsTest, ValuesOfEveryTwoBytes)
{
    // The system is slow to find out about this one.
    const unsigned step = GetParam().codePage == 42 ? 61 : 1;
    for (unsigned pair = 0x8000; pair < 0x10000; pair += step)
    {
        const std::string value{'v', Byte(pair >> 8), Byte(pair & 0xFF)};
        const MemoryFile file(Declaration(GetParam().codePage) + "[s]\r\nk = " + value + "end\r\n");
        EXPECT_NE(ExpectPlainValue<wchar_t>(file), 0u) << "no value was read";
        ExpectPlainValue<char>(file);
        ASSERT_FALSE(HasFailure()) << pair;
    }
}

}  // namespace
}  // namespace arvmui_test
