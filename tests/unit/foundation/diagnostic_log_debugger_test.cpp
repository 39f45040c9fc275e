// Diagnostic lines as a debugger receives them.
#include "foundation/diagnostic_log.h"

#include "foundation/text.h"
#include "support/debug_listener.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using arvmui_test::DebugListener;

class ListeningDebugger : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(listener_.IsListening()); }

    static std::string Line(const std::string& behindPrefix)
    {
        return "QEL_ARVMUI@" + std::to_string(::GetCurrentThreadId()) + ": " + behindPrefix + "\r\n";
    }
    using Texts = std::vector<std::string>;

    DebugListener listener_;
};

TEST_F(ListeningDebugger, ReceivesWideLinesInTheAnsiCodePage)
{
    arvmui::LogLineW(L"%s: %lu", L"caf\x00E9", 126ul);
    char expected[16] = {};
    ::WideCharToMultiByte(CP_ACP, 0, L"caf\x00E9", -1, expected, 16, nullptr, nullptr);
    EXPECT_EQ(listener_.WaitForTexts(1), Texts{Line(std::string(expected) + ": 126")});
}

TEST_F(ListeningDebugger, ReceivesNarrowLines)
{
    arvmui::LogLineA("%s: %lu", "name", 126ul);
    EXPECT_EQ(listener_.WaitForTexts(1), Texts{Line("name: 126")});
}

TEST_F(ListeningDebugger, ReceivesOneTextForEachLine)
{
    arvmui::LogLineW(L"first: ");
    arvmui::LogLineA("");
    arvmui::LogLineW(L"QEL_ARVMUI_second");
    EXPECT_EQ(listener_.WaitForTexts(2), (Texts{Line("first."), Line("second")}));
}

TEST_F(ListeningDebugger, ReceivesLongLinesWhole)
{
    const std::string message(1000, 'm');
    arvmui::LogLineA("%s", message.c_str());
    EXPECT_EQ(listener_.WaitForTexts(1), Texts{Line(message)});
}

TEST_F(ListeningDebugger, HearsOfTextWhoseEndIsMissing)
{
    EXPECT_FALSE(arvmui::IsLatinText(L"abc", 2));
    EXPECT_EQ(listener_.WaitForTexts(1), Texts{"Invalid parameter for ARV_wcsnlen_s()"});
}

}  // namespace
