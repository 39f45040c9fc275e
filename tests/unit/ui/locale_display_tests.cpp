// Which text about a language the user can read.
#include "ui/locale_display.h"

#include "resources/process_state.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace
{

struct ReadableCase
{
    const char* name;
    std::vector<WORD> keyboards;  // primary languages, ascending
    LANGID language;
    std::wstring text;
    bool readable;
};

void PrintTo(const ReadableCase& value, std::ostream* output)
{
    *output << value.name;
}

class ReadableText : public testing::TestWithParam<ReadableCase>
{
protected:
    ReadableText() : keyboards_(GetParam().keyboards)
    {
        arvmui::Descriptor().keyboardLanguages = keyboards_.data();
        arvmui::Descriptor().keyboardLanguageCount = static_cast<DWORD>(keyboards_.size());
    }
    ~ReadableText() override { arvmui::Descriptor() = {}; }

private:
    std::vector<WORD> keyboards_;
};

TEST_P(ReadableText, IsLatinOrHasAKeyboard)
{
    EXPECT_EQ(arvmui::IsReadable(GetParam().language, GetParam().text.c_str()), GetParam().readable);
}

TEST_P(ReadableText, IsTheNameThatIsShown)
{
    EXPECT_STREQ(arvmui::DisplayName(GetParam().language, GetParam().text.c_str(), L"English name"),
        GetParam().readable ? GetParam().text.c_str() : L"English name");
}

INSTANTIATE_TEST_SUITE_P(Letters, ReadableText,
    testing::Values(ReadableCase{"Empty", {}, 0x0411, L"", true},
        ReadableCase{"Ascii", {}, 0x0411, L"Japanese (Japan) 1", true},
        ReadableCase{"Accents", {}, 0x0405, L"\u010de\u0161tina \u00df", true},
        ReadableCase{"LastBelowGreek", {}, 0x0408, L"\u036f", true},
        ReadableCase{"FirstGreek", {}, 0x0408, L"\u0370", false},
        ReadableCase{"LastBeforeAdditionalLatin", {}, 0x042A, L"\u1dff", false},
        ReadableCase{"FirstAdditionalLatin", {}, 0x042A, L"\u1e00", true},
        ReadableCase{"Vietnamese", {}, 0x042A, L"Ti\u1ebfng Vi\u1ec7t", true},
        ReadableCase{"LastAdditionalLatin", {}, 0x042A, L"\u1eff", true},
        ReadableCase{"FirstBehindAdditionalLatin", {}, 0x0408, L"\u1f00", false},
        ReadableCase{"Cyrillic", {}, 0x0419, L"\u0420\u0443\u0441", false},
        ReadableCase{"Japanese", {}, 0x0411, L"\u65e5\u672c\u8a9e", false},
        ReadableCase{"LastCodeUnit", {}, 0x0411, L"\uffff", false},
        ReadableCase{"ForeignLetterAtTheEnd", {}, 0x0411, L"Japanese \u65e5", false},
        ReadableCase{"ForeignLetterAtTheBeginning", {}, 0x0411, L"\u65e5 Japanese", false}),
    [](const testing::TestParamInfo<ReadableCase>& parameter) { return std::string(parameter.param.name); });

INSTANTIATE_TEST_SUITE_P(Keyboards, ReadableText,
    testing::Values(ReadableCase{"OfTheLanguage", {0x11}, 0x0411, L"\u65e5", true},
        ReadableCase{"OfAVariantOfTheLanguage", {0x04}, 0x0C04, L"\u4e2d", true},
        ReadableCase{"OfTheNeutralLanguage", {0x11}, 0x0011, L"\u65e5", true},
        ReadableCase{"First", {0x04, 0x09, 0x11}, 0x0404, L"\u65e5", true},
        ReadableCase{"Last", {0x04, 0x09, 0x11}, 0x0411, L"\u65e5", true},
        ReadableCase{"OfOthersBelow", {0x04, 0x09}, 0x0411, L"\u65e5", false},
        ReadableCase{"OfOthersAbove", {0x12, 0x19}, 0x0411, L"\u65e5", false},
        ReadableCase{"OfOthersAround", {0x09, 0x10, 0x12}, 0x0411, L"\u65e5", false},
        ReadableCase{"LanguageBeyondTheFirst256", {0x0011}, 0x0111, L"\u65e5", false},
        ReadableCase{"LatinNeedsNone", {0x09}, 0x0407, L"Deutsch", true}),
    [](const testing::TestParamInfo<ReadableCase>& parameter) { return std::string(parameter.param.name); });

}  // namespace
