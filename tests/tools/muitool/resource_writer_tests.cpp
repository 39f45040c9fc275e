#include "resource_writer.h"
#include "support/temporary_folder.h"
#include "tool_error.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

using arvmui_test::TemporaryFolder;
using arvmui_test::TestProgramFolder;

namespace
{

namespace fs = std::filesystem;

fs::path FrenchLibrary()
{
    return TestProgramFolder() / L"resource" / L"fr" / L"arvmuiUI.DLL";
}

std::string Bytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

TEST(DialogTemplate, IsWrittenAsItWasRead)
{
    const ResourceLibrary library(FrenchLibrary());
    for (const UINT number : library.Numbers(RT_DIALOG))
    {
        const std::vector<BYTE> bytes = library.Bytes(RT_DIALOG, MAKEINTRESOURCEW(number));
        std::vector<BYTE> written = WriteDialogTemplate(ParseDialogTemplate(bytes));
        written.resize(bytes.size());  // a compiler may pad the end
        EXPECT_EQ(written, bytes) << number;
    }
}

TEST(DialogTemplate, BytesThatEndTooEarlyAreRefused)
{
    const ResourceLibrary library(FrenchLibrary());
    std::vector<BYTE> bytes = library.Bytes(RT_DIALOG, MAKEINTRESOURCEW(300));
    bytes.resize(bytes.size() / 2);
    EXPECT_THROW(ParseDialogTemplate(bytes), ToolError);
}

TEST(ResourceWriter, WithoutAChangeTheFileIsTheSame)
{
    const TemporaryFolder folder;
    const fs::path target = folder.Path() / L"a.dll";
    const Translation french = ReadTranslation(FrenchLibrary());
    WriteTranslation(french, french, target);
    EXPECT_EQ(Bytes(target), Bytes(FrenchLibrary()));
}

TEST(ResourceWriter, ChangedTextsAreReadAgainAndTheOthersStay)
{
    const TemporaryFolder folder;
    const fs::path target = folder.Path() / L"a.dll";
    const Translation french = ReadTranslation(FrenchLibrary());
    Translation changed = french;
    changed.strings[101] = L"\u65E5\u672C";
    changed.dialogs[310].title = L"title";
    changed.dialogs[310].controls.front().title.text = L"label";
    WriteTranslation(french, changed, target);
    const Translation found = ReadTranslation(target);
    EXPECT_EQ(found.strings, changed.strings);
    EXPECT_EQ(found.dialogs.at(310).title, L"title");
    EXPECT_EQ(found.dialogs.at(310).controls.front().title.text, L"label");
    EXPECT_EQ(WriteDialogTemplate(found.dialogs.at(300)), WriteDialogTemplate(french.dialogs.at(300)));
}

TEST(ResourceWriter, ATargetThatCannotBeWrittenLeavesNothingBehind)
{
    const TemporaryFolder folder;
    const Translation french = ReadTranslation(FrenchLibrary());
    EXPECT_THROW(WriteTranslation(french, french, folder.Path() / L"none" / L"a.dll"), ToolError);
    EXPECT_TRUE(fs::is_empty(folder.Path()));
}
