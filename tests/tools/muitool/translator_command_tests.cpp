// The commands for translators: what goes out and comes back is the same, and texts of any script are kept.
#include "muitool_program.h"
#include "support/built_locales.h"
#include "support/byte_file.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

using arvmui_test::BuiltLocales;
using arvmui_test::BuiltResourceLibrary;
using arvmui_test::TemporaryFolder;
using arvmui_test::WriteBytes;
using arvmui_test::WriteResourceImage;
using testing::HasSubstr;

namespace
{

namespace fs = std::filesystem;

constexpr char kSmile[] = "\xF0\x9F\x98\x80";  // outside the first 65536 characters

std::string ReadBytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class TranslatorCommand : public testing::Test
{
protected:
    fs::path In(const wchar_t* name) const { return folder_.Path() / name; }
    std::wstring NameOf(const wchar_t* name) const { return In(name).wstring(); }

    TemporaryFolder folder_;
};

class RoundTrip : public TranslatorCommand, public testing::WithParamInterface<std::wstring>
{
};

INSTANTIATE_TEST_SUITE_P(Locales, RoundTrip, testing::ValuesIn(BuiltLocales()), arvmui_test::LocaleTestName);

}  // namespace

TEST_P(RoundTrip, ExportAndImportGiveTheSameBytes)
{
    const std::wstring library = BuiltResourceLibrary(GetParam()).wstring();
    const std::wstring english = BuiltResourceLibrary(L"en").wstring();
    ASSERT_EQ(RunTool({L"export", library, NameOf(L"a.po"), L"--reference", english}).exitCode, 0);
    ASSERT_EQ(RunTool({L"import", NameOf(L"a.po"), library, NameOf(L"a.dll")}).exitCode, 0);
    EXPECT_EQ(ReadBytes(In(L"a.dll")), ReadBytes(library));
}

TEST_F(TranslatorCommand, PseudoTextsSurviveTheRoundTrip)
{
    const std::wstring english = BuiltResourceLibrary(L"en").wstring();
    ASSERT_EQ(RunTool({L"pseudo", english, NameOf(L"pseudo.dll")}).exitCode, 0);
    ASSERT_EQ(RunTool({L"export", NameOf(L"pseudo.dll"), NameOf(L"a.po"), L"--reference", english}).exitCode, 0);
    ASSERT_EQ(RunTool({L"import", NameOf(L"a.po"), english, NameOf(L"b.dll")}).exitCode, 0);
    EXPECT_EQ(ReadBytes(In(L"b.dll")), ReadBytes(In(L"pseudo.dll")));
}

// What the pseudo-translation does to placeholders, lengths and access keys, a translator may do.
TEST_F(TranslatorCommand, PseudoTextsKeepWhatATranslationHasToKeep)
{
    folder_.CopyIn(BuiltResourceLibrary(L"en"), L"resource/en/arvmuiUI.DLL");
    folder_.MakeFolder(L"resource/en-GB");
    ASSERT_EQ(
        RunTool({L"pseudo", BuiltResourceLibrary(L"en").wstring(), NameOf(L"resource/en-GB/arvmuiUI.DLL")}).exitCode,
        0);
    const auto findings = nlohmann::json::parse(RunTool({L"check", NameOf(L"resource"), L"--json"}).output);
    for (const auto& finding : findings)
        EXPECT_THAT(finding.at("kind").get<std::string>(),
            testing::AnyOf("does-not-fit", "locale-tag", "language-id", "fallback", "code-page"))
            << finding;
}

TEST_F(TranslatorCommand, StringsAreListedWithEscapesOneOnALine)
{
    WriteResourceImage(In(L"a.dll"), {{1, L"de-DE"}, {7, L"one\ntwo\r\n\tthree\\"}, {300, L"\U0001F600 \u05E9"}});
    const ToolResult result = RunTool({L"strings", NameOf(L"a.dll")});
    EXPECT_EQ(result.output, std::string("1\tde-DE\n7\tone\\ntwo\\r\\n\\tthree\\\\\n300\t") + kSmile + " \xD7\xA9\n");
    EXPECT_EQ(result.exitCode, 0);
}

TEST_F(TranslatorCommand, StringsAsJsonAreOneObject)
{
    WriteResourceImage(In(L"a.dll"), {{1, L"de-DE"}, {7, L"one\n\"two\"\x01"}, {300, L"\U0001F600"}});
    const auto json = nlohmann::json::parse(RunTool({L"strings", NameOf(L"a.dll"), L"--json"}).output);
    EXPECT_EQ(json, (nlohmann::json{{"1", "de-DE"}, {"7", "one\n\"two\"\x01"}, {"300", kSmile}}));
}

TEST_F(TranslatorCommand, ALibraryWithoutStringsHasNone)
{
    WriteResourceImage(In(L"a.dll"));
    EXPECT_EQ(RunTool({L"strings", NameOf(L"a.dll")}).output, "");
    EXPECT_EQ(RunTool({L"strings", NameOf(L"a.dll"), L"--json"}).output, "{}\n");
}

TEST_F(TranslatorCommand, ACatalogueCarriesTextsOfAnyScript)
{
    WriteResourceImage(In(L"en.dll"), {{1, L"en-US"}, {20, L"smile"}});
    WriteResourceImage(In(L"de.dll"), {{1, L"de-DE"}, {20, L"smile"}});
    ASSERT_EQ(RunTool({L"export", NameOf(L"de.dll"), NameOf(L"a.po"), L"--reference", NameOf(L"en.dll")}).exitCode, 0);
    std::string po = ReadBytes(In(L"a.po"));
    const std::string before = "msgstr \"smile\"";
    ASSERT_NE(po.find(before), std::string::npos) << po;
    po.replace(po.find(before), before.size(), std::string("msgstr \"") + kSmile + '"');
    WriteBytes(In(L"a.po"), po);
    ASSERT_EQ(RunTool({L"import", NameOf(L"a.po"), NameOf(L"de.dll"), NameOf(L"new.dll")}).exitCode, 0);
    const auto json = nlohmann::json::parse(RunTool({L"strings", NameOf(L"new.dll"), L"--json"}).output);
    EXPECT_EQ(json, (nlohmann::json{{"1", "de-DE"}, {"20", kSmile}}));
}

TEST_F(TranslatorCommand, WithoutAReferenceTheTextsAreTheirOwnOriginals)
{
    WriteResourceImage(In(L"de.dll"), {{1, L"de-DE"}, {20, L"Datei"}});
    ASSERT_EQ(RunTool({L"export", NameOf(L"de.dll"), NameOf(L"a.po")}).exitCode, 0);
    EXPECT_THAT(ReadBytes(In(L"a.po")), HasSubstr("msgid \"Datei\"\nmsgstr \"Datei\"\n"));
}

TEST_F(TranslatorCommand, ATranslationWithoutAPlaceIsNamed)
{
    WriteResourceImage(In(L"de.dll"), {{1, L"de-DE"}, {20, L"Datei"}});
    WriteBytes(In(L"a.po"), "msgctxt \"string 20\"\nmsgid \"File\"\nmsgstr \"Akte\"\n\n"
                            "msgctxt \"string 21\"\nmsgid \"Open\"\nmsgstr \"Auf\"\n");
    const ToolResult result = RunTool({L"import", NameOf(L"a.po"), NameOf(L"de.dll"), NameOf(L"new.dll")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("string 21"));
    EXPECT_THAT(result.output, testing::Not(HasSubstr("string 20")));
    EXPECT_EQ(RunTool({L"strings", NameOf(L"new.dll")}).output, "1\tde-DE\n20\tAkte\n");
}

TEST_F(TranslatorCommand, FilesThatAreNotThereAreErrorsAndLeaveNothing)
{
    const std::wstring none = NameOf(L"none.dll");
    const std::wstring out = NameOf(L"out");
    const std::wstring german = BuiltResourceLibrary(L"de").wstring();
    const std::vector<std::vector<std::wstring>> calls = {{L"pseudo", none, out}, {L"export", none, out},
        {L"export", german, out, L"--reference", none}, {L"import", NameOf(L"none.po"), german, out}};
    for (const std::vector<std::wstring>& call : calls)
    {
        const ToolResult result = RunTool(call);
        EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(call);
        EXPECT_THAT(result.output, testing::AllOf(testing::StartsWith("muitool: "), HasSubstr("none.")));
        EXPECT_FALSE(fs::exists(out)) << testing::PrintToString(call);
    }
}
