// The face of a package's default text style, chosen once the substitute is settled.
#include "unit/installer/dialog_font_fixture.h"

namespace
{

using arvmui_test::kDialogFont;
using arvmui_test::kFontSubstitutes;
using arvmui_test::kInterfaceFont;

using Texts = std::vector<std::wstring>;

constexpr UINT kError = ERROR_INVALID_DATA;
constexpr wchar_t kStyleQuery[] = L"SELECT `FaceName` FROM `TextStyle` WHERE `TextStyle`='Normal'";

class DialogInterfaceFont : public arvmui_test::DialogFontTest
{
protected:
    DialogInterfaceFont()
    {
        installer.properties[kDialogFont] = L"Preset";  // needs no writing
        installer.properties[L"DefaultUIFont"] = L"Normal";
        installer.rows[kStyleQuery] = {{L"Style Face"}};
    }

    // The face that is written; what no face is called if none is.
    std::wstring Chosen()
    {
        EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
        const Texts written = Written();
        if (written.empty()) return L"<nothing>";
        EXPECT_EQ(written.size(), 1U);
        const std::wstring start = InterfaceFont(L"");
        EXPECT_EQ(written[0].substr(0, start.size()), start);
        return written[0].substr(start.size());
    }
    static std::wstring ReadingOf(const std::wstring& property, const std::wstring& size)
    {
        return L"MsiGetPropertyW " + property + L" size " + size;
    }
};

TEST_F(DialogInterfaceFont, IsThatOfTheDefaultStyle)
{
    EXPECT_EQ(Chosen(), L"Style Face");
}

TEST_F(DialogInterfaceFont, IsSoughtInOrder)
{
    Chosen();
    const Texts expected = {ReadingOf(kDialogFont, L"0"), ReadingOf(kDialogFont, L"38"),
        ReadingOf(kInterfaceFont, L"0"), ReadingOf(kInterfaceFont, L"32"), ReadingOf(L"DefaultUIFont", L"0"),
        ReadingOf(L"DefaultUIFont", L"38"), L"MsiGetActiveDatabase"};
    const Texts& calls = installer.Calls();
    ASSERT_GE(calls.size(), expected.size() + 2);
    EXPECT_EQ(Texts(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(expected.size())), expected);
    EXPECT_EQ(installer.Statements(), Texts{kStyleQuery});
    EXPECT_EQ(Texts(calls.end() - 2, calls.end()),
        (Texts{L"MsiCloseHandle database", L"MsiSetPropertyW " + InterfaceFont(L"Style Face")}));
}

TEST_F(DialogInterfaceFont, IsNeverReplaced)
{
    installer.properties[kInterfaceFont] = L"No such face";
    EXPECT_EQ(Chosen(), L"<nothing>");
    EXPECT_EQ(installer.CountCalls(ReadingOf(L"DefaultUIFont", L"0")), 0U);
}

TEST_F(DialogInterfaceFont, FollowsASubstituteThatWasJustWritten)
{
    installer.properties.erase(kDialogFont);
    screen.fonts = {{L"Screen", DEFAULT_CHARSET}};
    EXPECT_EQ(Run(), static_cast<UINT>(ERROR_SUCCESS));
    EXPECT_EQ(Written(), (Texts{DialogFont(L"Screen"), InterfaceFont(L"Style Face")}));
}

TEST_F(DialogInterfaceFont, IsThatOfTheFirstRowThoughAllAreRead)
{
    installer.rows[kStyleQuery] = {{L"First"}, {L"Second"}, {L"Third"}};
    EXPECT_EQ(Chosen(), L"First");
    EXPECT_EQ(installer.CountCalls(std::wstring(L"MsiViewFetch ") + kStyleQuery), 4U);
}

TEST_F(DialogInterfaceFont, OfAFirstRowWithoutAFaceIsNotThatOfTheSecond)
{
    installer.rows[kStyleQuery] = {{L""}, {L"Second"}};
    EXPECT_EQ(Chosen(), L"Arial");
}

TEST_F(DialogInterfaceFont, OfAFirstRowThatCannotBeReadIsNotThatOfTheSecond)
{
    installer.rows[kStyleQuery] = {{L"First"}, {L"Second"}};
    installer.Answer(L"MsiRecordGetStringW 1 of First size 0", kError);
    EXPECT_EQ(Chosen(), L"Arial");
}

TEST_F(DialogInterfaceFont, OfAStyleIsCutAt31Characters)
{
    installer.rows[kStyleQuery] = {{std::wstring(40, L'f')}};
    EXPECT_EQ(Chosen(), std::wstring(31, L'f'));
}

struct SourceCase
{
    const char* name;
    const wchar_t* substitute;  // of the dialogs' font; null for none
    std::wstring face;
};

class DialogInterfaceSource : public DialogInterfaceFont, public testing::WithParamInterface<SourceCase>
{
protected:
    void SetUp() override
    {
        StoreMachineText(kFontSubstitutes, L"Other", L"Wrong");
        if (GetParam().substitute) StoreMachineText(kFontSubstitutes, L"MS Shell Dlg", GetParam().substitute);
    }
};

TEST_P(DialogInterfaceSource, IsTheDialogsFontWithoutAStyle)
{
    installer.properties[L"DefaultUIFont"] = L"";
    EXPECT_EQ(Chosen(), GetParam().face);
    EXPECT_EQ(installer.CountCalls(L"MsiGetActiveDatabase"), 0U);
}

TEST_P(DialogInterfaceSource, IsTheDialogsFontWithoutADatabase)
{
    installer.hasActiveDatabase = false;
    EXPECT_EQ(Chosen(), GetParam().face);
    EXPECT_TRUE(installer.Statements().empty());
}

TEST_P(DialogInterfaceSource, IsTheDialogsFontWhereTheStyleHasNoRow)
{
    installer.rows.clear();
    EXPECT_EQ(Chosen(), GetParam().face);
}

TEST_P(DialogInterfaceSource, IsTheDialogsFontWithoutATableOfStyles)
{
    installer.Answer(std::wstring(L"MsiDatabaseOpenViewW ") + kStyleQuery, ERROR_BAD_QUERY_SYNTAX);
    EXPECT_EQ(Chosen(), GetParam().face);
}

TEST_P(DialogInterfaceSource, IsTheDialogsFontWhereTheRowCannotBeRead)
{
    installer.Answer(L"MsiRecordGetStringW 1 of Style Face size 0", kError);
    EXPECT_EQ(Chosen(), GetParam().face);
}

INSTANTIATE_TEST_SUITE_P(Fonts, DialogInterfaceSource,
    testing::Values(SourceCase{"Substitute", L"Shell Face", L"Shell Face"},
        SourceCase{"LongSubstitute", L"A face of a name that is much too long", L"A face of a name that is much t"},
        SourceCase{"EmptySubstitute", L"", L"Arial"}, SourceCase{"NoSubstitute", nullptr, L"Arial"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(DialogInterfaceFont, OfTheStyleIsPreferredToTheDialogsFont)
{
    StoreMachineText(kFontSubstitutes, L"MS Shell Dlg", L"Shell Face");
    EXPECT_EQ(Chosen(), L"Style Face");
}

TEST_F(DialogInterfaceFont, FailsWhenItCannotBeRead)
{
    installer.Answer(ReadingOf(kInterfaceFont, L"0"), kError);
    EXPECT_EQ(Run(), kError);
    EXPECT_TRUE(Written().empty());
    EXPECT_EQ(installer.CountCalls(ReadingOf(L"DefaultUIFont", L"0")), 0U);
}

TEST_F(DialogInterfaceFont, FailsWhenTheStyleCannotBeRead)
{
    installer.Answer(ReadingOf(L"DefaultUIFont", L"0"), kError);
    EXPECT_EQ(Run(), kError);
    EXPECT_TRUE(Written().empty());
    EXPECT_EQ(installer.CountCalls(L"MsiGetActiveDatabase"), 0U);
}

TEST_F(DialogInterfaceFont, FailsWhenItCannotBeWritten)
{
    installer.Answer(L"MsiSetPropertyW " + InterfaceFont(L"Style Face"), kError);
    EXPECT_EQ(Run(), kError);
}

// Only properties can make the action fail; what the package or the machine lacks cannot.
TEST_F(DialogInterfaceFont, OnlyPropertiesDecideAboutTheResult)
{
    installer.properties.erase(kDialogFont);
    screen.fonts = {{L"Screen", DEFAULT_CHARSET}};
    ExpectEachFailure(
        [this]
        {
            installer.properties.erase(kDialogFont);
            installer.properties.erase(kInterfaceFont);
            return Run();
        },
        kError,
        [](const std::wstring& call)
        { return call.find(L"PropertyW ") != std::wstring::npos ? kError : static_cast<UINT>(ERROR_SUCCESS); });
}

TEST_F(DialogInterfaceFont, NothingIsLeftBehindWithoutMemory)
{
    screen.fonts = {{L"Screen", DEFAULT_CHARSET}};
    for (size_t number = 0;; ++number)
    {
        ASSERT_LT(number, 1000U);
        installer.properties.erase(kInterfaceFont);
        heap.FailAt(number);
        Run();
        const bool hasFailed = heap.HasFailed();
        heap.FailNever();
        EXPECT_EQ(heap.LiveBlocks(), 0U) << number;
        EXPECT_EQ(installer.OpenHandles(), 1U) << number;
        if (!hasFailed) break;
    }
}

}  // namespace
