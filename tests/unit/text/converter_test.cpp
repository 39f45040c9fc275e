// Converters of other systems, which the one that the tests run on need not resemble: they refuse the
// strict flags, and without them take the beginning of a character for one that cannot be decoded.

#include "support/import_replacement.h"
#include "support/temporary_folder.h"

#include "text/text_reader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <string_view>

namespace arvmui_test
{
namespace
{

using arvmui::TextReader;

constexpr UINT kGb18030 = 54936;

bool g_ansiIsUtf8 = false;
bool g_knowsGb18030 = false;

int StoreUnit(wchar_t unit, wchar_t* units, int capacity)
{
    if (capacity > 0) units[0] = unit;
    return 1;
}

// Characters of one, two and four bytes, the latter outside the first plane; one unit for anything cut off.
int ConvertGb18030(std::string_view bytes, wchar_t* units, int capacity)
{
    const auto at = [bytes](size_t i) { return static_cast<unsigned char>(bytes[i]); };
    if (bytes.size() == 1) return StoreUnit(at(0) < 0x80 ? at(0) : 0xFFFD, units, capacity);
    const bool isFour = at(1) >= 0x30 && at(1) <= 0x39;
    if (bytes.size() == 2) return StoreUnit(isFour ? 0xFFFD : static_cast<wchar_t>(0x4E00 + at(1)), units, capacity);
    if (!isFour) return static_cast<int>(bytes.size()) - 1;
    if (bytes.size() == 3) return StoreUnit(0xFFFD, units, capacity);
    return StoreUnit(static_cast<wchar_t>(0x3400 + at(3)), units, capacity);
}

int WINAPI Convert(UINT codePage, DWORD flags, LPCCH text, int length, LPWSTR units, int capacity)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", MultiByteToWideChar);
    const bool isAnsiUtf8 = g_ansiIsUtf8 && (codePage == CP_ACP || codePage == CP_THREAD_ACP || codePage == CP_UTF8);
    const bool isGb18030 = g_knowsGb18030 && codePage == kGb18030;
    if ((isAnsiUtf8 || isGb18030) && (flags & MB_PRECOMPOSED))
    {
        ::SetLastError(ERROR_INVALID_FLAGS);
        return 0;
    }
    if (isAnsiUtf8) return real(CP_UTF8, flags, text, length, units, capacity);
    if (isGb18030) return ConvertGb18030({text, static_cast<size_t>(length)}, units, capacity);
    return real(codePage, flags, text, length, units, capacity);
}

BOOL WINAPI CodePageInformation(UINT codePage, DWORD flags, LPCPINFOEXW information)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", GetCPInfoExW);
    return real(g_ansiIsUtf8 && codePage == CP_THREAD_ACP ? CP_UTF8 : codePage, flags, information);
}

UINT WINAPI AnsiCodePage()
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", GetACP);
    return g_ansiIsUtf8 ? CP_UTF8 : real();
}

std::wstring ReadOneByOne(const std::wstring& path, UINT codePage)
{
    TextReader reader;
    std::wstring text;
    if (!reader.Open(path.c_str(), codePage)) return L"<not opened>";
    for (std::uint32_t unit = reader.NextCharacter(); unit != TextReader::kEnd; unit = reader.NextCharacter())
    {
        text.push_back(static_cast<wchar_t>(unit));
    }
    return text;
}

std::wstring ReadInRuns(const std::wstring& path, UINT codePage)
{
    TextReader reader;
    std::wstring text;
    if (!reader.Open(path.c_str(), codePage)) return L"<not opened>";
    wchar_t units[64];
    for (size_t count = reader.NextCharacters(units, 64); count != 0; count = reader.NextCharacters(units, 64))
    {
        text.append(units, count);
    }
    return text;
}

class ConverterTest : public testing::Test
{
protected:
    ~ConverterTest() override { g_ansiIsUtf8 = g_knowsGb18030 = false; }

    std::wstring Write(const std::string& bytes) const
    {
        const auto path = folder_.Path() / L"text.txt";
        std::ofstream(path, std::ios::binary) << bytes;
        return path.wstring();
    }

private:
    TemporaryFolder folder_;
};

TEST_F(ConverterTest, Utf8AsTheAnsiCodePage)
{
    const std::wstring path = Write("a\xE6\x97\xA5\xC3\xA4\n\xF0\x9F\x98\x80z\xC3\n\xE2\x82");
    const std::wstring expected = L"a\x65E5\x00E4\n\xFFFD\xFFFD\xFFFD\xFFFDz\xFFFD\n\xFFFD\xFFFD";
    g_ansiIsUtf8 = true;
    EXPECT_EQ(ReadOneByOne(path, CP_ACP), expected);
    EXPECT_EQ(ReadInRuns(path, CP_ACP), expected);
}

TEST_F(ConverterTest, Utf8AsTheCodePageOfTheThread)
{
    const std::wstring path = Write("a\xE6\x97\xA5\xC3\xA4\n\xF0\x9F\x98\x80z\xC3\n\xE2\x82");
    const std::wstring expected = L"a\x65E5\x00E4\n\xFFFD\xFFFD\xFFFD\xFFFDz\xFFFD\n\xFFFD\xFFFD";
    g_ansiIsUtf8 = true;
    EXPECT_EQ(ReadOneByOne(path, CP_THREAD_ACP), expected);
    EXPECT_EQ(ReadInRuns(path, CP_THREAD_ACP), expected);
}

TEST_F(ConverterTest, CodePageOfCharactersOfOneTwoAndFourBytes)
{
    const std::wstring path = Write("a\x81\x40z\x81\x30\x81\x35\n\xFE\xFEq\x81");
    const std::wstring expected = L"a\x4E40z\x3435\n\x4EFEq\xFFFD";
    g_knowsGb18030 = true;
    EXPECT_EQ(ReadOneByOne(path, kGb18030), expected);
    EXPECT_EQ(ReadInRuns(path, kGb18030), expected);
}

}  // namespace
}  // namespace arvmui_test

ARVMUI_REPLACE_IMPORT(MultiByteToWideChar, &arvmui_test::Convert)
ARVMUI_REPLACE_IMPORT(GetCPInfoExW, &arvmui_test::CodePageInformation)
ARVMUI_REPLACE_IMPORT(GetACP, &arvmui_test::AnsiCodePage)
