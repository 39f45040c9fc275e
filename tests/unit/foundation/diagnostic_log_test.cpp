// Diagnostic lines exactly as they are handed to the system.
#include "foundation/diagnostic_log.h"

#include "support/import_replacement.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace
{

std::vector<std::wstring> g_wideLines;
std::vector<std::string> g_narrowLines;
bool g_countBlocks = false;
bool g_noMemory = false;
int g_blocks = 0;

void WINAPI RecordWide(LPCWSTR line)
{
    g_countBlocks = false;
    g_wideLines.emplace_back(line);
}

void WINAPI RecordNarrow(LPCSTR line)
{
    g_countBlocks = false;
    g_narrowLines.emplace_back(line);
}

LPVOID WINAPI CountAlloc(HANDLE heap, DWORD flags, SIZE_T bytes)
{
    static const auto real = ARVMUI_REAL_FUNCTION(L"kernel32.dll", HeapAlloc);
    if (g_countBlocks) ++g_blocks;
    return g_noMemory ? nullptr : real(heap, flags, bytes);
}

}  // namespace

ARVMUI_REPLACE_IMPORT(OutputDebugStringW, &RecordWide)
ARVMUI_REPLACE_IMPORT(OutputDebugStringA, &RecordNarrow)
ARVMUI_REPLACE_IMPORT(HeapAlloc, &CountAlloc)

namespace
{

using arvmui::LogLineA;
using arvmui::LogLineW;

// The same tests for both widths: messages are ASCII and widened where needed.
template <typename Char>
class DiagnosticLine : public testing::Test
{
protected:
    using String = std::basic_string<Char>;

    DiagnosticLine()
    {
        g_wideLines.clear();
        g_narrowLines.clear();
        g_noMemory = false;
        g_blocks = 0;
    }
    ~DiagnosticLine() override
    {
        g_noMemory = false;
        g_countBlocks = false;
    }

    static String Text(const std::string& text) { return String(text.begin(), text.end()); }
    static String Prefix() { return Text("QEL_ARVMUI@" + std::to_string(::GetCurrentThreadId()) + ": "); }

    // Logs a message as the argument of a format and gives the lines that come out of it.
    static std::vector<String> Log(const String& message)
    {
        g_wideLines.clear();
        g_narrowLines.clear();
        g_countBlocks = true;
        if constexpr (std::is_same_v<Char, wchar_t>)
        {
            LogLineW(L"%s", message.c_str());
            g_countBlocks = false;
            EXPECT_TRUE(g_narrowLines.empty());
            return g_wideLines;
        }
        else
        {
            LogLineA("%s", message.c_str());
            g_countBlocks = false;
            EXPECT_TRUE(g_wideLines.empty());
            return g_narrowLines;
        }
    }
    static std::vector<String> Log(const std::string& message) requires(!std::is_same_v<Char, char>)
    {
        return Log(Text(message));
    }

    // Lines whose message follows the prefix.
    static std::vector<String> Line(const std::string& behindPrefix) { return {Prefix() + Text(behindPrefix)}; }

    // A message with which the whole line has `length` characters.
    static std::string MessageForLine(size_t length, const std::string& end = "")
    {
        return std::string(length - Prefix().size() - 2 - end.size(), 'm') + end;
    }
};

using Widths = testing::Types<wchar_t, char>;

struct WidthName
{
    template <typename Char>
    static std::string GetName(int)
    {
        return std::is_same_v<Char, wchar_t> ? "Wide" : "Narrow";
    }
};

TYPED_TEST_SUITE(DiagnosticLine, Widths, WidthName);

TYPED_TEST(DiagnosticLine, HasThePrefixOfItsThreadAndALineEnd)
{
    EXPECT_EQ(this->Log("Something failed: 5"), this->Line("Something failed: 5\r\n"));
}

TYPED_TEST(DiagnosticLine, WithoutAMessageIsDropped)
{
    EXPECT_TRUE(this->Log("").empty());
}

TYPED_TEST(DiagnosticLine, EmptyDetailBecomesAFullStop)
{
    EXPECT_EQ(this->Log("ARVMUI_X: "), this->Line("ARVMUI_X.\r\n"));
}

TYPED_TEST(DiagnosticLine, OnlyAColonWithABlankAtTheEndBecomesAFullStop)
{
    EXPECT_EQ(this->Log("ARVMUI_X:"), this->Line("ARVMUI_X:\r\n"));
    EXPECT_EQ(this->Log("ARVMUI_X:  "), this->Line("ARVMUI_X:  \r\n"));
    EXPECT_EQ(this->Log("ARVMUI_X "), this->Line("ARVMUI_X \r\n"));
    EXPECT_EQ(this->Log("a: b"), this->Line("a: b\r\n"));
}

TYPED_TEST(DiagnosticLine, MessageOfAColonAndABlankIsAFullStop)
{
    EXPECT_EQ(this->Log(": "), this->Line(".\r\n"));
}

TYPED_TEST(DiagnosticLine, ProductsPrefixIsTakenOffTheFunctionsName)
{
    EXPECT_EQ(this->Log("QEL_ARVMUI_Foo failed"), this->Line("Foo failed\r\n"));
}

TYPED_TEST(DiagnosticLine, ProductsPrefixIsTakenOffOnce)
{
    EXPECT_EQ(this->Log("QEL_ARVMUI_QEL_ARVMUI_Foo"), this->Line("QEL_ARVMUI_Foo\r\n"));
}

TYPED_TEST(DiagnosticLine, ProductsPrefixInAnotherPlaceOrCaseStays)
{
    EXPECT_EQ(this->Log(" QEL_ARVMUI_Foo"), this->Line(" QEL_ARVMUI_Foo\r\n"));
    EXPECT_EQ(this->Log("qel_arvmui_Foo"), this->Line("qel_arvmui_Foo\r\n"));
    EXPECT_EQ(this->Log("QEL_ARVMUI"), this->Line("QEL_ARVMUI\r\n"));
}

TYPED_TEST(DiagnosticLine, BothEndsAreTidied)
{
    EXPECT_EQ(this->Log("QEL_ARVMUI_: "), this->Line(".\r\n"));
    EXPECT_EQ(this->Log("QEL_ARVMUI_"), this->Line("\r\n"));
}

TYPED_TEST(DiagnosticLine, Of255CharactersNeedsNoMemory)
{
    const std::string message = this->MessageForLine(255);
    EXPECT_EQ(this->Log(message), this->Line(message + "\r\n"));
    EXPECT_EQ(g_blocks, 0);
}

TYPED_TEST(DiagnosticLine, Of256CharactersIsBuiltOnTheHeap)
{
    const std::string message = this->MessageForLine(256);
    EXPECT_EQ(this->Log(message), this->Line(message + "\r\n"));
    EXPECT_EQ(g_blocks, 1);
}

TYPED_TEST(DiagnosticLine, WhoseLineEndAloneDoesNotFitIsWhole)
{
    const std::string message = this->MessageForLine(257);
    EXPECT_EQ(this->Log(message), this->Line(message + "\r\n"));
}

TYPED_TEST(DiagnosticLine, WhoseMessageDoesNotFitIsWhole)
{
    const std::string message = this->MessageForLine(258);
    EXPECT_EQ(this->Log(message), this->Line(message + "\r\n"));
}

TYPED_TEST(DiagnosticLine, OfAnyLengthIsWhole)
{
    for (const size_t length : {300u, 20000u})
    {
        const std::string message(length, 'm');
        EXPECT_EQ(this->Log(message), this->Line(message + "\r\n"));
    }
}

TYPED_TEST(DiagnosticLine, Of256CharactersStillEndsInAFullStop)
{
    for (const size_t length : {255u, 256u})
    {
        SCOPED_TRACE(length);
        const std::string message = this->MessageForLine(length, ": ");
        EXPECT_EQ(this->Log(message), this->Line(message.substr(0, message.size() - 2) + ".\r\n"));
    }
}

// Deliberate: the end of longer lines is not looked at.
TYPED_TEST(DiagnosticLine, Of257CharactersKeepsItsColon)
{
    const std::string message = this->MessageForLine(257, ": ");
    EXPECT_EQ(this->Log(message), this->Line(message + "\r\n"));
}

// Deliberate: the place at which a longer line is looked at may by chance hold the four characters.
TYPED_TEST(DiagnosticLine, WithAnotherLineEndAtCharacter256EndsThere)
{
    const std::string message = this->MessageForLine(256, ": ") + "\r\nanother line";
    EXPECT_EQ(this->Log(message), this->Line(message.substr(0, message.find(": \r\n")) + ".\r\n"));
}

TYPED_TEST(DiagnosticLine, LongOneLosesTheProductsPrefixToo)
{
    const std::string message(400, 'm');
    EXPECT_EQ(this->Log("QEL_ARVMUI_" + message), this->Line(message + "\r\n"));
}

TYPED_TEST(DiagnosticLine, LongOneIsDroppedWithoutMemory)
{
    g_noMemory = true;
    EXPECT_TRUE(this->Log(this->MessageForLine(300)).empty());
    EXPECT_FALSE(this->Log(this->MessageForLine(100)).empty());
}

TYPED_TEST(DiagnosticLine, PercentSignsInArgumentsAreOrdinary)
{
    EXPECT_EQ(this->Log("100%s %n"), this->Line("100%s %n\r\n"));
}

TEST(DiagnosticFormat, TakesArgumentsOfItsOwnWidth)
{
    g_wideLines.clear();
    g_narrowLines.clear();
    const std::string prefix = "QEL_ARVMUI@" + std::to_string(::GetCurrentThreadId()) + ": ";
    LogLineW(L"%s(%u) failed: %lu", L"wide", 7u, 126ul);
    LogLineA("%s(%u) failed: %lu", "narrow", 7u, 126ul);
    EXPECT_EQ(g_wideLines,
        std::vector<std::wstring>{std::wstring(prefix.begin(), prefix.end()) + L"wide(7) failed: 126\r\n"});
    EXPECT_EQ(g_narrowLines, std::vector<std::string>{prefix + "narrow(7) failed: 126\r\n"});
}

TEST(DiagnosticFormat, LongLinesReadTheirArgumentsAgain)
{
    g_wideLines.clear();
    const std::wstring padding(300, L' ');
    LogLineW(L"%s%d,%s,%lu", padding.c_str(), 1, L"two", 3ul);
    ASSERT_EQ(g_wideLines.size(), 1u);
    EXPECT_NE(g_wideLines[0].find(padding + L"1,two,3\r\n"), std::wstring::npos);
}

TEST(DiagnosticFormat, WideTextStaysWhatItIs)
{
    g_wideLines.clear();
    LogLineW(L"%s", L"\x65E5\x672C \x0440");
    ASSERT_EQ(g_wideLines.size(), 1u);
    EXPECT_NE(g_wideLines[0].find(L"\x65E5\x672C \x0440\r\n"), std::wstring::npos);
}

DWORD WINAPI LogOnThread(void* threadId)
{
    *static_cast<DWORD*>(threadId) = ::GetCurrentThreadId();
    LogLineW(L"from another thread");
    return 0;
}

TEST(DiagnosticFormat, PrefixNamesTheThreadThatLogs)
{
    g_wideLines.clear();
    DWORD threadId = 0;
    const HANDLE thread = ::CreateThread(nullptr, 0, LogOnThread, &threadId, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    EXPECT_EQ(::WaitForSingleObject(thread, 10000), WAIT_OBJECT_0);
    ::CloseHandle(thread);
    EXPECT_NE(threadId, ::GetCurrentThreadId());
    EXPECT_EQ(g_wideLines,
        std::vector<std::wstring>{L"QEL_ARVMUI@" + std::to_wstring(threadId) + L": from another thread\r\n"});
}

}  // namespace
