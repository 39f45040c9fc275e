// The check of small libraries that a test writes itself: what a library is made of, and which side has what.
#include "muitool_program.h"
#include "support/built_locales.h"
#include "support/dialog_resources.h"
#include "support/message_table.h"
#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>

using arvmui_test::Strings;
using arvmui_test::TemporaryFolder;
using arvmui_test::WriteResourceImage;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

namespace fs = std::filesystem;

const Strings kEnglish = {{1, L"en-US"}, {2, L"0x0409"}, {10, L"text"}};
const Strings kGerman = {{1, L"de-DE"}, {2, L"0x0407"}, {10, L"Text"}};

Strings With(Strings strings, unsigned number, const wchar_t* text)
{
    strings[number] = text;
    return strings;
}

class CheckLibrary : public testing::Test
{
protected:
    CheckLibrary()
    {
        Write(L"en", kEnglish);
        Write(L"de", kGerman);
    }

    fs::path FileOf(const wchar_t* locale) const { return folder_.Path() / locale / L"editorUI.DLL"; }
    void Write(const wchar_t* locale, const Strings& strings) const { WriteResourceImage(FileOf(locale), strings); }

    ToolResult Run(std::vector<std::wstring> options) const
    {
        options.insert(options.begin(), {L"check", folder_.Path().wstring()});
        return RunTool(options);
    }

    // "locale: kind resource" of each finding.
    std::vector<std::string> Findings(const std::vector<std::wstring>& options = {}) const
    {
        std::vector<std::wstring> arguments = options;
        arguments.push_back(L"--json");
        std::vector<std::string> findings;
        for (const auto& finding : nlohmann::json::parse(Run(arguments).output))
        {
            const fs::path file = finding.at("file").get<std::string>();
            findings.push_back(file.parent_path().filename().string() + ": " + finding.at("kind").get<std::string>()
                               + ' ' + std::to_string(finding.at("resource").get<int>()));
        }
        return findings;
    }

    // Changes the headers of the German library.
    void ChangeHeaders(const std::function<void(IMAGE_NT_HEADERS64&, IMAGE_SECTION_HEADER&)>& change) const
    {
        std::fstream file(FileOf(L"de"), std::ios::binary | std::ios::in | std::ios::out);
        IMAGE_DOS_HEADER dos;
        struct
        {
            IMAGE_NT_HEADERS64 headers;
            IMAGE_SECTION_HEADER section;
        } image;
        file.read(reinterpret_cast<char*>(&dos), sizeof(dos));
        file.seekg(dos.e_lfanew);
        file.read(reinterpret_cast<char*>(&image), sizeof(image));
        change(image.headers, image.section);
        file.seekp(dos.e_lfanew);
        file.write(reinterpret_cast<const char*>(&image), sizeof(image));
        ASSERT_TRUE(file.good());
    }

    void ExpectImageFinding(const char* words) const
    {
        EXPECT_THAT(Findings(), Contains("de: image 0"));
        EXPECT_THAT(Run({}).output, HasSubstr(words));
    }

    TemporaryFolder folder_;
};

}  // namespace

TEST_F(CheckLibrary, TheSmallestCorrectOnesHaveNoFindings)
{
    const ToolResult result = Run({L"--json"});
    EXPECT_EQ(result.output, "[]\n");
    EXPECT_EQ(result.exitCode, 0);
}

TEST_F(CheckLibrary, AnEntryPointIsFound)
{
    ChangeHeaders([](IMAGE_NT_HEADERS64& headers, IMAGE_SECTION_HEADER& section)
        { headers.OptionalHeader.AddressOfEntryPoint = section.VirtualAddress; });
    ExpectImageFinding("has an entry point");
}

TEST_F(CheckLibrary, ImportsAreFound)
{
    ChangeHeaders([](IMAGE_NT_HEADERS64& headers, IMAGE_SECTION_HEADER&)
        { headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].Size = sizeof(IMAGE_IMPORT_DESCRIPTOR); });
    ExpectImageFinding("imports functions");
}

TEST_F(CheckLibrary, CodeIsFound)
{
    for (const DWORD kind : {IMAGE_SCN_CNT_CODE, IMAGE_SCN_MEM_EXECUTE})
    {
        Write(L"de", kGerman);
        ChangeHeaders([kind](IMAGE_NT_HEADERS64&, IMAGE_SECTION_HEADER& section) { section.Characteristics |= kind; });
        ExpectImageFinding("holds code");
    }
}

TEST_F(CheckLibrary, A32BitLibraryIsFound)
{
    ChangeHeaders([](IMAGE_NT_HEADERS64& headers, IMAGE_SECTION_HEADER&)
        { headers.OptionalHeader.Magic = IMAGE_NT_OPTIONAL_HDR32_MAGIC; });
    ExpectImageFinding("32-bit");
}

TEST_F(CheckLibrary, AFileThatTheReferenceLacks)
{
    WriteResourceImage(folder_.Path() / L"de" / L"otherUI.DLL", kGerman);
    EXPECT_THAT(Findings(), ElementsAre("de: extra-file 0"));
}

TEST_F(CheckLibrary, AnotherReferenceTurnsTheSides)
{
    Write(L"de", With(kGerman, 11, L"mehr"));
    EXPECT_THAT(Findings(), ElementsAre("de: extra-string 11"));
    EXPECT_THAT(Findings({L"--reference", L"de"}), ElementsAre("en: missing-string 11"));
}

TEST_F(CheckLibrary, WithoutEnglishTheSearchHasNoLastResort)
{
    fs::remove_all(folder_.Path() / L"en");
    EXPECT_THAT(Findings({L"--reference", L"de"}), ElementsAre(testing::EndsWith(": missing-fallback 0")));
}

TEST_F(CheckLibrary, InsertsOfAnotherNumber)
{
    Write(L"en", With(kEnglish, 10, L"%1 of %2"));
    Write(L"de", With(kGerman, 10, L"%2, %1"));
    EXPECT_THAT(Findings(), IsEmpty());
    Write(L"de", With(kGerman, 10, L"%1 von %3"));
    EXPECT_THAT(Findings(), ElementsAre("de: placeholders 10"));
}

TEST_F(CheckLibrary, StringsThatTellNoLocale)
{
    Write(L"de", {{1, L"de-DE"}, {2, L"German"}, {10, L"Text"}});
    EXPECT_THAT(Findings(), Contains("de: language-id 2"));
    Write(L"de", {{1, L""}, {2, L"0x0407"}, {10, L"Text"}});
    EXPECT_THAT(Findings(), Contains("de: locale-tag 1"));
}

TEST_F(CheckLibrary, MessagesThatOneSideLacks)
{
    arvmui_test::WriteMessageTables(FileOf(L"en"), {{0x0409, {{5, L"five"}, {6, L"six"}}}});
    arvmui_test::WriteMessageTables(FileOf(L"de"), {{0x0407, {{6, L"sechs"}, {7, L"sieben"}}}});
    EXPECT_THAT(Findings(), testing::IsSupersetOf({"de: missing-message 5", "de: extra-message 7"}));
    EXPECT_THAT(Findings(), testing::Not(Contains("de: missing-message 6")));
}

TEST_F(CheckLibrary, ADialogThatOneSideLacks)
{
    constexpr WORD kDialog = 300;
    arvmui_test::CopyDialogs(FileOf(L"de"), arvmui_test::BuiltResourceLibrary(L"de"), {kDialog});
    EXPECT_THAT(Findings(), ElementsAre("de: extra-dialog 300"));
    EXPECT_THAT(Findings({L"--reference", L"de"}), ElementsAre("en: missing-dialog 300"));
}

TEST_F(CheckLibrary, AFolderWithoutLocalesIsAnError)
{
    for (const fs::path& folder : {folder_.Path() / L"none", folder_.Path() / L"de"})
    {
        const ToolResult result = RunTool({L"check", folder.wstring()});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.output, testing::StartsWith("muitool: "));
    }
}
