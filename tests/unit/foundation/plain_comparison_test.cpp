// The shortcut for plain words must give the system's answer wherever it gives one itself.
#include "foundation/plain_characters.h"
#include "foundation/text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace
{

std::wstring PlainCharacters()
{
    std::wstring characters;
    for (unsigned c = 0; c < 128; ++c)
        if (arvmui::PlainCharacter(c) != '\0') characters += static_cast<wchar_t>(c);
    return characters;
}

bool SystemFindsEqual(const std::wstring& left, const std::wstring& right)
{
    return arvmui::CompareTextNoCase(left.c_str(), right.c_str()) == 0;
}

bool Agrees(const std::wstring& left, const std::wstring& right)
{
    return arvmui::EqualsNoCase(left.c_str(), right.c_str()) == SystemFindsEqual(left, right);
}

TEST(PlainComparison, LettersDigitsAndFourOthersArePlain)
{
    EXPECT_EQ(PlainCharacters(), L" -.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(arvmui::PlainCharacter(0xE4), '\0');
    EXPECT_EQ(arvmui::PlainCharacter(0x10041), '\0');
}

TEST(PlainComparison, OneCharacterAgainstNoneOneAndTwoIsAsTheSystemSays)
{
    const std::wstring characters = PlainCharacters();
    for (const wchar_t a : characters)
    {
        EXPECT_TRUE(Agrees({a}, L""));
        for (const wchar_t b : characters)
        {
            EXPECT_TRUE(Agrees({a}, {b})) << static_cast<int>(a) << ' ' << static_cast<int>(b);
            for (const wchar_t c : characters)
                EXPECT_TRUE(Agrees({a}, {b, c})) << static_cast<int>(a) << ' ' << static_cast<int>(b);
        }
    }
}

TEST(PlainComparison, RandomWordsAreAsTheSystemSays)
{
    const std::wstring characters = PlainCharacters();
    std::mt19937 random(20260101);
    for (int i = 0; i < 100'000; ++i)
    {
        std::wstring left;
        for (unsigned length = random() % 6; length != 0; --length) left += characters[random() % characters.size()];
        std::wstring right = left;
        if (!right.empty()) right[random() % right.size()] = characters[random() % characters.size()];
        EXPECT_TRUE(Agrees(left, right)) << i;
    }
}

TEST(PlainComparison, OtherTextIsLeftToTheSystem)
{
    const wchar_t* const texts[] = {L"", L"a", L"a\u00AD", L"\u00AD", L"a\x01", L"\u00E4", L"\u00C4", L"a\u0308", L"ss",
        L"\u00DF", L"sst", L"\u00DFt", L"\u00E6", L"ae", L"a\uFFFD", L"key=", L"key"};
    for (const wchar_t* left : texts)
        for (const wchar_t* right : texts) EXPECT_TRUE(Agrees(left, right)) << left << ' ' << right;
}

}  // namespace
