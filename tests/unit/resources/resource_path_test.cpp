// A locale put into a module's path format, whatever the rest of the path looks like.
#include "resources/resource_path.h"

#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace
{

using namespace arvmui;
using arvmui_test::LoadedModule;

class ResourcePath : public testing::Test
{
protected:
    arvmui_test::TemporaryFolder folder;
};

TEST_F(ResourcePath, LocaleReplacesItsOwnPlaceholderOnly)
{
    for (const wchar_t* const place : {L"plain", L"100%s off", L"%s%n%d%%", L"resource"})
    {
        const std::filesystem::path root = folder.Path() / place;
        const LoadedModule module(root / L"%s%n.dll");
        ResourcePathFormat<wchar_t> format;
        ASSERT_TRUE(format.Build(module.Get(), nullptr));
        wchar_t path[kMaxPathChars];
        for (const wchar_t* const locale : {L"de-DE", L"%s", L"", L"..\\en"})
        {
            EXPECT_TRUE(format.Format(locale, path));
            EXPECT_EQ(path, root.wstring() + L"\\resource\\" + locale + L"\\%s%nUI.DLL");
        }
        EXPECT_STREQ(format.FileName(), L"%s%nUI.DLL");
    }
}

TEST_F(ResourcePath, NarrowFormatDoesTheSame)
{
    const std::filesystem::path root = folder.Path() / L"100%s off";
    const LoadedModule module(root / L"%s%n.dll");
    ResourcePathFormat<char> format;
    ASSERT_TRUE(format.Build(module.Get(), "%d texts.dll"));
    char path[kMaxPathChars];
    EXPECT_TRUE(format.Format("%s", path));
    EXPECT_EQ(path, root.string() + "\\resource\\%s\\%d texts.dll");
    EXPECT_STREQ(format.FileName(), "%d texts.dll");
}

TEST_F(ResourcePath, FileNameIsWhatStandsBehindTheLastBackslash)
{
    const LoadedModule module(folder.Path() / L"module.dll");
    ResourcePathFormat<wchar_t> format;
    ASSERT_TRUE(format.Build(module.Get(), L"below\\texts.dll"));
    EXPECT_STREQ(format.FileName(), L"texts.dll");
}

TEST_F(ResourcePath, PathIsCutAt259Characters)
{
    const LoadedModule module(folder.Path() / L"module.dll");
    ResourcePathFormat<wchar_t> format;
    ASSERT_TRUE(format.Build(module.Get(), nullptr));
    const std::wstring before = folder.Path().wstring() + L"\\resource\\";
    const std::wstring behind = L"\\moduleUI.DLL";
    const size_t room = 259 - before.size() - behind.size();
    for (const size_t length : {room - 1, room, room + 1, room + behind.size(), room + behind.size() + 1, size_t{400}})
    {
        const std::wstring locale(length, L'l');
        wchar_t path[kMaxPathChars];
        EXPECT_EQ(format.Format(locale.c_str(), path), length <= room);
        EXPECT_EQ(path, (before + locale + behind).substr(0, 259));
    }
}

TEST_F(ResourcePath, IntegerInPlaceOfTheFileNameIsRefused)
{
    ResourcePathFormat<wchar_t> format;
    EXPECT_FALSE(format.Build(nullptr, MAKEINTRESOURCEW(7)));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
}

}  // namespace
