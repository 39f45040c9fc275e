// "muitool locale": the stored lists, in a registry of the test's own.
#include "arranged_system.h"
#include "muitool_program.h"
#include "support/temporary_folder.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;

namespace
{

class LocaleCommand : public testing::Test
{
protected:
    ToolResult Run(const std::vector<std::wstring>& arguments, bool withErrors = true) const
    {
        return RunCall({.arguments = arguments,
            .program = arvmui_test::TestProgramFolder() / L"muitool_arranged.exe",
            .environment = system_.Environment(),
            .withErrors = withErrors});
    }

    ArrangedSystem system_;
};

}  // namespace

TEST_F(LocaleCommand, PrintsTheStoredListOfTheUserAndOfTheMachine)
{
    system_.Store(L"user", L"de,en");
    system_.Store(L"machine", L"fr");
    EXPECT_EQ(Run({L"locale", L"get"}).output, "de,en\n");
    EXPECT_EQ(Run({L"locale", L"get", L"--machine"}).output, "fr\n");
}

TEST_F(LocaleCommand, PrintsAListOfAnyLengthAndScript)
{
    const std::wstring list = std::wstring(3000, L'x') + L",\u65E5\U0001F600";
    system_.Store(L"user", list);
    EXPECT_EQ(Run({L"locale", L"get"}).output, arvmui_test::Utf8FromWide(list) + '\n');
}

TEST_F(LocaleCommand, TellsOnStandardErrorThatThereIsNone)
{
    system_.Store(L"user", L"de");
    const ToolResult result = Run({L"locale", L"get", L"--machine"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "muitool: no list is stored for the machine\n");
    EXPECT_EQ(Run({L"locale", L"get", L"--machine"}, false).output, "");
}

TEST_F(LocaleCommand, StoresAListForTheUser)
{
    const ToolResult result = Run({L"locale", L"set", L"ja,de-CH"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(system_.Stored(L"user"), L"ja,de-CH");
    EXPECT_EQ(system_.Stored(L"machine"), L"<none>");
}

TEST_F(LocaleCommand, StoresAListForTheMachine)
{
    EXPECT_EQ(Run({L"locale", L"set", L"--machine", L"kiv,user"}).exitCode, 0);
    EXPECT_EQ(system_.Stored(L"machine"), L"kiv,user");
    EXPECT_EQ(system_.Stored(L"user"), L"<none>");
}

TEST_F(LocaleCommand, WhatItStoresCountsAtTheNextStart)
{
    ASSERT_EQ(Run({L"locale", L"set", L"fr,de"}).exitCode, 0);
    const auto json = nlohmann::json::parse(Run({L"explain", L"--json", L"--file", L"arvmuiUI.DLL"}).output);
    EXPECT_EQ(json.at("decidedBy"), "registry, user");
    EXPECT_EQ(json.at("list"), "fr,de");
    EXPECT_EQ(json.at("chosen"), "fr");
}

TEST_F(LocaleCommand, RemovesTheOneListOnly)
{
    system_.Store(L"user", L"de");
    system_.Store(L"machine", L"fr");
    EXPECT_EQ(Run({L"locale", L"clear"}).exitCode, 0);
    EXPECT_EQ(system_.Stored(L"user"), L"<none>");
    EXPECT_EQ(system_.Stored(L"machine"), L"fr");
    EXPECT_EQ(Run({L"locale", L"clear", L"--machine"}).exitCode, 0);
    EXPECT_EQ(system_.Stored(L"machine"), L"<none>");
}

TEST_F(LocaleCommand, RemovingWhatIsNotThereSucceeds)
{
    EXPECT_EQ(Run({L"locale", L"clear"}).exitCode, 0);
}

TEST_F(LocaleCommand, NeedsAnActionAndAListToStore)
{
    EXPECT_EQ(Run({L"locale"}).exitCode, 2);
    const ToolResult result = Run({L"locale", L"set"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.output, HasSubstr("LIST"));
}
