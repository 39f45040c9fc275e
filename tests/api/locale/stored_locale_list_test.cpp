// The locale list of a process that was given none, as it is stored in the registry.
#include "arvmui.h"
#include "support/candidate_recorder.h"
#include "support/environment_variable.h"
#include "support/scratch_registry.h"
#include "support/system_languages.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

using arvmui_test::CandidateRecorder;

constexpr wchar_t kProductKey[] = L"SOFTWARE\\Pelkor\\MUI";
constexpr wchar_t kValue[] = L"UILocale";

void SetValue(HKEY root, DWORD type, const void* data, size_t bytes)
{
    arvmui_test::StoreValue(root, kProductKey, kValue, type, data, static_cast<DWORD>(bytes), KEY_WOW64_32KEY);
}

void SetText(HKEY root, const std::wstring& text, DWORD type = REG_SZ)
{
    SetValue(root, type, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

class StoredLocaleList : public testing::Test
{
protected:
    StoredLocaleList() : languages(arvmui_test::LibraryUnderTest())
    {
        languages.user = 0x0407;
        languages.system = 0x040C;
        for (auto& hint : ARVMUI_GetDescriptor()->LocaleHintTable) hint[0] = L'\0';
    }

    void SetUp() override
    {
        // The machine first: its stand-in lies below the user's own key.
        ASSERT_TRUE(registry.ReplaceRoot(HKEY_LOCAL_MACHINE));
        ASSERT_TRUE(registry.ReplaceRoot(HKEY_CURRENT_USER));
    }

    static std::wstring Offered()
    {
        CandidateRecorder recorder;
        EXPECT_EQ(ARVMUI_EnumLocalesW(nullptr, CandidateRecorder::Record, &recorder), 0u);
        return recorder.offered;
    }

    arvmui_test::ScratchRegistry registry;
    arvmui_test::SystemLanguages languages;
};

constexpr wchar_t kDefaultCandidates[] = L"de-DE|de|fr-FR|fr|en|..|..\\en|";

TEST_F(StoredLocaleList, MissingValuesMeanSettingsFileUserAndSystem)
{
    EXPECT_EQ(Offered(), kDefaultCandidates);
}

TEST_F(StoredLocaleList, UsersValueCountsBeforeTheMachines)
{
    SetText(HKEY_LOCAL_MACHINE, L"nl");
    EXPECT_EQ(Offered(), L"nl|en|..|..\\en|");
    SetText(HKEY_CURRENT_USER, L"ja,system");
    EXPECT_EQ(Offered(), L"ja|fr-FR|fr|en|..|..\\en|");
}

TEST_F(StoredLocaleList, EmptyUsersValueLetsTheMachinesCount)
{
    SetText(HKEY_CURRENT_USER, L"");
    SetText(HKEY_LOCAL_MACHINE, L"nl");
    EXPECT_EQ(Offered(), L"nl|en|..|..\\en|");
}

TEST_F(StoredLocaleList, ValueOfAnotherTypeLetsTheMachinesCount)
{
    const DWORD number = 1041;
    SetValue(HKEY_CURRENT_USER, REG_DWORD, &number, sizeof(number));
    SetText(HKEY_LOCAL_MACHINE, L"nl");
    EXPECT_EQ(Offered(), L"nl|en|..|..\\en|");
}

TEST_F(StoredLocaleList, ValuesOfAnotherTypeMeanTheDefault)
{
    const DWORD number = 1041;
    SetValue(HKEY_CURRENT_USER, REG_DWORD, &number, sizeof(number));
    SetText(HKEY_LOCAL_MACHINE, L"nl", REG_MULTI_SZ);
    EXPECT_EQ(Offered(), kDefaultCandidates);
}

TEST_F(StoredLocaleList, ListWithoutItemsIsStillTheList)
{
    SetText(HKEY_CURRENT_USER, L" ");
    SetText(HKEY_LOCAL_MACHINE, L"nl");
    EXPECT_EQ(Offered(), L"en|..|..\\en|");
}

TEST_F(StoredLocaleList, ExpandableValueIsExpanded)
{
    const arvmui_test::EnvironmentVariable variable(L"ARVMUI_TEST_LIST", L"nl,pl");
    SetText(HKEY_CURRENT_USER, L"%ARVMUI_TEST_LIST%", REG_EXPAND_SZ);
    EXPECT_EQ(Offered(), L"nl|pl|en|..|..\\en|");
}

TEST_F(StoredLocaleList, UnterminatedAndOddSizedDataIsRead)
{
    const wchar_t text[] = {L'n', L'l', L',', L'p', L'l'};
    SetValue(HKEY_CURRENT_USER, REG_SZ, text, sizeof(text));
    EXPECT_EQ(Offered(), L"nl|pl|en|..|..\\en|");
    SetValue(HKEY_CURRENT_USER, REG_SZ, text, sizeof(text) - 1);
    EXPECT_EQ(Offered(), L"nl|p|en|..|..\\en|");
}

TEST_F(StoredLocaleList, IsCutAt255Characters)
{
    const std::wstring item(255, L'x');
    SetText(HKEY_CURRENT_USER, item + L"yyyy");
    EXPECT_EQ(Offered(), item + L"|..|..\\en|");
}

TEST_F(StoredLocaleList, IsNotAskedForWhenTheProcessHasAList)
{
    SetText(HKEY_CURRENT_USER, L"nl");
    wcscpy_s(ARVMUI_GetDescriptor()->LocaleHintTable[HINT_COMMAND_LINE], L"pl");
    EXPECT_EQ(Offered(), L"pl|en|..|..\\en|");
    wcscpy_s(ARVMUI_GetDescriptor()->LocaleHintTable[HINT_COMMAND_LINE], L"\t");
    EXPECT_EQ(Offered(), L"en|..|..\\en|");
}

TEST_F(StoredLocaleList, ReadingItLeavesTheLastErrorAlone)
{
    const auto consumer = [](const wchar_t*, void*) -> DWORD { return 0; };
    ::SetLastError(4711);
    ARVMUI_EnumLocalesW(nullptr, consumer, nullptr);
    EXPECT_EQ(::GetLastError(), 4711u);
    SetText(HKEY_CURRENT_USER, L"nl");
    ARVMUI_EnumLocalesW(nullptr, consumer, nullptr);
    EXPECT_EQ(::GetLastError(), 4711u);
}

struct OpenedKey
{
    HKEY root;
    std::wstring path;
    REGSAM access;
};
std::vector<OpenedKey> g_opened;

LSTATUS WINAPI RecordOpening(HKEY root, const wchar_t* path, DWORD, REGSAM access, HKEY*)
{
    g_opened.push_back({root, path, access});
    return ERROR_FILE_NOT_FOUND;
}

TEST_F(StoredLocaleList, IsReadFromTheThirtyTwoBitView)
{
    g_opened.clear();
    const arvmui_test::ImportPatch patch(arvmui_test::LibraryUnderTest(), "RegOpenKeyExW", &RecordOpening);
    EXPECT_EQ(Offered(), kDefaultCandidates);
    ASSERT_EQ(g_opened.size(), 2u);
    EXPECT_EQ(g_opened[0].root, HKEY_CURRENT_USER);
    EXPECT_EQ(g_opened[1].root, HKEY_LOCAL_MACHINE);
    for (const OpenedKey& key : g_opened)
    {
        EXPECT_EQ(key.path, kProductKey);
        EXPECT_EQ(key.access, static_cast<REGSAM>(0x20219));
    }
}

}  // namespace
