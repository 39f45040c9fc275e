// Comparisons: the exact calls of the system's comparison, and their results.
#include "foundation/text.h"

#include "support/import_replacement.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace
{

struct Call
{
    LCID locale;
    DWORD flags;
    int leftLength;
    int rightLength;
    bool operator==(const Call&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Call& call)
{
    return stream << std::hex << "locale " << call.locale << " flags " << call.flags << std::dec << " lengths "
                  << call.leftLength << ", " << call.rightLength;
}

Call g_call;
const void* g_left;
const void* g_right;
int g_wideCalls;
int g_narrowCalls;
int g_answer;  // 0: the system's own

int WINAPI FakeCompareW(LCID locale, DWORD flags, PCNZWCH left, int leftLength, PCNZWCH right, int rightLength)
{
    ++g_wideCalls;
    g_call = {locale, flags, leftLength, rightLength};
    g_left = left;
    g_right = right;
    if (g_answer) return g_answer;
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", CompareStringW)(locale, flags, left, leftLength, right, rightLength);
}

int WINAPI FakeCompareA(LCID locale, DWORD flags, PCNZCH left, int leftLength, PCNZCH right, int rightLength)
{
    ++g_narrowCalls;
    g_call = {locale, flags, leftLength, rightLength};
    g_left = left;
    g_right = right;
    if (g_answer) return g_answer;
    return ARVMUI_REAL_FUNCTION(L"kernel32.dll", CompareStringA)(locale, flags, left, leftLength, right, rightLength);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(CompareStringW, &FakeCompareW)
ARVMUI_REPLACE_IMPORT(CompareStringA, &FakeCompareA)

namespace
{

using namespace arvmui;

constexpr LCID kUser = 0x0400;
constexpr LCID kEnglish = 0x0409;
constexpr DWORD kStringSort = 0x1000;
constexpr DWORD kIgnoreCase = 0x1001;

class Comparison : public testing::Test
{
protected:
    Comparison()
    {
        g_wideCalls = 0;
        g_narrowCalls = 0;
        g_answer = 0;
    }
    void ExpectWide(const Call& call)
    {
        EXPECT_EQ(g_wideCalls, 1);
        EXPECT_EQ(g_narrowCalls, 0);
        EXPECT_EQ(g_call, call);
    }
    void ExpectNarrow(const Call& call)
    {
        EXPECT_EQ(g_wideCalls, 0);
        EXPECT_EQ(g_narrowCalls, 1);
        EXPECT_EQ(g_call, call);
    }
};

TEST_F(Comparison, CaseSensitiveWideFollowsTheUser)
{
    const wchar_t left[] = L"abc";
    const wchar_t right[] = L"abd";
    EXPECT_EQ(CompareText(left, right), -1);
    ExpectWide({kUser, kStringSort, -1, -1});
    EXPECT_EQ(g_left, left);
    EXPECT_EQ(g_right, right);
}

TEST_F(Comparison, CaseSensitiveNarrowFollowsTheUser)
{
    const char left[] = "abc";
    const char right[] = "abd";
    EXPECT_EQ(CompareText(left, right), -1);
    ExpectNarrow({kUser, kStringSort, -1, -1});
    EXPECT_EQ(g_left, left);
    EXPECT_EQ(g_right, right);
}

TEST_F(Comparison, CaseInsensitiveWideIsEnglishEverywhere)
{
    EXPECT_EQ(CompareTextNoCase(L"ABC", L"abc"), 0);
    ExpectWide({kEnglish, kIgnoreCase, -1, -1});
}

TEST_F(Comparison, CaseInsensitiveNarrowIsEnglishEverywhere)
{
    EXPECT_EQ(CompareTextNoCase("ABC", "abc"), 0);
    ExpectNarrow({kEnglish, kIgnoreCase, -1, -1});
}

// Deliberate: the wide forms pass the count for both sides, the narrow ones end at the terminators.
TEST_F(Comparison, WideCountIsPassedOnWhateverTheTextsHold)
{
    const wchar_t left[] = L"ab\0x";
    const wchar_t right[] = L"ab\0y";
    EXPECT_NE(CompareTextN(left, right, 4), 0);
    ExpectWide({kUser, kStringSort, 4, 4});
}

TEST_F(Comparison, WideCountWithoutCaseIsPassedOnWhateverTheTextsHold)
{
    const wchar_t left[] = L"AB\0x";
    const wchar_t right[] = L"ab\0y";
    EXPECT_NE(CompareTextNoCaseN(left, right, 4), 0);
    ExpectWide({kEnglish, kIgnoreCase, 4, 4});
}

TEST_F(Comparison, NarrowCountIsCutAtEachTerminator)
{
    const char left[] = "ab\0x";
    const char right[] = "abc\0y";
    EXPECT_EQ(CompareTextN(left, right, 4), -1);
    ExpectNarrow({kUser, kStringSort, 2, 3});
}

TEST_F(Comparison, NarrowCountWithoutCaseIsCutAtEachTerminator)
{
    const char left[] = "AB\0x";
    const char right[] = "abc\0y";
    EXPECT_EQ(CompareTextNoCaseN(left, right, 4), -1);
    ExpectNarrow({kEnglish, kIgnoreCase, 2, 3});
}

TEST_F(Comparison, NarrowCountBoundsLongerTexts)
{
    EXPECT_EQ(CompareTextN("abcX", "abcY", 3), 0);
    ExpectNarrow({kUser, kStringSort, 3, 3});
}

TEST_F(Comparison, NarrowCountWithoutCaseBoundsLongerTexts)
{
    EXPECT_EQ(CompareTextNoCaseN("ABCX", "abcY", 3), 0);
    ExpectNarrow({kEnglish, kIgnoreCase, 3, 3});
}

TEST_F(Comparison, WideCountBoundsTheTexts)
{
    EXPECT_EQ(CompareTextN(L"abcX", L"abcY", 3), 0);
    EXPECT_EQ(CompareTextNoCaseN(L"ABCX", L"abcY", 3), 0);
    EXPECT_EQ(CompareTextNoCaseN(L"ABCX", L"abcY", 4), -1);
}

// The system's answers are 1, 2, 3; 0 is a failure.
TEST_F(Comparison, AnswersBecomeAnOrder)
{
    const std::pair<int, int> answers[] = {{CSTR_LESS_THAN, -1}, {CSTR_EQUAL, 0}, {CSTR_GREATER_THAN, 1}, {99, 1}};
    for (const auto& [answer, order] : answers)
    {
        SCOPED_TRACE(answer);
        g_answer = answer;
        EXPECT_EQ(CompareText(L"a", L"b"), order);
        EXPECT_EQ(CompareText("a", "b"), order);
        EXPECT_EQ(CompareTextN(L"a", L"b", 1), order);
        EXPECT_EQ(CompareTextN("a", "b", 1), order);
        EXPECT_EQ(CompareTextNoCase(L"a", L"b"), order);
        EXPECT_EQ(CompareTextNoCase("a", "b"), order);
        EXPECT_EQ(CompareTextNoCaseN(L"a", L"b", 1), order);
        EXPECT_EQ(CompareTextNoCaseN("a", "b", 1), order);
    }
}

TEST_F(Comparison, FailureCountsAsGreater)
{
    EXPECT_EQ(CompareText(static_cast<const wchar_t*>(nullptr), L"a"), 1);
    EXPECT_EQ(CompareText(static_cast<const char*>(nullptr), "a"), 1);
    EXPECT_EQ(CompareTextNoCase(static_cast<const wchar_t*>(nullptr), L"a"), 1);
    EXPECT_EQ(CompareTextNoCase(static_cast<const char*>(nullptr), "a"), 1);
}

TEST_F(Comparison, CaseMattersOnlyWhereItShould)
{
    EXPECT_NE(CompareText(L"abc", L"ABC"), 0);
    EXPECT_NE(CompareText("abc", "ABC"), 0);
    EXPECT_NE(CompareTextN(L"abc", L"ABC", 3), 0);
    EXPECT_NE(CompareTextN("abc", "ABC", 3), 0);
    EXPECT_EQ(CompareTextNoCase(L"\x00C4", L"\x00E4"), 0);
}

TEST_F(Comparison, HyphensCount)
{
    EXPECT_NE(CompareText(L"coop", L"co-op"), 0);
    EXPECT_NE(CompareTextNoCase(L"enUS", L"en-US"), 0);
}

}  // namespace
