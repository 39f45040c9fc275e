// What no export reaches of the locale search: expanding a list into plain tags, as attach does it, and
// the null candidate in the narrow form.
#include "locale/locale_search.h"

#include "resources/process_state.h"
#include "support/busy_blocks.h"
#include "support/candidate_recorder.h"
#include "support/system_languages.h"

#include <gtest/gtest.h>

#include <ostream>

namespace
{

using namespace arvmui;

class ExpandedLocaleList : public testing::Test
{
protected:
    ExpandedLocaleList() : languages(::GetModuleHandleW(nullptr))
    {
        languages.user = 0x0407;
        languages.system = 0x040C;
        languages.userInterface = 0x0410;
        languages.systemInterface = 0x0411;
        for (unsigned slot = 0; slot < ARVMUI_HINT_COUNT; ++slot) SetLocaleHint(Descriptor(), slot, nullptr);
    }
    ~ExpandedLocaleList() override
    {
        for (unsigned slot = 0; slot < ARVMUI_HINT_COUNT; ++slot) SetLocaleHint(Descriptor(), slot, nullptr);
    }

    static std::wstring Expand(const wchar_t* list)
    {
        wchar_t text[1024] = L"before";
        const DWORD length = ExpandLocaleList(list, text, 1024);
        EXPECT_EQ(length, wcslen(text));
        return text;
    }

    arvmui_test::SystemLanguages languages;
};

struct ExpansionCase
{
    const char* name;
    const wchar_t* settingsFile;
    const wchar_t* browser;
    const wchar_t* asked;
    const wchar_t* list;
    const wchar_t* expanded;
};

void PrintTo(const ExpansionCase& value, std::ostream* out)
{
    *out << value.name;
}

class ExpandedList : public ExpandedLocaleList, public testing::WithParamInterface<ExpansionCase>
{
};

TEST_P(ExpandedList, Holds)
{
    SetLocaleHint(Descriptor(), HINT_SETTINGS_FILE, GetParam().settingsFile);
    SetLocaleHint(Descriptor(), HINT_BROWSER, GetParam().browser);
    SetLocaleHint(Descriptor(), HINT_ASKED, GetParam().asked);
    EXPECT_EQ(Expand(GetParam().list), GetParam().expanded);
}

INSTANTIATE_TEST_SUITE_P(Lists, ExpandedList,
    testing::Values(ExpansionCase{"EmptyList", L"", L"", L"", L"", L""},
        ExpansionCase{"NeitherDerivedFormsNorFallbacks", L"", L"", L"", L"de-DE-x,fr-CA", L"de-DE-x,fr-CA"},
        ExpansionCase{"NumbersBecomeTags", L"", L"", L"", L"0x0407,1036,7", L"de-DE,fr-FR"},
        ExpansionCase{"UnknownNumbersVanish", L"", L"", L"", L"0,102", L""},
        ExpansionCase{"SystemsLanguages", L"", L"", L"", L"user,system,uilang", L"de-DE,fr-FR,it-IT,ja-JP"},
        ExpansionCase{"Duplicates", L"", L"", L"", L"en-US,en,EN-us,user,1031", L"en-US,de-DE"},
        ExpansionCase{"UnreadSettingsFileStaysAKeyword", L"", L"", L"", L"kiv,user", L"kiv,de-DE"},
        ExpansionCase{"UnreadSettingsFileOnce", L"", L"", L"", L"kiv,user,kiv", L"kiv,de-DE"},
        ExpansionCase{"ReadSettingsFile", L"nl,pl-PL", L"", L"", L"kiv,user", L"nl,pl-PL,de-DE"},
        ExpansionCase{"EmptySettingsFile", L"\t", L"", L"", L"kiv,user", L"de-DE"},
        ExpansionCase{"SettingsFileNamesItself", L"kiv,nl", L"", L"", L"kiv", L"nl"},
        ExpansionCase{"EmptyBrowserVanishes", L"", L"", L"", L"msie,user", L"de-DE"},
        ExpansionCase{"Browser", L"", L"nl,msie,kiv", L"", L"msie,user", L"nl,kiv,de-DE"},
        ExpansionCase{"Answer", L"", L"", L"nl,ask,pl", L"ask,user", L"nl,pl,de-DE"},
        ExpansionCase{"AskingInVainEndsTheList", L"", L"", L"", L"nl,ask,user", L"nl"}),
    [](const testing::TestParamInfo<ExpansionCase>& parameter) { return std::string(parameter.param.name); });

TEST_F(ExpandedLocaleList, NullIsTheListOfTheProcess)
{
    SetLocaleHint(Descriptor(), HINT_COMMAND_LINE, L"1041,user");
    EXPECT_EQ(Expand(nullptr), L"ja-JP,de-DE");
}

TEST_F(ExpandedLocaleList, IdentifierInPlaceOfTheList)
{
    EXPECT_EQ(Expand(reinterpret_cast<const wchar_t*>(static_cast<ULONG_PTR>(0x0407))), L"de-DE");
    EXPECT_EQ(Expand(reinterpret_cast<const wchar_t*>(static_cast<ULONG_PTR>(0x0066))), L"");
}

TEST_F(ExpandedLocaleList, AskingInVainMarksTheHint)
{
    Expand(L"ask");
    EXPECT_STREQ(GetLocaleHint(Descriptor(), HINT_ASKED), L"\t");
}

struct CutCase
{
    const char* name;
    size_t characters;  // of the expanded list
    DWORD capacity;
    size_t kept;
};

void PrintTo(const CutCase& value, std::ostream* out)
{
    *out << value.name;
}

class CutExpandedList : public ExpandedLocaleList, public testing::WithParamInterface<CutCase>
{
};

TEST_P(CutExpandedList, KeepsItsBeginning)
{
    const std::wstring list = L"de-DE,fr-FR," + std::wstring(GetParam().characters - 12, L'x');
    wchar_t text[128];
    for (wchar_t& character : text) character = L'#';
    EXPECT_EQ(ExpandLocaleList(list.c_str(), text, GetParam().capacity), GetParam().kept);
    EXPECT_EQ(text, list.substr(0, GetParam().kept));
    for (size_t i = GetParam().capacity; i < 128; ++i) EXPECT_EQ(text[i], L'#');
}

INSTANTIATE_TEST_SUITE_P(Lengths, CutExpandedList,
    testing::Values(CutCase{"SixtyTwoCharacters", 62, 64, 62}, CutCase{"SixtyThreeCharacters", 63, 64, 63},
        CutCase{"SixtyFourCharacters", 64, 64, 63}, CutCase{"CapacityTwo", 63, 2, 1}, CutCase{"CapacityOne", 63, 1, 0}),
    [](const testing::TestParamInfo<CutCase>& parameter) { return std::string(parameter.param.name); });

TEST_F(ExpandedLocaleList, LeavesNoMemoryBehind)
{
    Expand(L"user,system");
    const size_t before = arvmui_test::CountBusyBlocks();
    Expand(L"user,system,uilang,kiv,msie,ask,en-US");
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

using Allocate = void*(WINAPI*)(HANDLE, DWORD, SIZE_T);
using Reallocate = void*(WINAPI*)(HANDLE, DWORD, void*, SIZE_T);

Allocate g_allocate = nullptr;
Reallocate g_reallocate = nullptr;
unsigned g_allocationsUntilFailure = UINT_MAX;

void* WINAPI AllocateUntilFailure(HANDLE heap, DWORD flags, SIZE_T bytes)
{
    if (g_allocationsUntilFailure == 0) return nullptr;
    if (g_allocationsUntilFailure != UINT_MAX) --g_allocationsUntilFailure;
    return g_allocate(heap, flags, bytes);
}

void* WINAPI ReallocateUntilFailure(HANDLE heap, DWORD flags, void* block, SIZE_T bytes)
{
    if (g_allocationsUntilFailure == 0) return nullptr;
    if (g_allocationsUntilFailure != UINT_MAX) --g_allocationsUntilFailure;
    return g_reallocate(heap, flags, block, bytes);
}

TEST_F(ExpandedLocaleList, IsEmptyWithoutMemory)
{
    const std::wstring list = std::wstring(120, L'a') + L"," + std::wstring(120, L'b');
    const size_t before = arvmui_test::CountBusyBlocks();
    const arvmui_test::ImportPatch allocate(::GetModuleHandleW(nullptr), "HeapAlloc", &AllocateUntilFailure);
    const arvmui_test::ImportPatch reallocate(::GetModuleHandleW(nullptr), "HeapReAlloc", &ReallocateUntilFailure);
    g_allocate = allocate.Original<Allocate>();
    g_reallocate = reallocate.Original<Reallocate>();
    unsigned failures = 0;  // one for each allocation on the way
    for (unsigned allocations = 0; allocations < 20; ++allocations)
    {
        wchar_t text[300] = L"before";
        g_allocationsUntilFailure = allocations;
        const DWORD length = ExpandLocaleList(list.c_str(), text, 300);
        g_allocationsUntilFailure = UINT_MAX;
        if (length == list.size()) break;
        ++failures;
        EXPECT_EQ(length, 0u);
        EXPECT_STREQ(text, L"");
    }
    EXPECT_GE(failures, 2u);
    EXPECT_LT(failures, 20u);
    EXPECT_EQ(arvmui_test::CountBusyBlocks(), before);
}

// A search that offers what an unanswered language dialog offers.
DWORD SearchThatIsRefused(const wchar_t*, ARVMUI_LocaleCallbackW consumer, void* context, DWORD) noexcept
{
    return consumer(nullptr, context);
}

TEST(NarrowSearch, RefusalIsRejectedWithoutACall)
{
    const arvmui_test::FunctionPatch patch(
        reinterpret_cast<void*>(&SearchLocales), reinterpret_cast<void*>(&SearchThatIsRefused));
    arvmui_test::NarrowCandidateRecorder recorder;
    EXPECT_EQ(ARVMUI_EnumLocalesA("ask", arvmui_test::NarrowCandidateRecorder::Record, &recorder), 0u);
    EXPECT_EQ(recorder.nulls, 0u);
    EXPECT_EQ(recorder.offered, "");
}

DWORD ARVMUI_CALLBACK CountNull(const wchar_t* candidate, void* context)
{
    if (candidate) return 0;
    ++*static_cast<unsigned*>(context);
    return 7;
}

TEST(WideSearch, RefusalReachesTheConsumer)
{
    const arvmui_test::FunctionPatch patch(
        reinterpret_cast<void*>(&SearchLocales), reinterpret_cast<void*>(&SearchThatIsRefused));
    unsigned nulls = 0;
    EXPECT_EQ(ARVMUI_EnumLocalesW(L"ask", CountNull, &nulls), 7u);
    EXPECT_EQ(nulls, 1u);
}

}  // namespace
