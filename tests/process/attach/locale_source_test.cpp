// Which source decides the language of a process, each in a process of its own.
#include "process/attach/attach_fixture.h"

#include <gtest/gtest.h>

namespace
{

using arvmui_test::Arrangement;
using arvmui_test::FolderOf;
using arvmui_test::Report;
using arvmui_test::RunHost;
using arvmui_test::RunLoader;
using arvmui_test::ScratchRegistry;

void ExpectLocale(const Report& report, const wchar_t* folder, const wchar_t* locale, LANGID language)
{
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), folder);
    EXPECT_EQ(report.Text("locale"), locale);
    EXPECT_EQ(report.Number("language"), language);
    EXPECT_EQ(report.Number("popups"), 1u);
}

TEST(LocaleSource, OptionDecidesWhenTheLoaderAttaches)
{
    const Report report = RunHost(L"host.exe /uilocale:de-DE,fr x");
    ExpectLocale(report, L"de", L"de-DE", 0x0407);
    EXPECT_EQ(report.Text("commandLineHint"), L"de-DE,fr");
    EXPECT_EQ(report.Text("published"), L"de-DE,fr");
    EXPECT_EQ(report.Number("hasMapping"), 1u);
    EXPECT_EQ(report.Text("commandLine"), L"host.exe x");
}

TEST(LocaleSource, OptionDecidesWhenTheProgramLoadsTheLibrary)
{
    const ScratchRegistry registry;
    registry.SetUILocale(L"user", L"es");
    Arrangement arrangement;
    arrangement.commandLine = L"loader.exe /uilocale:ja x";
    const Report report = RunLoader(registry, arrangement);
    ExpectLocale(report, L"ja", L"ja-JP", 0x0411);
    EXPECT_EQ(report.Text("commandLineHint"), L"ja");
    EXPECT_EQ(report.Text("commandLine"), L"loader.exe x");
}

TEST(LocaleSource, OptionTakesIdentifiersAndKeywords)
{
    const ScratchRegistry registry;
    Arrangement arrangement;
    arrangement.commandLine = L"loader.exe /uilocale:0x0411,1036,user,kiv,msie,uilang";
    arrangement.userLanguage = 0x0407;
    arrangement.userUILanguage = 0x0C0A;
    arrangement.systemUILanguage = 0x0410;
    const Report report = RunLoader(registry, arrangement);
    ExpectLocale(report, L"ja", L"ja-JP", 0x0411);
    EXPECT_EQ(report.Text("commandLineHint"), L"ja-JP,fr-FR,de-DE,kiv,es-ES,it-IT");
    EXPECT_EQ(report.Text("published"), L"ja-JP,fr-FR,de-DE,kiv,es-ES,it-IT");
}

TEST(LocaleSource, RegistryOfTheUserDecidesWithoutOption)
{
    const ScratchRegistry registry;
    registry.SetUILocale(L"user", L"fr-CA,de");
    registry.SetUILocale(L"machine", L"es");
    const Report report = RunLoader(registry, {});
    ExpectLocale(report, L"fr", L"fr-FR", 0x040C);
    EXPECT_EQ(report.Text("commandLineHint"), L"fr-CA,de");
    EXPECT_EQ(report.Text("published"), L"fr-CA,de");
}

TEST(LocaleSource, RegistryOfTheMachineDecidesWithoutThatOfTheUser)
{
    const ScratchRegistry registry;
    registry.SetUILocale(L"machine", L"es");
    const Report report = RunLoader(registry, {});
    EXPECT_EQ(FolderOf(report.Text("resourceLibrary")), L"es");
    EXPECT_EQ(report.Text("commandLineHint"), L"es");
}

TEST(LocaleSource, UserThenSystemDecideWithoutAnything)
{
    const ScratchRegistry registry;
    Arrangement arrangement;
    arrangement.userLanguage = 0x0411;
    arrangement.systemLanguage = 0x0407;
    const Report report = RunLoader(registry, arrangement);
    ExpectLocale(report, L"ja", L"ja-JP", 0x0411);
    EXPECT_EQ(report.Text("commandLineHint"), L"kiv,ja-JP,de-DE");
    EXPECT_EQ(report.Text("published"), L"kiv,ja-JP,de-DE");
}

TEST(LocaleSource, SystemDecidesWhereThereIsNothingForTheUser)
{
    const ScratchRegistry registry;
    Arrangement arrangement;
    arrangement.userLanguage = 0x0437;  // no Georgian resources
    arrangement.systemLanguage = 0x0C07;
    const Report report = RunLoader(registry, arrangement);
    ExpectLocale(report, L"de", L"de-DE", 0x0407);
    EXPECT_EQ(report.Text("commandLineHint"), L"kiv,ka-GE,de-AT");
}

TEST(LocaleSource, EnglishDecidesWhereThereIsNothingForEither)
{
    const ScratchRegistry registry;
    Arrangement arrangement;
    arrangement.userLanguage = 0x0437;
    arrangement.systemLanguage = 0x042B;
    const Report report = RunLoader(registry, arrangement);
    ExpectLocale(report, L"en", L"en-US", 0x0409);
    EXPECT_EQ(report.Text("commandLineHint"), L"kiv,ka-GE,hy-AM");
}

// An option that expands to nothing leaves nothing to hand on, and the search falls back to English.
TEST(LocaleSource, OptionOfSeparatorsOnlyGivesEnglishAndPublishesNothing)
{
    const ScratchRegistry registry;
    registry.SetUILocale(L"user", L"fr");
    Arrangement arrangement;
    arrangement.commandLine = L"loader.exe /uilocale:,,";
    arrangement.userLanguage = 0x0411;
    const Report report = RunLoader(registry, arrangement);
    ExpectLocale(report, L"en", L"en-US", 0x0409);
    EXPECT_EQ(report.Text("commandLineHint"), L",,");
    EXPECT_EQ(report.Text("published"), L"(none)");
    EXPECT_EQ(report.Number("hasMapping"), 0u);
}

TEST(LocaleSource, EmptyOptionCountsAsNone)
{
    const ScratchRegistry registry;
    registry.SetUILocale(L"user", L"fr");
    Arrangement arrangement;
    arrangement.commandLine = L"loader.exe /uilocale: x";
    const Report report = RunLoader(registry, arrangement);
    EXPECT_EQ(report.Text("commandLineHint"), L"fr");
    EXPECT_EQ(report.Text("commandLine"), L"loader.exe x");
}

TEST(LocaleSource, OtherHintsStayEmpty)
{
    const Report report = RunHost(L"host.exe /uilocale:de");
    EXPECT_EQ(report.Text("settingsFileHint"), L"");
    EXPECT_EQ(report.Text("browserHint"), L"");
    EXPECT_EQ(report.Text("askedHint"), L"");
}

TEST(Attach, ShowsNoWindow)
{
    const ScratchRegistry registry;
    EXPECT_EQ(RunLoader(registry, {}).Number("windows"), 0u);
}

TEST(Attach, TakesAThreadLocalSlotThatHoldsNull)
{
    const Report report = RunHost(L"host.exe");
    EXPECT_LT(report.Number("threadSlot"), 1088u + 64u);
    EXPECT_EQ(report.Number("threadValue"), 0u);
}

TEST(Attach, SucceedsWithoutAThreadLocalSlot)
{
    const ScratchRegistry registry;
    Arrangement arrangement;
    arrangement.commandLine = L"loader.exe /uilocale:de";
    arrangement.variables = {{L"ARVMUI_TEST_NO_THREAD_SLOTS", L"1"}};
    const Report report = RunLoader(registry, arrangement);
    EXPECT_EQ(report.Number("threadSlot"), TLS_OUT_OF_INDEXES);
    ExpectLocale(report, L"de", L"de-DE", 0x0407);
    EXPECT_EQ(report.Text("published"), L"de");
}

TEST(Attach, RecordsTheModule)
{
    const Report report = RunHost(L"host.exe");
    const unsigned long long module = report.Number("module");
    EXPECT_NE(module, 0u);
    EXPECT_EQ(module & 0xFFFF, 0u);
    EXPECT_GT(report.Number("descriptor"), module);
    EXPECT_LT(report.Number("descriptor"), module + (1u << 20));
}

// A keyboard is always there; each primary language stands once, and they ascend.
TEST(Attach, RecordsThePrimaryLanguagesOfTheKeyboards)
{
    const Report report = RunHost(L"host.exe");
    const std::wstring text = report.Text("keyboardLanguages");
    ASSERT_FALSE(text.empty());
    unsigned long last = 0;
    const wchar_t* position = text.c_str();
    while (*position)
    {
        wchar_t* end = nullptr;
        const unsigned long language = std::wcstoul(position, &end, 10);
        EXPECT_GT(language, last);
        EXPECT_LE(language, 0x3FFu);
        last = language;
        position = end + 1;
    }
}

}  // namespace
