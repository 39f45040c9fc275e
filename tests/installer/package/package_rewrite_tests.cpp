// The translation of real packages by the helper process, read back through the installer.
#include "installer/package/helper_process.h"
#include "installer/package/translation_package.h"
#include "support/byte_file.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>

namespace
{

using arvmui_test::CodePageOf;
using arvmui_test::OpenMsiDatabase;
using arvmui_test::PackageLanguage;
using arvmui_test::ReadContents;
using arvmui_test::RemainingTables;
using arvmui_test::RunTranslation;
using arvmui_test::ScheduledActions;
using arvmui_test::TableNames;

using Names = std::vector<std::wstring>;

const Names kOtherActions = {L"AdminExecuteSequence:ARV_MUI_SetLocale", L"AdminExecuteSequence:OtherAction",
    L"AdminUISequence:ARV_MUI_SetLocale", L"AdminUISequence:OtherAction", L"InstallExecuteSequence:ARV_MUI_SetLocale",
    L"InstallExecuteSequence:OtherAction", L"InstallUISequence:ARV_MUI_SetLocale", L"InstallUISequence:OtherAction"};

class PackageRewrite : public testing::Test
{
protected:
    PackageRewrite() { arvmui_test::TranslationPackage(L"Arvmui Translation").Write(file); }

    void Translate(const std::wstring& locale, const std::wstring& mode = L"NOTRANSFORM") const
    {
        EXPECT_TRUE(RunTranslation(locale, file, mode, temporary.Path()));
    }
    arvmui_test::MsiHandle Open() const { return OpenMsiDatabase(file); }

    arvmui_test::TemporaryFolder folder;
    arvmui_test::TemporaryFolder temporary;  // of the helper
    std::filesystem::path file = folder.Path() / L"package.msi";
};

// One translation for all tests of a language.
class PackageRewriteLanguage : public PackageRewrite, public testing::WithParamInterface<PackageLanguage>
{
protected:
    PackageRewriteLanguage()
    {
        static std::map<std::wstring, std::string> translated;
        const std::wstring& locale = GetParam().locale;
        if (translated.count(locale) == 0)
        {
            Translate(locale);
            translated[locale] = arvmui_test::BytesOf(file);
        }
        arvmui_test::WriteBytes(file, translated[locale]);
    }
};

TEST_P(PackageRewriteLanguage, FillsTheBaseTables)
{
    EXPECT_EQ(ReadContents(Open().Get()), arvmui_test::ContentsIn(GetParam()));
}

TEST_P(PackageRewriteLanguage, RemovesTheLocalizedTablesOfAllLanguages)
{
    EXPECT_EQ(TableNames(Open().Get()), RemainingTables());
}

TEST_P(PackageRewriteLanguage, RemovesTheLibrarysActionsAndNoOthers)
{
    EXPECT_EQ(ScheduledActions(Open().Get()), kOtherActions);
}

TEST_P(PackageRewriteLanguage, SetsTheCodePage)
{
    EXPECT_EQ(CodePageOf(Open().Get()), GetParam().codePage);
}

TEST_P(PackageRewriteLanguage, GivesAPackageThatASessionOpens)
{
    const arvmui_test::MsiHandle session = arvmui_test::OpenMsiSession(file);
    EXPECT_EQ(arvmui_test::SessionProperty(session.Get(), L"Greeting"), GetParam().greeting);
    EXPECT_EQ(arvmui_test::SessionProperty(session.Get(), L"UILOCALE"), GetParam().locale);
    EXPECT_EQ(arvmui_test::SessionProperty(session.Get(), L"ProductCode"), arvmui_test::kTestProductCode);
}

INSTANTIATE_TEST_SUITE_P(Languages, PackageRewriteLanguage, testing::ValuesIn(arvmui_test::TranslatedLanguages()),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(PackageRewrite, InEnglishDropsTablesWithoutCopyingTheirRows)
{
    Translate(L"en");
    EXPECT_EQ(ReadContents(Open().Get()), arvmui_test::EnglishContents());
    EXPECT_EQ(TableNames(Open().Get()), RemainingTables());
    EXPECT_EQ(CodePageOf(Open().Get()), "1252");
}

TEST_F(PackageRewrite, LeavesNoTemporaryFile)
{
    Translate(L"de");
    EXPECT_EQ(CodePageOf(Open().Get()), "1252") << "the file was not needed";
    for (const auto& entry : std::filesystem::directory_iterator(temporary.Path()))
        EXPECT_NE(entry.path().extension(), L".IDT") << entry.path().string();
}

TEST_F(PackageRewrite, WithTransformsKeepsTheFontActionsAndDoesTheSameElse)
{
    Translate(L"de", L"Transforms");
    const std::wstring id = L".5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17";
    Names expected = kOtherActions;
    expected.push_back(L"InstallExecuteSequence:ARV_MUI_StartFontResetter" + id);
    expected.push_back(L"InstallExecuteSequence:ARV_MUI_StopFontResetter" + id);
    std::sort(expected.begin(), expected.end());
    Names actions = ScheduledActions(Open().Get());
    std::sort(actions.begin(), actions.end());
    EXPECT_EQ(actions, expected);
    EXPECT_EQ(ReadContents(Open().Get()), arvmui_test::ContentsIn(arvmui_test::LanguageOf(L"de")));
}

TEST_F(PackageRewrite, FindsTheLocaleInAnyCase)
{
    Translate(L"DE");
    auto expected = arvmui_test::ContentsIn(arvmui_test::LanguageOf(L"de"));
    for (auto& row : expected[L"Property"])
        if (row[0] == L"UILOCALE") row[1] = L"DE";
    EXPECT_EQ(ReadContents(Open().Get()), expected);
}

TEST_F(PackageRewrite, HappensOnce)
{
    Translate(L"de");
    const std::string bytes = arvmui_test::BytesOf(file);
    Translate(L"fr");  // the package lists no locales any more
    EXPECT_TRUE(arvmui_test::BytesOf(file) == bytes);
}

TEST_F(PackageRewrite, GoesWithoutTheTablesThatAPackageMayLack)
{
    auto package = arvmui_test::TranslationPackage(L"Arvmui Translation");
    for (const wchar_t* const table : {L"ArvDialogMapping", L"AdminExecuteSequence", L"AdminUISequence", L"ARVUIText"})
        package.Remove(table);
    package.Write(file);
    Translate(L"de");
    const auto database = Open();
    EXPECT_EQ(arvmui_test::ReadMsiRows(database.Get(), L"SELECT `Text` FROM `UIText` WHERE `Key`='Both'"),
        (arvmui_test::MsiRows{{L"Gr\u00FC\u00DF Gott"}}));
    EXPECT_EQ(CodePageOf(database.Get()), "1252");
    EXPECT_FALSE(arvmui_test::HasMsiTable(database.Get(), L"ARVUILocale"));
}

TEST_F(PackageRewrite, OfALocalizedTableWithoutABaseEndsTheWalkOnly)
{
    auto package = arvmui_test::TranslationPackage(L"Arvmui Translation");
    package.Remove(L"Two_Words").Write(file);
    Translate(L"de");
    const auto database = Open();
    EXPECT_TRUE(arvmui_test::HasMsiTable(database.Get(), L"Two_Words_de"));
    EXPECT_FALSE(arvmui_test::HasMsiTable(database.Get(), L"ARVUILocale"));
    EXPECT_EQ(CodePageOf(database.Get()), "1252");
}

TEST_F(PackageRewrite, FindsAPackageUnderAnyPath)
{
    const auto deep = folder.MakeFolder(L"a folder \u65E5\u672C") / L"the 'package' & more.msi";
    arvmui_test::TranslationPackage(L"Arvmui Translation").Write(deep);
    EXPECT_TRUE(RunTranslation(L"ja", deep, L"NOTRANSFORM"));
    EXPECT_EQ(ReadContents(OpenMsiDatabase(deep).Get()), arvmui_test::ContentsIn(arvmui_test::LanguageOf(L"ja")));
}

// ---- Nothing changes.

class PackageUnchanged : public PackageRewrite
{
protected:
    ~PackageUnchanged() override
    {
        EXPECT_TRUE(arvmui_test::BytesOf(file) == bytes_) << "the package has changed";
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1) << "a file was made";
    }

private:
    std::string bytes_ = arvmui_test::BytesOf(file);
};

TEST_F(PackageUnchanged, ByALocaleThatItLacks)
{
    for (const wchar_t* const locale : {L"es", L"", L"de-DE", L"zh_CN", L"d"}) Translate(locale);
}

TEST_F(PackageUnchanged, ByCommandLinesOfAnotherForm)
{
    const std::wstring path = arvmui_test::EscapedArgument(file.wstring());
    const std::wstring plain = L"\"" + file.wstring() + L"\"";
    const std::wstring lines[] = {L"", L"de", path, L"\"de\" " + path, path + L" \"de\" \"NOTRANSFORM\"",
        L"\"de\" " + path + L" \"NOTRANSFORM\" \"more\"", L"\"de\" " + path + L" \"NOTRANSFORM\" \"\"",
        L"\"de\" \"" + path + L" \"NOTRANSFORM\"", L"\"de\\x\" \"\" \"\"",
        L"\"de\" " + plain + L" \"NOTRANSFORM\"",  // a path that is not escaped ends at its first backslash
        L"\"de\"" + path + L"\"NOTRANSFORM\""};
    for (const std::wstring& line : lines)
        EXPECT_TRUE(RunTranslation(line, temporary.Path())) << std::string(line.begin(), line.end());
}

TEST_F(PackageUnchanged, ByAPathToNothing)
{
    EXPECT_TRUE(RunTranslation(L"de", folder.Path() / L"other.msi", L"NOTRANSFORM"));
}

TEST_F(PackageUnchanged, WhileAnotherProcessHoldsItOpen)
{
    const HANDLE holder = ::CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(holder, INVALID_HANDLE_VALUE);
    Translate(L"de");
    ::CloseHandle(holder);
}

TEST_F(PackageUnchanged, WhenItsTemporaryFolderIsMissing)
{
    EXPECT_TRUE(RunTranslation(L"de", file, L"NOTRANSFORM", temporary.Path() / L"missing"));
}

TEST(PackageOfNoKind, StaysAsItIs)
{
    const arvmui_test::TemporaryFolder folder;
    const auto file = folder.Path() / L"package.msi";
    std::ofstream(file, std::ios::binary) << "no package at all";
    EXPECT_TRUE(RunTranslation(L"de", file, L"NOTRANSFORM"));
    EXPECT_EQ(arvmui_test::BytesOf(file), "no package at all");
}

TEST(PackageWithoutLocales, StaysAsItIs)
{
    const arvmui_test::TemporaryFolder folder;
    const auto file = folder.Path() / L"package.msi";
    auto package = arvmui_test::TranslationPackage(L"Arvmui Translation");
    package.Remove(L"ARVUILocale").Write(file);
    const std::string bytes = arvmui_test::BytesOf(file);
    EXPECT_TRUE(RunTranslation(L"de", file, L"NOTRANSFORM"));
    EXPECT_TRUE(arvmui_test::BytesOf(file) == bytes);
}

}  // namespace
