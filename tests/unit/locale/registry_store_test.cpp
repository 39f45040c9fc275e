// Text values in a real registry: a scratch key, and stand-ins for the root keys where the library
// names the place itself.
#include "locale/registry_store.h"

#include "support/busy_blocks.h"
#include "support/environment_variable.h"
#include "support/scratch_registry.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <ostream>
#include <string>

namespace
{

using namespace arvmui;
using arvmui_test::EnvironmentVariable;
using arvmui_test::ScratchRegistry;
using arvmui_test::StoredText;
using arvmui_test::StoreText;
using arvmui_test::StoreValue;

constexpr wchar_t kProductKey[] = L"SOFTWARE\\Pelkor\\MUI";
constexpr DWORD kUntouchedError = 4711;

struct Read
{
    DWORD length;
    DWORD error;
    std::wstring text;
    bool operator==(const Read&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Read& read)
{
    return stream << '"' << std::string(read.text.begin(), read.text.end()) << "\" length " << read.length << " error "
                  << read.error;
}

constexpr size_t kBufferChars = 64;

// Calls a reader with a buffer full of other text.
template <typename Reader>
Read ReadWith(Reader reader)
{
    wchar_t buffer[kBufferChars + 1];
    std::wmemset(buffer, L'?', kBufferChars + 1);
    ::SetLastError(kUntouchedError);
    Read read = {};
    read.length = reader(buffer);
    read.error = ::GetLastError();
    buffer[kBufferChars] = L'\0';
    read.text = buffer;
    return read;
}

Read ReadValue(const ScratchRegistry& scratch, const wchar_t* name, DWORD capacity = kBufferChars)
{
    return ReadWith([&](wchar_t* buffer)
        { return ReadRegistryString(kProductKeyRead, scratch.Key(), L"key", name, buffer, capacity); });
}

Read Text(const std::wstring& text)
{
    return Read{static_cast<DWORD>(text.size()), 0, text};
}

Read Failure(DWORD error)
{
    return Read{0, error, L""};
}

TEST(RegistryAccess, IsThe32BitView)
{
    EXPECT_EQ(kProductKeyRead, 0x20219u);
    EXPECT_EQ(kProductKeyWrite, 0x20206u);
}

TEST(ReadRegistryString, GivesTheTextAndItsLength)
{
    ScratchRegistry scratch;
    StoreText(scratch.Key(), L"key", L"UILocale", L"de,en");
    EXPECT_EQ(ReadValue(scratch, L"UILocale"), Text(L"de,en"));
}

TEST(ReadRegistryString, NullNameMeansTheDefaultValue)
{
    ScratchRegistry scratch;
    StoreText(scratch.Key(), L"key", nullptr, L"default");
    EXPECT_EQ(ReadValue(scratch, nullptr), Text(L"default"));
}

TEST(ReadRegistryString, MissingKeyEmptiesTheBufferAndReports)
{
    ScratchRegistry scratch;
    EXPECT_EQ(ReadValue(scratch, L"UILocale"), Failure(ERROR_FILE_NOT_FOUND));
}

TEST(ReadRegistryString, MissingValueEmptiesTheBufferAndReports)
{
    ScratchRegistry scratch;
    StoreText(scratch.Key(), L"key", L"Other", L"x");
    EXPECT_EQ(ReadValue(scratch, L"UILocale"), Failure(ERROR_FILE_NOT_FOUND));
}

TEST(ReadRegistryString, KeyThatMayNotBeReadReports)
{
    ScratchRegistry scratch;
    StoreText(scratch.Key(), L"key", L"UILocale", L"de");
    const Read read = ReadWith([&](wchar_t* buffer)
        { return ReadRegistryString(KEY_SET_VALUE, scratch.Key(), L"key", L"UILocale", buffer, kBufferChars); });
    EXPECT_EQ(read, Failure(ERROR_ACCESS_DENIED));
}

TEST(ReadRegistryString, OtherTypesAreInvalidData)
{
    ScratchRegistry scratch;
    const DWORD number = 0x00640065;
    for (const DWORD type : {DWORD{REG_NONE}, DWORD{REG_BINARY}, DWORD{REG_DWORD}, DWORD{REG_DWORD_BIG_ENDIAN},
             DWORD{REG_LINK}, DWORD{REG_MULTI_SZ}})
    {
        SCOPED_TRACE(type);
        StoreValue(scratch.Key(), L"key", L"UILocale", type, &number, sizeof(number));
        EXPECT_EQ(ReadValue(scratch, L"UILocale"), Failure(ERROR_INVALID_DATA));
    }
}

TEST(ReadRegistryString, EmptyTextIsNoFailure)
{
    ScratchRegistry scratch;
    StoreText(scratch.Key(), L"key", L"UILocale", L"");
    EXPECT_EQ(ReadValue(scratch, L"UILocale"), Text(L""));
    StoreText(scratch.Key(), L"key", L"UILocale", L"", REG_EXPAND_SZ);
    EXPECT_EQ(ReadValue(scratch, L"UILocale"), Text(L""));
}

struct OddData
{
    const char* name;
    DWORD bytes;  // of "de,fr" without a terminator
    const wchar_t* text;
    friend void PrintTo(const OddData& entry, std::ostream* stream) { *stream << entry.name; }
};

const OddData kOddData[] = {
    {"NoBytes", 0, L""},
    {"OneByte", 1, L""},
    {"OneCharacter", 2, L"d"},
    {"OneCharacterAndAHalf", 3, L"d"},
    {"OddSize", 7, L"de,"},
    {"Unterminated", 10, L"de,fr"},
};

class RegistryData : public testing::TestWithParam<OddData>
{
};

TEST_P(RegistryData, IsTerminatedAtItsWholeCharacters)
{
    ScratchRegistry scratch;
    for (const DWORD type : {DWORD{REG_SZ}, DWORD{REG_EXPAND_SZ}})
    {
        SCOPED_TRACE(type);
        StoreValue(scratch.Key(), L"key", L"UILocale", type, L"de,fr", GetParam().bytes);
        EXPECT_EQ(ReadValue(scratch, L"UILocale"), Text(GetParam().text));
    }
}

INSTANTIATE_TEST_SUITE_P(
    , RegistryData, testing::ValuesIn(kOddData), [](const auto& entry) { return entry.param.name; });

TEST(ReadRegistryString, TextEndsAtATerminatorInsideTheData)
{
    ScratchRegistry scratch;
    StoreValue(scratch.Key(), L"key", L"UILocale", REG_SZ, L"de\0fr", 12);
    EXPECT_EQ(ReadValue(scratch, L"UILocale"), Text(L"de"));
}

TEST(ReadRegistryString, TextIsCutToTheCapacity)
{
    ScratchRegistry scratch;
    StoreText(scratch.Key(), L"key", L"UILocale", L"de,en,fr");
    wchar_t buffer[12];
    for (const DWORD capacity : {9u, 8u, 2u, 1u})
    {
        SCOPED_TRACE(capacity);
        std::wmemset(buffer, L'?', 12);
        ::SetLastError(kUntouchedError);
        EXPECT_EQ(
            ReadRegistryString(kProductKeyRead, scratch.Key(), L"key", L"UILocale", buffer, capacity), capacity - 1);
        EXPECT_EQ(::GetLastError(), 0u);
        EXPECT_EQ(std::wstring(buffer), std::wstring(L"de,en,fr").substr(0, capacity - 1));
        EXPECT_EQ(buffer[capacity], L'?') << "written behind the buffer";
    }
}

TEST(ReadRegistryString, LongTextIsReadWhole)
{
    ScratchRegistry scratch;
    const std::wstring text(5000, L'z');
    StoreText(scratch.Key(), L"key", L"UILocale", text);
    std::wstring buffer(6000, L'?');
    EXPECT_EQ(ReadRegistryString(kProductKeyRead, scratch.Key(), L"key", L"UILocale", buffer.data(), 6000), 5000u);
    EXPECT_EQ(std::wstring(buffer.c_str()), text);
}

TEST(ReadRegistryString, ExpandableTextIsExpanded)
{
    ScratchRegistry scratch;
    const EnvironmentVariable list(L"LANGLIST", L"de,en");
    StoreText(scratch.Key(), L"key", L"UILocale", L"%LANGLIST%", REG_EXPAND_SZ);
    EXPECT_EQ(ReadValue(scratch, L"UILocale"), Text(L"de,en"));
    StoreText(scratch.Key(), L"key", L"UILocale", L"fr,%LANGLIST%,%ARVMUI_NO_SUCH_VARIABLE%", REG_EXPAND_SZ);
    EXPECT_EQ(ReadValue(scratch, L"UILocale"), Text(L"fr,de,en,%ARVMUI_NO_SUCH_VARIABLE%"));
}

TEST(ReadRegistryString, PlainTextIsNotExpanded)
{
    ScratchRegistry scratch;
    const EnvironmentVariable list(L"LANGLIST", L"de,en");
    StoreText(scratch.Key(), L"key", L"UILocale", L"%LANGLIST%");
    EXPECT_EQ(ReadValue(scratch, L"UILocale"), Text(L"%LANGLIST%"));
}

TEST(ReadRegistryString, ExpansionThatDoesNotFitLeavesTheTextUnexpanded)
{
    ScratchRegistry scratch;
    const EnvironmentVariable list(L"LANGLIST", L"de,en,fr,es,ja,ko");  // 17 characters
    StoreText(scratch.Key(), L"key", L"UILocale", L"%LANGLIST%", REG_EXPAND_SZ);
    EXPECT_EQ(ReadValue(scratch, L"UILocale", 18).text, L"de,en,fr,es,ja,ko");
    EXPECT_EQ(ReadValue(scratch, L"UILocale", 17).text, L"%LANGLIST%");
    EXPECT_EQ(ReadValue(scratch, L"UILocale", 17).length, 10u);
    EXPECT_EQ(ReadValue(scratch, L"UILocale", 5).text, L"%LAN");
    EXPECT_EQ(ReadValue(scratch, L"UILocale", 5).length, 4u);
}

TEST(ReadRegistryString, LeavesNoBlockBehind)
{
    ScratchRegistry scratch;
    StoreText(scratch.Key(), L"key", L"UILocale", L"%TEMP%", REG_EXPAND_SZ);
    const DWORD number = 1;
    StoreValue(scratch.Key(), L"key", L"Number", REG_DWORD, &number, sizeof(number));
    wchar_t buffer[8];
    const size_t before = arvmui_test::CountBusyBlocks();
    for (int i = 0; i < 100; ++i)
    {
        ReadRegistryString(kProductKeyRead, scratch.Key(), L"key", L"UILocale", buffer, 8);
        ReadRegistryString(kProductKeyRead, scratch.Key(), L"key", L"Number", buffer, 8);
        ReadRegistryList(L"HKCU\\No\\Such,No\\Such,Such,HKXX\\a", buffer, 8);
    }
    EXPECT_LT(arvmui_test::CountBusyBlocks(), before + 50);
}

// A key of its own in both views of the local machine.
class MachineView : public testing::Test
{
protected:
    MachineView() : key_(L"SOFTWARE\\ArvmuiTest_" + std::to_wstring(::GetCurrentProcessId())) {}
    ~MachineView() override
    {
        ::RegDeleteKeyExW(HKEY_LOCAL_MACHINE, key_.c_str(), KEY_WOW64_32KEY, 0);
        ::RegDeleteKeyExW(HKEY_LOCAL_MACHINE, key_.c_str(), KEY_WOW64_64KEY, 0);
    }
    void Store(const wchar_t* name, const std::wstring& text, REGSAM view) const
    {
        StoreValue(HKEY_LOCAL_MACHINE, key_.c_str(), name, REG_SZ, text.c_str(),
            static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)), view);
    }
    std::wstring key_;
};

TEST_F(MachineView, IsThe32BitOneForReading)
{
    Store(L"UILocale", L"thirty-two", KEY_WOW64_32KEY);
    Store(L"UILocale", L"sixty-four", KEY_WOW64_64KEY);
    const Read read = ReadWith(
        [&](wchar_t* buffer) {
            return ReadRegistryString(
                kProductKeyRead, HKEY_LOCAL_MACHINE, key_.c_str(), L"UILocale", buffer, kBufferChars);
        });
    EXPECT_EQ(read, Text(L"thirty-two"));
    const Read listed = ReadWith([&](wchar_t* buffer)
        { return ReadRegistryList((L"HKLM\\" + key_ + L"\\UILocale").c_str(), buffer, kBufferChars); });
    EXPECT_EQ(listed.text, L"thirty-two");
}

TEST_F(MachineView, IsThe32BitOneForWriting)
{
    EXPECT_TRUE(WriteRegistryString(kProductKeyWrite, HKEY_LOCAL_MACHINE, key_.c_str(), L"UILocale", L"de"));
    EXPECT_EQ(StoredText(HKEY_LOCAL_MACHINE, key_.c_str(), L"UILocale", KEY_WOW64_32KEY), L"de");
    EXPECT_EQ(StoredText(HKEY_LOCAL_MACHINE, key_.c_str(), L"UILocale", KEY_WOW64_64KEY), L"<none>");
}

struct Written
{
    BOOL result;
    DWORD error;
    bool operator==(const Written&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Written& written)
{
    return stream << "result " << written.result << " error " << written.error;
}

Written Write(HKEY root, const wchar_t* name, const wchar_t* text, REGSAM access = kProductKeyWrite)
{
    ::SetLastError(kUntouchedError);
    const BOOL result = WriteRegistryString(access, root, L"a\\b", name, text);
    return Written{result, ::GetLastError()};
}

TEST(WriteRegistryString, CreatesTheKeyAndStoresTerminatedText)
{
    ScratchRegistry scratch;
    EXPECT_EQ(Write(scratch.Key(), L"UILocale", L"de,en"), (Written{TRUE, 0}));

    DWORD type = 0;
    wchar_t data[16] = {};
    DWORD bytes = sizeof(data);
    ASSERT_EQ(::RegGetValueW(scratch.Key(), L"a\\b", L"UILocale", RRF_RT_ANY, &type, data, &bytes), ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD{REG_SZ});
    EXPECT_EQ(bytes, 12u);
    EXPECT_STREQ(data, L"de,en");
}

TEST(WriteRegistryString, ReplacesAnOlderValue)
{
    ScratchRegistry scratch;
    const DWORD number = 1;
    StoreValue(scratch.Key(), L"a\\b", L"UILocale", REG_DWORD, &number, sizeof(number));
    EXPECT_EQ(Write(scratch.Key(), L"UILocale", L""), (Written{TRUE, 0}));
    EXPECT_EQ(StoredText(scratch.Key(), L"a\\b", L"UILocale"), L"");
}

// Deliberate: a deletion reports FALSE, and the last-error code tells whether it worked.
TEST(WriteRegistryString, DeletingReportsFalseAndNoError)
{
    ScratchRegistry scratch;
    StoreText(scratch.Key(), L"a\\b", L"UILocale", L"de");
    EXPECT_EQ(Write(scratch.Key(), L"UILocale", nullptr), (Written{FALSE, 0}));
    EXPECT_EQ(StoredText(scratch.Key(), L"a\\b", L"UILocale"), L"<none>");
}

TEST(WriteRegistryString, DeletingWhatIsNotThereReportsFalseAndNoError)
{
    ScratchRegistry scratch;
    EXPECT_EQ(Write(scratch.Key(), L"UILocale", nullptr), (Written{FALSE, 0}));
}

TEST(WriteRegistryString, KeyThatCannotBeMadeIsReported)
{
    EXPECT_EQ(Write(nullptr, L"UILocale", L"de"), (Written{FALSE, ERROR_INVALID_HANDLE}));
}

TEST(WriteRegistryString, ValueThatMayNotBeWrittenIsReported)
{
    ScratchRegistry scratch;
    EXPECT_EQ(Write(scratch.Key(), L"UILocale", L"de", KEY_READ), (Written{FALSE, ERROR_ACCESS_DENIED}));
    EXPECT_EQ(Write(scratch.Key(), L"UILocale", nullptr, KEY_READ), (Written{FALSE, ERROR_ACCESS_DENIED}));
}

struct RootName
{
    const wchar_t* name;
    HKEY root;
};

TEST(RootKeyNames, AreTheFourRootsInBothSpellingsAndAnyCase)
{
    const RootName names[] = {
        {L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
        {L"HKCU", HKEY_CURRENT_USER},
        {L"hkcu", HKEY_CURRENT_USER},
        {L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
        {L"hkey_Local_Machine", HKEY_LOCAL_MACHINE},
        {L"HKLM", HKEY_LOCAL_MACHINE},
        {L"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
        {L"HKCR", HKEY_CLASSES_ROOT},
        {L"HKEY_USERS", HKEY_USERS},
        {L"Hku", HKEY_USERS},
    };
    for (const RootName& entry : names) EXPECT_EQ(RootKeyFromName(entry.name), entry.root) << entry.name;
}

TEST(RootKeyNames, OthersAreNone)
{
    for (const wchar_t* name :
        {L"", L"HK", L"HKC", L"HKCUX", L"HKCC", L"HKEY_CURRENT_CONFIG", L"HKPD", L" HKCU", L"HKCU\\", L"SOFTWARE"})
        EXPECT_EQ(RootKeyFromName(name), nullptr) << name;
}

// The roots that a process can replace for itself are empty keys of this test's own. The classes root
// is not among them: Wine takes its 32-bit view from the system's own key all the same.
class LocationList : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const HKEY root : {HKEY_USERS, HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER})
            ASSERT_TRUE(scratch_.ReplaceRoot(root));
    }
    static std::wstring ReadList(const wchar_t* list)
    {
        const Read read = ReadWith([&](wchar_t* buffer) { return ReadRegistryList(list, buffer, kBufferChars); });
        if (read.length == 0) return L"<nothing>";
        EXPECT_EQ(read.length, read.text.size());
        return read.text;
    }
    ScratchRegistry scratch_;
};

TEST_F(LocationList, RootAndValueMeanTheProductKeyOfThatRoot)
{
    StoreText(HKEY_LOCAL_MACHINE, kProductKey, L"UILocale", L"machine");
    StoreText(HKEY_CURRENT_USER, kProductKey, L"UILocale", L"user");
    StoreText(HKEY_USERS, kProductKey, L"UILocale", L"users");
    EXPECT_EQ(ReadList(L"HKLM\\UILocale"), L"machine");
    EXPECT_EQ(ReadList(L"hkey_local_machine\\uilocale"), L"machine");
    EXPECT_EQ(ReadList(L"HKCU\\UILocale"), L"user");
    EXPECT_EQ(ReadList(L"HKU\\UILocale"), L"users");
}

TEST_F(LocationList, RootPathAndValueMeanThatPlace)
{
    StoreText(HKEY_LOCAL_MACHINE, L"Software\\X", L"Y", L"machine");
    StoreText(HKEY_LOCAL_MACHINE, L"X", L"Y", L"one level");
    StoreText(HKEY_CURRENT_USER, L"Software\\X", L"Y", L"user");
    EXPECT_EQ(ReadList(L"HKLM\\Software\\X\\Y"), L"machine");
    EXPECT_EQ(ReadList(L"HKLM\\X\\Y"), L"one level");
    EXPECT_EQ(ReadList(L"HKEY_CURRENT_USER\\Software\\X\\Y"), L"user");
    EXPECT_EQ(ReadList(L"HKU\\Software\\X\\Y"), L"<nothing>");
}

TEST_F(LocationList, PathWithoutRootMeansTheUserThenTheMachine)
{
    StoreText(HKEY_LOCAL_MACHINE, L"Software\\X", L"Y", L"machine");
    EXPECT_EQ(ReadList(L"Software\\X\\Y"), L"machine");
    StoreText(HKEY_CURRENT_USER, L"Software\\X", L"Y", L"user");
    EXPECT_EQ(ReadList(L"Software\\X\\Y"), L"user");
}

TEST_F(LocationList, PathOfOneKeyWithoutRootIsNotTheProductKey)
{
    StoreText(HKEY_CURRENT_USER, kProductKey, L"Y", L"product");
    StoreText(HKEY_LOCAL_MACHINE, L"Software", L"Y", L"machine");
    EXPECT_EQ(ReadList(L"Software\\Y"), L"machine");
}

TEST_F(LocationList, BareValueMeansTheProductKeyOfTheUserThenTheMachine)
{
    StoreText(HKEY_LOCAL_MACHINE, kProductKey, L"UILocale", L"machine");
    EXPECT_EQ(ReadList(L"UILocale"), L"machine");
    StoreText(HKEY_CURRENT_USER, kProductKey, L"UILocale", L"user");
    EXPECT_EQ(ReadList(L"UILocale"), L"user");
}

TEST_F(LocationList, FirstTextThatIsNotEmptyWins)
{
    StoreText(HKEY_CURRENT_USER, L"a", L"Empty", L"");
    const DWORD number = 1;
    StoreValue(HKEY_CURRENT_USER, L"a", L"Number", REG_DWORD, &number, sizeof(number));
    StoreText(HKEY_CURRENT_USER, L"a", L"Second", L"second");
    StoreText(HKEY_CURRENT_USER, L"a", L"Third", L"third");
    EXPECT_EQ(ReadList(L"HKCU\\a\\Missing,HKLM\\No\\Key,HKCU\\a\\Empty,HKCU\\a\\Number,HKCU\\a\\Second,HKCU\\a\\Third"),
        L"second");
}

TEST_F(LocationList, CommasTabsAndBlanksSeparate)
{
    StoreText(HKEY_CURRENT_USER, L"my key", L"my value", L"found");
    EXPECT_EQ(ReadList(L" ,\t, Missing \t , HKCU\\my key\\my value\t ,"), L"found");
}

TEST_F(LocationList, OtherWhiteSpaceBelongsToTheItem)
{
    StoreText(HKEY_CURRENT_USER, L"a", L"v\n", L"found");
    EXPECT_EQ(ReadList(L"HKCU\\a\\v\n"), L"found");
    EXPECT_EQ(ReadList(L"HKCU\\a\\v"), L"<nothing>");
}

TEST_F(LocationList, EmptyListsGiveNothing)
{
    EXPECT_EQ(ReadList(L""), L"<nothing>");
    EXPECT_EQ(ReadList(L" , \t,"), L"<nothing>");
}

TEST_F(LocationList, ValueNamesMayBeEmpty)
{
    StoreText(HKEY_CURRENT_USER, L"a", nullptr, L"default");
    EXPECT_EQ(ReadList(L"HKCU\\a\\"), L"default");
}

TEST_F(LocationList, PercentSignsAreOrdinary)
{
    StoreText(HKEY_CURRENT_USER, L"100%s", L"%n", L"found");
    EXPECT_EQ(ReadList(L"HKCU\\100%s\\%n"), L"found");
    EXPECT_EQ(ReadList(L"100%s\\%n"), L"found");
    StoreText(HKEY_LOCAL_MACHINE, kProductKey, L"%s%s", L"bare");
    EXPECT_EQ(ReadList(L"%s%s"), L"bare");
}

TEST_F(LocationList, LongItemsAreReadWhole)
{
    const std::wstring key(200, L'k');
    StoreText(HKEY_LOCAL_MACHINE, (key + L"\\" + key + L"\\" + key).c_str(), key.c_str(), L"deep");
    EXPECT_EQ(ReadList((key + L"\\" + key + L"\\" + key + L"\\" + key).c_str()), L"deep");
}

TEST_F(LocationList, ResultIsCutToTheCapacity)
{
    StoreText(HKEY_CURRENT_USER, kProductKey, L"UILocale", L"de,en");
    wchar_t buffer[4];
    EXPECT_EQ(ReadRegistryList(L"UILocale", buffer, 4), 3u);
    EXPECT_STREQ(buffer, L"de,");
}

using FixedPlaces = LocationList;

TEST_F(FixedPlaces, UILocaleIsReadAndWrittenUnderTheGivenRoot)
{
    EXPECT_TRUE(WriteUILocale(HKEY_CURRENT_USER, L"de"));
    EXPECT_TRUE(WriteUILocale(HKEY_LOCAL_MACHINE, L"fr"));
    EXPECT_EQ(StoredText(HKEY_CURRENT_USER, L"SOFTWARE\\Pelkor\\MUI", L"UILocale"), L"de");
    EXPECT_EQ(StoredText(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Pelkor\\MUI", L"UILocale"), L"fr");
    const auto readUser = [](wchar_t* b) { return ReadUILocale(HKEY_CURRENT_USER, b, kBufferChars); };
    const auto readMachine = [](wchar_t* b) { return ReadUILocale(HKEY_LOCAL_MACHINE, b, kBufferChars); };
    EXPECT_EQ(ReadWith(readUser), Text(L"de"));
    EXPECT_EQ(ReadWith(readMachine), Text(L"fr"));

    ::SetLastError(kUntouchedError);
    EXPECT_FALSE(WriteUILocale(HKEY_CURRENT_USER, nullptr));
    EXPECT_EQ(::GetLastError(), 0u);
    EXPECT_EQ(ReadWith(readUser), Failure(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(ReadWith(readMachine), Text(L"fr"));
}

TEST_F(FixedPlaces, InstallUILocaleLiesInTheProductsOwnKeyOfTheMachine)
{
    StoreText(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Pelkor\\MUI\\{product} 100%s", L"InstallUILocale", L"ja");
    StoreText(HKEY_CURRENT_USER, L"SOFTWARE\\Pelkor\\MUI\\{product} 100%s", L"InstallUILocale", L"wrong");
    EXPECT_EQ(
        ReadWith([](wchar_t* b) { return ReadInstallUILocale(L"{product} 100%s", b, kBufferChars); }), Text(L"ja"));
    EXPECT_EQ(ReadWith([](wchar_t* b) { return ReadInstallUILocale(L"other", b, kBufferChars); }),
        Failure(ERROR_FILE_NOT_FOUND));
}

TEST_F(FixedPlaces, BrowserLanguagesAreTheUsers)
{
    StoreText(
        HKEY_CURRENT_USER, L"Software\\Microsoft\\Internet Explorer\\International", L"AcceptLanguage", L"de,en;q=0.5");
    EXPECT_EQ(ReadWith([](wchar_t* b) { return ReadBrowserLanguages(b, kBufferChars); }), Text(L"de,en;q=0.5"));
}

TEST_F(FixedPlaces, BrowserCacheFolderIsTheUsers)
{
    StoreText(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders", L"Cache",
        L"C:\\cache");
    EXPECT_EQ(ReadWith([](wchar_t* b) { return ReadBrowserCacheFolder(b, kBufferChars); }), Text(L"C:\\cache"));
}

}  // namespace
