// Which key a name finds: the first that the system's comparison calls equal, wherever in the key the
// two differ and wherever in the file it stands.

#include "settings_file.h"
#include "support/module_patch.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <string>
#include <vector>

namespace arvmui_test
{
namespace
{

constexpr LCID kEnglish = 0x0409;
constexpr size_t kBufferBytes = 1024;  // a file is read in portions of this size

bool SystemFindsEqual(const std::wstring& left, const std::wstring& right)
{
    return ::CompareStringW(kEnglish, NORM_IGNORECASE | SORT_STRINGSORT, left.c_str(), -1, right.c_str(), -1)
           == CSTR_EQUAL;
}

// For keys of ASCII only.
std::wstring Widen(const std::string& text)
{
    return std::wstring(text.begin(), text.end());
}

// Each key's value is its number.
std::string MakeFile(const std::vector<std::string>& keys)
{
    std::string file = "[s]\n";
    for (size_t i = 0; i < keys.size(); ++i) file += keys[i] + "=" + std::to_string(i) + "\n";
    return file;
}

void ExpectFirstEqualKey(const SettingsFile& file, const std::vector<std::string>& keys, const std::wstring& sought)
{
    std::wstring expected = L"<none>";
    for (size_t i = keys.size(); i-- != 0;)
    {
        if (SystemFindsEqual(Widen(keys[i]), sought)) expected = std::to_wstring(i);
    }
    EXPECT_EQ(file.Value(L"s", sought.c_str()), expected) << testing::PrintToString(sought);
    EXPECT_EQ(file.Value(kAnySection, sought.c_str()), expected) << testing::PrintToString(sought) << " in any section";
}

// All that can stand in a key.
std::vector<char> AsciiOfKeys()
{
    std::vector<char> characters;
    for (char c = 1; c < 0x7F; ++c)
    {
        if (c != '\n' && c != '=') characters.push_back(c);
    }
    characters.push_back(0x7F);
    return characters;
}

class KeyPlaceTest : public testing::TestWithParam<size_t>
{
};

INSTANTIATE_TEST_SUITE_P(Places, KeyPlaceTest, testing::Values(1, 2, 14, 15, 16, 17, 18, 31, 32, 33));

TEST_P(KeyPlaceTest, TellsEveryTwoAsciiCharactersApartAsTheSystemDoes)
{
    const std::string before(GetParam(), 'k');
    std::vector<std::string> keys;
    for (const char c : AsciiOfKeys()) keys.push_back(before + c + "end");
    const SettingsFile file(MakeFile(keys));
    for (const char c : AsciiOfKeys())
    {
        ExpectFirstEqualKey(file, keys, std::wstring(GetParam(), L'K') + static_cast<wchar_t>(c) + L"End");
    }
}

TEST_P(KeyPlaceTest, TellsNamesApartThatDifferInOnePlace)
{
    const std::string name(36, 'n');
    std::string other = name;
    other[GetParam()] = 'm';
    const std::vector<std::string> keys = {other, name};
    const SettingsFile file(MakeFile(keys));
    ExpectFirstEqualKey(file, keys, Widen(name));
    ExpectFirstEqualKey(file, keys, Widen(other));
}

TEST_P(KeyPlaceTest, TellsNamesOfDifferentLengthsApart)
{
    const std::vector<std::string> keys = {
        std::string(GetParam() + 1, 'n'), std::string(GetParam(), 'n'), std::string(GetParam() + 2, 'n')};
    const SettingsFile file(MakeFile(keys));
    for (const std::string& key : keys) ExpectFirstEqualKey(file, keys, Widen(key));
}

// A comparison to which all is nothing but letters, digits and four more characters: systems differ in what they
// ignore.
decltype(&::CompareStringW) g_compare = nullptr;

std::wstring WithoutOddCharacters(const wchar_t* text)
{
    std::wstring result = text;
    std::erase_if(result, [](wchar_t c) { return c >= 0x80 || (!std::isalnum(c) && !std::strchr(" -_.", c)); });
    return result;
}

int WINAPI CompareWithoutOddCharacters(
    LCID locale, DWORD flags, LPCWCH left, int leftLength, LPCWCH right, int rightLength)
{
    if (leftLength != -1 || rightLength != -1) return g_compare(locale, flags, left, leftLength, right, rightLength);
    return g_compare(locale, flags, WithoutOddCharacters(left).c_str(), -1, WithoutOddCharacters(right).c_str(), -1);
}

// The borders of what is never ignored, and characters between them.
class OddCharacterTest : public testing::TestWithParam<char>
{
};

INSTANTIATE_TEST_SUITE_P(
    Characters, OddCharacterTest, testing::Values('\x01', '\x1F', '!', ',', '/', ':', '@', '[', '^', '`', '{', '\x7F'));

TEST_P(OddCharacterTest, MayBeIgnoredByTheComparison)
{
    const ImportPatch patch(LibraryUnderTest(), "CompareStringW", &CompareWithoutOddCharacters);
    g_compare = patch.Original<decltype(&::CompareStringW)>();
    const std::string name = "AbcdefghijklmnopqrstuvwxyZ0123456789";
    // Keys that end in the portion of the file that they begin in, and such that do not.
    for (const size_t lead : {size_t{0}, kBufferBytes - 57, kBufferBytes - 30})
    {
        // A bracket at the beginning makes a section.
        for (size_t place = GetParam() == '[' ? 1 : 0; place <= name.size(); ++place)
        {
            std::string key = name;
            key.insert(place, 1, GetParam());
            const SettingsFile file("[s]\n;" + std::string(lead, '.') + "\nother=0\n" + key + "=1\n" + name + "=2\n");
            ASSERT_EQ(file.Value(L"s", Widen(name).c_str()), L"1") << "at " << place << " behind " << lead;
        }
    }
}

TEST(ProfileKey, IsFoundAcrossTheEndOfAPortionOfTheFile)
{
    const std::string name = "SomeKeyName0123456789";
    for (size_t lead = kBufferBytes - 60; lead < kBufferBytes + 10; ++lead)
    {
        const SettingsFile file("[s]\n;" + std::string(lead, '.') + "\n" + name + "8=0\n" + name + "=1\n");
        ASSERT_EQ(file.Value(L"s", L"somekeyname0123456789"), L"1") << lead;
        ASSERT_EQ(file.Value("s", "SOMEKEYNAME0123456789"), "1") << lead;
    }
}

TEST(ProfileKey, LosesItsTrailingWhiteSpaceBeforeItIsCompared)
{
    const SettingsFile file("[s]\nname x  \t=1\nname =2\nna me=3\n");
    EXPECT_EQ(file.Value(L"s", L"name"), L"2");
    EXPECT_EQ(file.Value(L"s", L"name x"), L"1");
    EXPECT_EQ(file.Value(L"s", L"na me"), L"3");
    EXPECT_EQ(file.Value(L"s", L"name "), L"<none>");
}

}  // namespace
}  // namespace arvmui_test
