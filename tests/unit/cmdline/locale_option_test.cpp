#include "resources/process_state.h"
#include "support/busy_blocks.h"
#include "support/guarded_text.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace
{

using arvmui_test::GuardedText;

struct Parsed
{
    std::wstring line;
    std::wstring value;
};

bool operator==(const Parsed& left, const Parsed& right)
{
    return left.line == right.line && left.value == right.value;
}

std::ostream& operator<<(std::ostream& stream, const Parsed& parsed)
{
    return stream << testing::PrintToString(parsed.line) << " with " << testing::PrintToString(parsed.value);
}

const wchar_t* Slot(unsigned slot)
{
    return arvmui::GetLocaleHint(arvmui::Descriptor(), slot);
}

void EmptySlots()
{
    for (unsigned slot = 0; slot < ARVMUI_HINT_COUNT; ++slot)
        arvmui::SetLocaleHint(arvmui::Descriptor(), slot, nullptr);
}

Parsed Parse(const std::wstring& line)
{
    EmptySlots();
    const GuardedText<wchar_t> text(line);
    EXPECT_EQ(ARVMUI_ParseCommandLineW(text.Get()), TRUE);
    return {text.Get(), Slot(HINT_COMMAND_LINE)};
}

Parsed ParseNarrow(const std::string& line)
{
    EmptySlots();
    const GuardedText<char> text(line);
    EXPECT_EQ(ARVMUI_ParseCommandLineA(text.Get()), TRUE);
    const std::string edited = text.Get();
    return {std::wstring(edited.begin(), edited.end()), Slot(HINT_COMMAND_LINE)};
}

struct OptionCase
{
    const char* name;
    const wchar_t* before;
    const wchar_t* after;
    const wchar_t* value;
};

std::ostream& operator<<(std::ostream& stream, const OptionCase& row)
{
    return stream << row.name;
}

class LocaleOption : public testing::TestWithParam<OptionCase>
{
};

class NarrowLocaleOption : public testing::TestWithParam<OptionCase>
{
};

TEST_P(LocaleOption, IsTakenOffTheWideLine)
{
    const OptionCase& row = GetParam();
    EXPECT_EQ(Parse(row.before), (Parsed{row.after, row.value}));
}

TEST_P(NarrowLocaleOption, IsTakenOffTheLine)
{
    const OptionCase& row = GetParam();
    std::string narrow;
    for (const wchar_t c : std::wstring(row.before)) narrow.push_back(static_cast<char>(c));
    EXPECT_EQ(ParseNarrow(narrow), (Parsed{row.after, row.value}));
}

TEST_P(LocaleOption, IsGoneAfterTheFirstTime)
{
    const OptionCase& row = GetParam();
    const Parsed once = Parse(row.before);
    EXPECT_EQ(Parse(once.line).line, once.line);
}

const OptionCase kAsciiLines[] = {
    OptionCase{"InTheMiddle", L"prog.exe /uilocale:de-DE file.txt", L"prog.exe file.txt", L"de-DE"},
    OptionCase{"FirstWithBlanksBehind", L"/UILOCALE:fr x", L"x", L"fr"},
    OptionCase{"FirstWithSeveralBlanksBehind", L"/uilocale:fr \t  x", L"x", L"fr"},
    OptionCase{"FirstBehindLeadingBlanks", L" \t /uilocale:fr  x", L"x", L"fr"},
    OptionCase{"Last", L"prog.exe /uilocale:de", L"prog.exe", L"de"},
    OptionCase{"LastBehindSeveralBlanks", L"prog.exe \t  /uilocale:de", L"prog.exe", L"de"},
    OptionCase{"QuotedWithABlank", L"prog.exe \"/uilocale:en, de\" x", L"prog.exe x", L"en, de"},
    OptionCase{"QuotedAtTheEnd", L"prog.exe \"/uilocale:en, de\"", L"prog.exe", L"en, de"},
    OptionCase{"QuotedFirst", L"\"/uilocale:en, de\"  x", L"x", L"en, de"},
    OptionCase{"Twice", L"prog.exe /uilocale:de /uilocale:fr", L"prog.exe", L"de"},
    OptionCase{"TwiceWithTextBetween", L"prog.exe /uilocale:de x /uilocale:fr y", L"prog.exe x y", L"de"},
    OptionCase{"ThreeTimes", L"p /uilocale:de /uilocale:fr /uilocale:ja z", L"p z", L"de"},
    OptionCase{"TwiceFirst", L"/uilocale:de /uilocale:fr x", L"x", L"de"},
    OptionCase{"OnlyTheOption", L"/uilocale:de", L"", L"de"},
    OptionCase{"OnlyTheOptionAndBlanks", L" /uilocale:de \t", L"", L"de"},
    OptionCase{"EmptyQuotesEndTheScan", L"prog.exe \"\" /uilocale:de", L"prog.exe \"\" /uilocale:de", L""},
    OptionCase{"OptionBeforeEmptyQuotes", L"p /uilocale:fr \"\" /uilocale:de", L"p \"\" /uilocale:de", L"fr"},
    OptionCase{"OpenQuoteEndsTheScan", L"prog.exe \"abc /uilocale:de", L"prog.exe \"abc /uilocale:de", L""},
    OptionCase{"OpenQuoteBeforeTheOption", L"prog.exe \"/uilocale:de", L"prog.exe \"/uilocale:de", L""},
    OptionCase{"OptionBeforeAnOpenQuote", L"p /uilocale:de \"abc", L"p \"abc", L"de"},
    OptionCase{"NoOption", L"prog.exe  a\tb ", L"prog.exe  a\tb ", L""},
    OptionCase{"Empty", L"", L"", L""},
    OptionCase{"Blanks", L" \t ", L" \t ", L""},
    OptionCase{"MixedCase", L"p /UiLoCaLe:DE-de x", L"p x", L"DE-de"},
    OptionCase{"OtherOptionsStay", L"p /a /uilocale:de /b", L"p /a /b", L"de"},
    OptionCase{"ShortOptionsStay", L"p / /u /uilocale /uilocal:de", L"p / /u /uilocale /uilocal:de", L""},
    OptionCase{"HyphenIsAnotherOption", L"p -uilocale:de", L"p -uilocale:de", L""},
    OptionCase{"OptionInsideATokenIsPlain", L"p x/uilocale:de", L"p x/uilocale:de", L""},
    OptionCase{"QuoteInsideTheOptionIsPlain", L"p /uilocale:\"en, de\" x", L"p de\" x", L"\"en,"},
    OptionCase{"EmptyValueIsRemoved", L"p /uilocale: x", L"p x", L""},
    OptionCase{"EmptyValueLeavesTheSlotForTheNext", L"p /uilocale: /uilocale:fr x", L"p x", L"fr"},
    OptionCase{"TabsAround", L"p\t/uilocale:de\tx", L"p\tx", L"de"},
    OptionCase{"LineFeedsAround", L"p\n/uilocale:de\nx", L"p\nx", L"de"},
    OptionCase{"BlanksBehindStay", L"p /uilocale:de   x", L"p   x", L"de"},
    OptionCase{"BlanksAtTheEndStay", L"p /uilocale:de  ", L"p  ", L"de"},
    OptionCase{"TextGluedBehindTheQuoteIsTheNextToken", L"p \"/uilocale:de\"x y", L"px y", L"de"},
    OptionCase{"TextGluedBehindAFirstOption", L"\"/uilocale:de\"x y", L"x y", L"de"},
    OptionCase{"OptionGluedBehindAQuote", L"\"p\"/uilocale:de x", L"\"p\" x", L"de"},
    OptionCase{"OptionsGluedTogether", L"p \"/uilocale:de\"/uilocale:fr x", L"p x", L"de"},
    OptionCase{"DoubledQuoteBetweenOptions", L"p \"/uilocale:de\"\"/uilocale:fr\" x", L"p x", L"de\"/uilocale:fr"},
    OptionCase{"DoubledQuoteInTheValue", L"p \"/uilocale:a\"\"b\" x", L"p x", L"a\"b"},
    OptionCase{"ProgramInQuotes", L"\"C:\\a b\\p.exe\" /uilocale:de x", L"\"C:\\a b\\p.exe\" x", L"de"},
    OptionCase{"KeywordsAreKeptAsTheyAre", L"p /uilocale:kiv,user,0x411 x", L"p x", L"kiv,user,0x411"},
};

const OptionCase kOtherLines[] = {
    OptionCase{"NoBreakSpaceBelongsToTheValue",
        L"p /uilocale:de\x00A0"
        L"x y",
        L"p y", L"de\x00A0x"},
    OptionCase{"OtherScripts", L"\x65E5.exe /uilocale:\x65E5\x672C \x8A9E", L"\x65E5.exe \x8A9E", L"\x65E5\x672C"},
};

std::string NameOf(const testing::TestParamInfo<OptionCase>& row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(AsciiLines, LocaleOption, testing::ValuesIn(kAsciiLines), NameOf);
INSTANTIATE_TEST_SUITE_P(OtherLines, LocaleOption, testing::ValuesIn(kOtherLines), NameOf);
INSTANTIATE_TEST_SUITE_P(AsciiLines, NarrowLocaleOption, testing::ValuesIn(kAsciiLines), NameOf);

TEST(LocaleOptionSlot, KeepsWhatItHolds)
{
    EmptySlots();
    arvmui::SetLocaleHint(arvmui::Descriptor(), HINT_COMMAND_LINE, L"ja");
    std::wstring line = L"p /uilocale:de x";
    ARVMUI_ParseCommandLineW(line.data());
    EXPECT_STREQ(line.c_str(), L"p x");
    EXPECT_STREQ(Slot(HINT_COMMAND_LINE), L"ja");
}

TEST(LocaleOptionSlot, IsBlockedByTheTabMarker)
{
    EmptySlots();
    arvmui::SetLocaleHint(arvmui::Descriptor(), HINT_COMMAND_LINE, L"\t");
    std::wstring line = L"p /uilocale:de";
    ARVMUI_ParseCommandLineW(line.data());
    EXPECT_STREQ(line.c_str(), L"p");
    EXPECT_STREQ(Slot(HINT_COMMAND_LINE), L"\t");
}

TEST(LocaleOptionSlot, OtherSlotsStayAsTheyAre)
{
    Parse(L"p /uilocale:de x");
    EXPECT_STREQ(Slot(HINT_SETTINGS_FILE), L"");
    EXPECT_STREQ(Slot(HINT_BROWSER), L"");
    EXPECT_STREQ(Slot(HINT_ASKED), L"");
}

TEST(LocaleOptionSlot, HoldsAValueOf255Characters)
{
    const std::wstring value(255, L'x');
    EXPECT_EQ(Parse(L"p /uilocale:" + value + L" y"), (Parsed{L"p y", value}));
}

TEST(LocaleOptionSlot, CutsLongerValues)
{
    for (const size_t length : {size_t{256}, size_t{501}, size_t{502}, size_t{590}, size_t{4000}})
    {
        const std::wstring value = std::wstring(255, L'x') + std::wstring(length - 255, L'y');
        EXPECT_EQ(Parse(L"p /uilocale:" + value + L" z"), (Parsed{L"p z", std::wstring(255, L'x')})) << length;
        EXPECT_EQ(Parse(L"p \"/uilocale:" + value + L"\" z"), (Parsed{L"p z", std::wstring(255, L'x')})) << length;
    }
}

TEST(LocaleOptionLine, LongTokensBeforeTheOptionArePassed)
{
    for (const size_t length : {size_t{511}, size_t{512}, size_t{600}})
    {
        const std::wstring token(length, L'a');
        EXPECT_EQ(Parse(token + L" /uilocale:de x"), (Parsed{token + L" x", L"de"})) << length;
        EXPECT_EQ(Parse(L"\"" + token + L" b\" /uilocale:de x"), (Parsed{L"\"" + token + L" b\" x", L"de"})) << length;
    }
}

TEST(LocaleOptionLine, AnyLineIsOnlyEverShortenedWithinItsBuffer)
{
    std::mt19937 random(7);
    const std::vector<std::wstring> pieces = {L"/uilocale:", L"/UILOCALE:de", L"\"", L"\"\"", L" ", L"\t", L"a", L"/",
        L"/uilocale", L"\"/uilocale:x y\"", L"\x3000", L"p.exe", std::wstring(300, L'b')};
    std::uniform_int_distribution<size_t> pick(0, pieces.size() - 1);
    std::uniform_int_distribution<int> count(0, 12);
    for (int i = 0; i < 4000; ++i)
    {
        std::wstring line;
        for (int k = count(random); k > 0; --k) line += pieces[pick(random)];
        const Parsed once = Parse(line);
        ASSERT_LE(once.line.size(), line.size());
        ASSERT_LE(once.value.size(), 255u);
        const bool mayHoldAnOption =
            line.find(L"uilocale:") != std::wstring::npos || line.find(L"UILOCALE:") != std::wstring::npos;
        ASSERT_TRUE(mayHoldAnOption || once.line == line) << testing::PrintToString(line);
    }
}

// The line is a folder and a file that exist; neither is an option.
TEST(LocaleOptionLine, ExistingFilesStayOnTheLine)
{
    const arvmui_test::TemporaryFolder folder;
    const std::wstring file = (folder.Path() / L"settings.ini").wstring();
    std::ofstream(std::filesystem::path(file)) << "[a]\n";
    const std::wstring line = L"p.exe \"" + file + L"\" \"" + folder.Path().wstring() + L"\"";
    EXPECT_EQ(Parse(line + L" /uilocale:de"), (Parsed{line, L"de"}));
}

TEST(LocaleOptionNarrowLine, KeepsTextOfTheAnsiCodePage)
{
    const std::string line = "p\xE9.exe /uilocale:de \xFC";
    EmptySlots();
    const GuardedText<char> text(line);
    EXPECT_EQ(ARVMUI_ParseCommandLineA(text.Get()), TRUE);
    EXPECT_STREQ(text.Get(), "p\xE9.exe \xFC");
}

TEST(LocaleOptionNarrowLine, LeavesNothingOnTheHeap)
{
    const size_t before = arvmui_test::CountBusyBlocks();
    ParseNarrow("p /uilocale:de " + std::string(3000, 'x'));
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

TEST(ProcessCommandLine, IsTheSystemsBufferWithoutTheOption)
{
    EmptySlots();
    EXPECT_EQ(ARVMUI_GetCommandLineW(), ::GetCommandLineW());
    EXPECT_EQ(ARVMUI_GetCommandLineA(), ::GetCommandLineA());
}

}  // namespace
