// Thousands of made-up command lines and argument vectors, valid and not, in both text widths, against the
// plain model. ARVMUI_GENERATED_LINES in the environment asks for another number of them.

#include "plain_command_line.h"

#include "resources/process_state.h"
#include "support/guarded_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

namespace arvmui_test
{

void PrintTo(const PlainLine& parsed, std::ostream* stream)
{
    *stream << testing::PrintToString(parsed.line) << " with " << testing::PrintToString(parsed.value);
}

namespace
{

constexpr unsigned kDefaultLines = 20000;

// Nothing here, nor anything that they make together, is the name of a file.
constexpr const wchar_t* kFragments[] = {L"/uilocale:de", L"/UILOCALE:fr-CA,en", L"/uilocale:", L"\"/uilocale:en, de\"",
    L"\"/uilocale:", L"/uilocale:\"ja\"", L"/uilocale", L"/uilocale;de", L"/u", L"/", L"-uilocale:de", L"x/uilocale:de",
    L"\x00E4", L"?", L"\"?\"", L"\"? x\"", L"\"", L"\"\"", L"\"\"\"", L" ", L" ", L" ", L"  ", L"\t", L"\r\n", L"\v",
    L"\f", L"\x00A0", L"\x001C"};
constexpr const wchar_t* kWideFragments[] = {L"/\xFF55ilocale:de",
    L"/uilo\x00AD"
    L"cale:de",
    L"/u\x0131locale:de", L"\x3000", L"\x2003", L"\x65E5\x672C", L"/uilocale:\x65E5", L"\xD83D\xDE00"};

class LineGenerator
{
public:
    std::wstring Line(bool isWide)
    {
        std::wstring line;
        for (unsigned count = Below(12); count != 0; --count)
        {
            if (Below(60) == 0)
                line += (Below(2) == 0 ? L"/uilocale:" : L"?") + std::wstring(240 + Below(300), L'x');
            else if (isWide && Below(6) == 0)
                line += kWideFragments[Below(static_cast<unsigned>(std::size(kWideFragments)))];
            else
                line += kFragments[Below(static_cast<unsigned>(std::size(kFragments)))];
        }
        return line;
    }

    std::vector<std::wstring> Vector(bool isWide)
    {
        std::vector<std::wstring> arguments;
        for (unsigned count = Below(6); count != 0; --count) arguments.push_back(Line(isWide));
        return arguments;
    }

private:
    unsigned Below(unsigned limit)
    {
        state_ = state_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<unsigned>((state_ >> 33) % limit);
    }

    std::uint64_t state_ = 20090704;
};

unsigned LineCount()
{
    const char* const count = std::getenv("ARVMUI_GENERATED_LINES");
    return count ? static_cast<unsigned>(std::strtoul(count, nullptr, 10)) : kDefaultLines;
}

void EmptySlots()
{
    for (unsigned slot = 0; slot < ARVMUI_HINT_COUNT; ++slot)
        arvmui::SetLocaleHint(arvmui::Descriptor(), slot, nullptr);
}

std::wstring StoredValue()
{
    return arvmui::GetLocaleHint(arvmui::Descriptor(), HINT_COMMAND_LINE);
}

// Characters that the ANSI code page has.
std::string Narrow(const std::wstring& text)
{
    std::string narrow(text.size() * 4 + 1, '\0');
    const int size = ::WideCharToMultiByte(
        CP_ACP, 0, text.c_str(), -1, narrow.data(), static_cast<int>(narrow.size()), nullptr, nullptr);
    narrow.resize(static_cast<size_t>(size - 1));
    return narrow;
}

std::wstring Widen(const std::string& text)
{
    std::wstring wide(text.size() + 1, L'\0');
    const int size = ::MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<size_t>(size - 1));
    return wide;
}

TEST(GeneratedLines, WideLinesAreParsedPlainly)
{
    LineGenerator generator;
    unsigned changed = 0;
    for (unsigned i = LineCount(); i != 0; --i)
    {
        const std::wstring line = generator.Line(true);
        EmptySlots();
        const GuardedText<wchar_t> text(line);
        ASSERT_EQ(ARVMUI_ParseCommandLineW(text.Get()), TRUE);
        ASSERT_EQ((PlainLine{text.Get(), StoredValue()}), ParsePlainly(line)) << testing::PrintToString(line);
        if (text.Get() != line) ++changed;
    }
    EXPECT_GT(changed, LineCount() / 10) << "hardly any line held an option";
}

TEST(GeneratedLines, NarrowLinesAreParsedPlainly)
{
    LineGenerator generator;
    unsigned changed = 0;
    for (unsigned i = LineCount(); i != 0; --i)
    {
        const std::string line = Narrow(generator.Line(false));
        const PlainLine expected = ParsePlainly(Widen(line));
        EmptySlots();
        const GuardedText<char> text(line);
        ASSERT_EQ(ARVMUI_ParseCommandLineA(text.Get()), TRUE);
        ASSERT_EQ(std::string(text.Get()), Narrow(expected.line)) << testing::PrintToString(line);
        ASSERT_EQ(StoredValue(), expected.value) << testing::PrintToString(line);
        if (text.Get() != line) ++changed;
    }
    EXPECT_GT(changed, LineCount() / 10) << "hardly any line held an option";
}

TEST(GeneratedLines, ArgumentVectorsAreParsedPlainly)
{
    LineGenerator generator;
    for (unsigned i = LineCount(); i != 0; --i)
    {
        std::vector<std::wstring> arguments = generator.Vector(true);
        const std::vector<std::wstring> expected = WithoutLocaleArguments(arguments);
        std::vector<wchar_t*> vector;
        for (std::wstring& argument : arguments) vector.push_back(argument.data());
        vector.push_back(nullptr);
        int count = static_cast<int>(arguments.size());
        const BOOL removed = ARVMUI_ParseArgvW(&count, vector.data());
        ASSERT_EQ(count, static_cast<int>(expected.size())) << testing::PrintToString(arguments);
        ASSERT_EQ(std::vector<std::wstring>(vector.begin(), vector.begin() + count), expected);
        ASSERT_EQ(vector[static_cast<size_t>(count)], nullptr);
        ASSERT_EQ(removed, expected.size() < arguments.size() ? TRUE : FALSE);
    }
}

TEST(GeneratedLines, NarrowArgumentVectorsAreParsedPlainly)
{
    LineGenerator generator;
    for (unsigned i = LineCount(); i != 0; --i)
    {
        std::vector<std::string> arguments;
        std::vector<std::wstring> wide;
        for (const std::wstring& argument : generator.Vector(false))
        {
            arguments.push_back(Narrow(argument));
            wide.push_back(Widen(arguments.back()));
        }
        std::vector<std::string> expected;
        for (const std::wstring& argument : WithoutLocaleArguments(wide)) expected.push_back(Narrow(argument));
        std::vector<char*> vector;
        for (std::string& argument : arguments) vector.push_back(argument.data());
        vector.push_back(nullptr);
        int count = static_cast<int>(arguments.size());
        ARVMUI_ParseArgvA(&count, vector.data());
        ASSERT_EQ(count, static_cast<int>(expected.size())) << testing::PrintToString(arguments);
        ASSERT_EQ(std::vector<std::string>(vector.begin(), vector.begin() + count), expected);
    }
}

}  // namespace
}  // namespace arvmui_test
