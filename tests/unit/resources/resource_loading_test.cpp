// The consumer with which resource libraries are searched.
#include "resources/resource_loading.h"

#include "support/resource_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace
{

using namespace arvmui;
using arvmui_test::LoadedModule;

class ResourceConsumer : public testing::Test
{
protected:
    ResourceConsumer() : module(folder.Path() / L"module.dll") {}

    void SetUp() override
    {
        ASSERT_TRUE(context.format.Build(module.Get(), nullptr));
        arvmui_test::WriteResourceImage(German());
    }

    std::filesystem::path German() const { return folder.Path() / L"resource\\de\\moduleUI.DLL"; }

    arvmui_test::TemporaryFolder folder;
    LoadedModule module;
    ResourceLoadContext context;
};

TEST_F(ResourceConsumer, StartsWithNothingFound)
{
    EXPECT_EQ(context.error, static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_EQ(context.library, nullptr);
}

TEST_F(ResourceConsumer, AcceptsTheLocaleWhoseLibraryLoads)
{
    context.mode = ResourceLoadMode::kLoad;
    EXPECT_EQ(AcceptResourceLibrary(L"fr", &context), 0u);
    EXPECT_EQ(context.error, static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
    EXPECT_NE(AcceptResourceLibrary(L"de", &context), 0u);
    EXPECT_EQ(context.error, static_cast<DWORD>(ERROR_SUCCESS));
    ASSERT_NE(context.library, nullptr);
    EXPECT_EQ(context.library, ::GetModuleHandleW(German().c_str()));
    ::FreeLibrary(context.library);
}

TEST_F(ResourceConsumer, AcceptsOnlyWhatIsLoadedWhenItLoadsNothing)
{
    context.mode = ResourceLoadMode::kFindLoaded;
    EXPECT_EQ(AcceptResourceLibrary(L"de", &context), 0u);
    EXPECT_EQ(::GetModuleHandleW(German().c_str()), nullptr);
    const HMODULE loaded = ::LoadLibraryW(German().c_str());
    EXPECT_NE(AcceptResourceLibrary(L"de", &context), 0u);
    EXPECT_EQ(context.library, loaded);
    EXPECT_EQ(context.error, static_cast<DWORD>(ERROR_SUCCESS));
    ::FreeLibrary(loaded);
}

TEST_F(ResourceConsumer, AcceptsTheRefusalAsCancelled)
{
    for (const ResourceLoadMode mode : {ResourceLoadMode::kLoad, ResourceLoadMode::kFindLoaded})
    {
        context.mode = mode;
        EXPECT_NE(AcceptResourceLibrary(nullptr, &context), 0u);
        EXPECT_EQ(context.error, static_cast<DWORD>(ERROR_CANCELLED));
        EXPECT_EQ(context.library, nullptr);
    }
}

TEST_F(ResourceConsumer, RejectsALocaleWhosePathDoesNotFit)
{
    const std::wstring locale(260, L'l');
    EXPECT_EQ(AcceptResourceLibrary(locale.c_str(), &context), 0u);
    EXPECT_EQ(context.error, static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
}

TEST_F(ResourceConsumer, RejectsEverythingInAnUnknownMode)
{
    context.mode = static_cast<ResourceLoadMode>(2);
    EXPECT_EQ(AcceptResourceLibrary(L"de", &context), 0u);
    EXPECT_EQ(context.library, nullptr);
    EXPECT_EQ(::GetModuleHandleW(German().c_str()), nullptr);
}

}  // namespace
