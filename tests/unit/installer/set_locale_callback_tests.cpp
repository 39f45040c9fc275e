// What becomes of the locales that a search offers to an installation.
#include "unit/installer/set_locale_fixture.h"

namespace
{

using arvmui_test::InstallerRow;
using arvmui_test::OfferedLocales;
using arvmui_test::SetLocaleTest;
using Texts = std::vector<std::wstring>;

constexpr UINT kCancelled = 1602;
constexpr UINT kFailed = 1627;
constexpr wchar_t kTables[] = L"SELECT `Name` FROM `_Tables`";

class OfferedLocale : public SetLocaleTest
{
protected:
    UINT SetLocaleOf(std::vector<std::optional<std::wstring>> offers)
    {
        locales_.offers = std::move(offers);
        locales_.answers.clear();
        installer.ForgetCalls();
        return SetLocale();
    }

    // Whether each offer ended the search.
    std::vector<bool> Stops() const
    {
        std::vector<bool> stops;
        for (const DWORD answer : locales_.answers) stops.push_back(answer != 0);
        return stops;
    }

    OfferedLocales locales_;
};

TEST_F(OfferedLocale, ThatIsMissingIsACancellation)
{
    EXPECT_EQ(SetLocaleOf({std::nullopt, L"en"}), kCancelled);
    EXPECT_EQ(Stops(), std::vector<bool>{true});
    EXPECT_TRUE(installer.CallsOf(L"MsiSetPropertyW").empty());
}

TEST_F(OfferedLocale, ThatThePackageLacksIsPassedOver)
{
    EXPECT_EQ(SetLocaleOf({L"xx", L"zh", L"de-DE", L"en"}), ERROR_SUCCESS);
    EXPECT_EQ(Stops(), (std::vector<bool>{false, false, false, true}));
    EXPECT_EQ(installer.properties[L"UILOCALE"], L"en");
}

TEST_F(OfferedLocale, MayBeCancelledBehindOnesThatThePackageLacks)
{
    EXPECT_EQ(SetLocaleOf({L"xx", std::nullopt}), kCancelled);
}

TEST_F(OfferedLocale, HasToBeOneOfThePackage)
{
    EXPECT_EQ(SetLocaleOf({L"xx", L"..", L"..\\en"}), kFailed);
    EXPECT_TRUE(installer.CallsOf(L"MsiSetPropertyW").empty());
}

TEST_F(OfferedLocale, HasToExist)
{
    EXPECT_EQ(SetLocaleOf({}), kFailed);
}

TEST_F(OfferedLocale, CannotBeOneOfAPackageWithoutLocales)
{
    installer.rows[arvmui_test::kLocaleQuery].clear();
    EXPECT_EQ(SetLocaleOf({L"en"}), kFailed);
}

TEST_F(OfferedLocale, IsFoundInAnyCaseAndStoredAsThePackageWritesIt)
{
    EXPECT_EQ(SetLocaleOf({L"ZH-cn"}), ERROR_SUCCESS);
    EXPECT_EQ(installer.properties[L"UILOCALE"], L"zh-CN");
}

TEST_F(OfferedLocale, IsTheFirstEntryOfItsTag)
{
    installer.rows[arvmui_test::kLocaleQuery] = {
        {L"xx", L"1033", L"", L""}, {L"DE", L"1033", L"", L""}, {L"de", L"1031", L"", L""}};
    EXPECT_EQ(SetLocaleOf({L"de"}), ERROR_SUCCESS);
    EXPECT_EQ(installer.properties[L"UILOCALE"], L"DE");
    EXPECT_EQ(installer.Statements().back().find(kTables), std::wstring::npos);
}

TEST_F(OfferedLocale, IsTheFirstThatThePackageHas)
{
    EXPECT_EQ(SetLocaleOf({L"de", L"en"}), ERROR_SUCCESS);
    EXPECT_EQ(Stops(), std::vector<bool>{true});
    EXPECT_EQ(installer.CallsOf(L"MsiSetPropertyW"), Texts{L"MsiSetPropertyW UILOCALE=de"});
}

// ---- English --------------------------------------------------------------------------------------------

struct LanguageCase
{
    const wchar_t* language;
    bool isEnglish;
};

TEST_F(OfferedLocale, IsTranslatedUnlessItsPrimaryLanguageIsEnglish)
{
    for (const auto& [language, isEnglish] :
        {LanguageCase{L"1033", true}, {L"2057", true}, {L"9", true}, {L"4105", true}, {L"1031", false},
            {L"1043", false}, {L"8", false}, {L"10", false}, {L"0", false}, {L"521", false}, {L"265", false}})
    {
        installer.rows[arvmui_test::kLocaleQuery] = {{L"xx", language, L"", L""}};
        EXPECT_EQ(SetLocaleOf({L"xx"}), ERROR_SUCCESS);
        const Texts statements = installer.Statements();
        const bool isTranslated = std::find(statements.begin(), statements.end(), kTables) != statements.end();
        EXPECT_EQ(isTranslated, !isEnglish) << "language " << std::string(language, language + wcslen(language));
        EXPECT_EQ(installer.CallsOf(L"MsiSetPropertyW"), Texts{L"MsiSetPropertyW UILOCALE=xx"});
    }
}

TEST_F(OfferedLocale, ThatIsEnglishTouchesNoTable)
{
    EXPECT_EQ(SetLocaleOf({L"en"}), ERROR_SUCCESS);
    EXPECT_TRUE(installer.CallsOf(L"MsiViewModify").empty());
    for (const std::wstring& statement : installer.Statements())
        EXPECT_NE(statement.find(L"`ARVUI"), std::wstring::npos) << "a statement on another table";
}

// ---- Translation ----------------------------------------------------------------------------------------

TEST_F(OfferedLocale, IsStoredBehindTheTranslation)
{
    installer.rows[kTables] = {{L"Control_zh_CN"}};
    installer.rows[L"SELECT * FROM `Control_zh_CN`"] = {{L"Next", L"\u4E0B"}};
    EXPECT_EQ(SetLocaleOf({L"zh-CN"}), ERROR_SUCCESS);
    const Texts& calls = installer.Calls();
    const auto merged =
        std::find(calls.begin(), calls.end(), L"MsiViewModify 7 Next|\u4E0B into SELECT * FROM `Control`");
    const auto stored = std::find(calls.begin(), calls.end(), L"MsiSetPropertyW UILOCALE=zh-CN");
    ASSERT_NE(merged, calls.end());
    EXPECT_NE(std::find(merged, calls.end(), *stored), calls.end());
}

// Whatever the failure: the search ends with it.
TEST_F(OfferedLocale, ThatCannotBeTranslatedEndsTheSearch)
{
    for (const UINT error : {UINT{ERROR_ACCESS_DENIED}, kCancelled, kFailed})
    {
        installer.Answer(L"MsiDatabaseOpenViewW " + std::wstring(kTables), error, 1);
        EXPECT_EQ(SetLocaleOf({L"de", L"en"}), kFailed);
        EXPECT_EQ(Stops(), std::vector<bool>{true});
        EXPECT_TRUE(installer.CallsOf(L"MsiSetPropertyW").empty());
    }
}

TEST_F(OfferedLocale, ThatCannotBeStoredEndsTheSearch)
{
    for (const UINT error : {UINT{ERROR_ACCESS_DENIED}, kCancelled, kFailed})
    {
        installer.Answer(L"MsiSetPropertyW UILOCALE=en", error, 1);
        EXPECT_EQ(SetLocaleOf({L"en", L"de"}), kFailed);
        EXPECT_EQ(Stops(), std::vector<bool>{true});
        EXPECT_EQ(installer.CallsOf(L"MsiSetPropertyW"), Texts{L"MsiSetPropertyW UILOCALE=en"});
    }
}

}  // namespace
