// Every byte and every two bytes in files of each language, read whole, against the plain decoder.

#include "text_language_fixture.h"
#include "unit/text/plain_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>

namespace arvmui_test
{
namespace
{

struct LanguagePage
{
    const wchar_t* tag;
    LANGID language;
    UINT codePage;
};

std::ostream& operator<<(std::ostream& stream, const LanguagePage& row)
{
    return stream << row.codePage;
}

constexpr LanguagePage kPages[] = {
    {L"de", 0x0407, 1252},
    {L"pl", 0x0415, 1250},
    {L"ru", 0x0419, 1251},
    {L"el", 0x0408, 1253},
    {L"tr", 0x041F, 1254},
    {L"th", 0x041E, 874},
    {L"ja", 0x0411, 932},
    {L"zh-CN", 0x0804, 936},
    {L"ko", 0x0412, 949},
    {L"zh-TW", 0x0404, 950},
};

class TextDecodingTest : public TextLanguageTest, public testing::WithParamInterface<LanguagePage>
{
protected:
    void ExpectReadPlainly(const std::string& bytes) const
    {
        AddLanguage(GetParam().tag, GetParam().language);
        WriteText(GetParam().tag, bytes);
        std::wstring expected = DecodePlainly(bytes, GetParam().codePage);
        std::replace(expected.begin(), expected.end(), L'\0', L' ');
        const std::wstring read = Read(GetParam().tag);
        ASSERT_EQ(read.size(), expected.size());
        // The texts are too long to be printed.
        const auto place = std::mismatch(expected.begin(), expected.end(), read.begin()).first;
        EXPECT_EQ(place - expected.begin(), static_cast<ptrdiff_t>(expected.size())) << "the first unit that differs";
    }
};

INSTANTIATE_TEST_SUITE_P(CodePages, TextDecodingTest, testing::ValuesIn(kPages),
    [](const auto& information) { return "Page" + std::to_string(information.param.codePage); });

char Byte(unsigned value)
{
    return static_cast<char>(static_cast<unsigned char>(value));
}

TEST_P(TextDecodingTest, EveryByteAtEveryPlaceOfAPortion)
{
    std::string bytes;
    for (unsigned shift = 0; shift < 1027; ++shift)
    {
        for (unsigned value = 0; value < 256; ++value) bytes += Byte(value);
        bytes += '.';
    }
    ExpectReadPlainly(bytes);
}

TEST_P(TextDecodingTest, EveryTwoBytesByThemselves)
{
    std::string bytes;
    for (unsigned pair = 0; pair < 0x10000; ++pair)
        bytes += {Byte(pair >> 8), Byte(pair & 0xFF), '\n', '\n', '\n', '\n'};
    ExpectReadPlainly(bytes);
}

TEST_P(TextDecodingTest, EveryTwoBytesDenselyPacked)
{
    std::string bytes;
    for (unsigned pair = 0; pair < 0x10000; ++pair) bytes += {Byte(pair >> 8), Byte(pair & 0xFF)};
    ExpectReadPlainly(bytes);
}

}  // namespace
}  // namespace arvmui_test
