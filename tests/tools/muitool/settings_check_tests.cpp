#include "settings_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

// "line kind" of each finding.
std::vector<std::string> Check(const std::string& bytes)
{
    Findings findings;
    CheckSettings(L"a.ini", bytes, findings);
    std::vector<std::string> result;
    for (const Finding& finding : findings.Items())
        result.push_back(std::to_string(finding.resource) + ' ' + finding.kind);
    return result;
}

}  // namespace

TEST(SettingsCheck, AnOrdinaryFileHasNoFindings)
{
    EXPECT_THAT(
        Check("; comment\r\n[one] ; comment\r\nkey = value\r\nquoted=\"a\"\"b\" ; comment\r\n\r\n[two]\r\nkey='x'"),
        IsEmpty());
}

TEST(SettingsCheck, AByteOrderMarkHidesTheFirstSection)
{
    EXPECT_THAT(
        Check("\xEF\xBB\xBF[Encoding]\nInputEncoding=UTF-8\n[a]\nk=1\n"), testing::Contains("1 byte-order-mark"));
}

TEST(SettingsCheck, Utf16IsNotRead)
{
    EXPECT_THAT(Check(std::string("\xFF\xFE[\0", 4)), ElementsAre("1 encoding"));
}

TEST(SettingsCheck, TheThirdMalformedLineEndsAll)
{
    EXPECT_THAT(Check("[a]\nx\ny\nz\n[a]\n"), ElementsAre("2 malformed", "3 malformed", "4 malformed"));
}

TEST(SettingsCheck, TextBehindAQuoteOrABracketIsMalformed)
{
    EXPECT_THAT(Check("[a] b\nk=\"v\" w\n"), ElementsAre("1 malformed", "2 malformed"));
}

TEST(SettingsCheck, ALineThatBeginsWithAnEqualsSignIsMalformed)
{
    EXPECT_THAT(Check("[a]\n= b\n"), ElementsAre("2 malformed"));
}

TEST(SettingsCheck, ASecondSectionIsNeverSearched)
{
    EXPECT_THAT(Check("[a]\nk=1\n[b]\nk=1\n[A]\nl=1\n"), ElementsAre("5 section-again"));
}

TEST(SettingsCheck, ASecondKeyIsNeverFound)
{
    EXPECT_THAT(Check("[a]\nkey=1\nKEY=2\n"), ElementsAre("3 key-again"));
}

TEST(SettingsCheck, AKeyBeforeTheFirstSectionBelongsToNone)
{
    EXPECT_THAT(Check("key=1\n"), ElementsAre("1 key"));
}

TEST(SettingsCheck, AQuoteThatIsNotClosedIsTold)
{
    EXPECT_THAT(Check("[a]\nk='v\n"), ElementsAre("2 quote"));
}

TEST(SettingsCheck, WhatIsCutIsTold)
{
    const std::string fits(270, 'x');
    EXPECT_THAT(Check("[a]\nk=" + fits + "\n"), IsEmpty());
    EXPECT_THAT(Check("[a]\nk=" + fits + "x\n"), ElementsAre("2 too-long"));
}
