// The binding of the installer's functions.
#include "unit/installer/installer_fixture.h"

#include <array>
#include <cstring>

namespace
{

using arvmui::BindInstallerLibrary;
using arvmui::BindLoadedInstallerLibrary;
using arvmui::InstallerEntryPoints;
using arvmui_test::StandInInstaller;

const std::vector<std::string> kFunctions = {
    "MsiCloseHandle",
    "MsiDatabaseOpenViewW",
    "MsiGetActiveDatabase",
    "MsiGetPropertyW",
    "MsiRecordGetInteger",
    "MsiRecordGetStringW",
    "MsiSetPropertyW",
    "MsiViewClose",
    "MsiViewExecute",
    "MsiViewFetch",
    "MsiViewModify",
    "MsiOpenDatabaseW",
    "MsiDatabaseCommit",
    "MsiDatabaseImportW",
};

// The entry points in their order.
std::vector<void*> BoundFunctions()
{
    static_assert(sizeof(InstallerEntryPoints) == 14 * sizeof(void*));
    std::vector<void*> functions(14);
    std::memcpy(functions.data(), &arvmui::Installer(), sizeof(InstallerEntryPoints));
    return functions;
}

std::vector<void*> FunctionsOf(HMODULE module)
{
    std::vector<void*> functions;
    for (const std::string& name : kFunctions)
        functions.push_back(reinterpret_cast<void*>(::GetProcAddress(module, name.c_str())));
    return functions;
}

class InstallerBinding : public testing::Test
{
protected:
    StandInInstaller installer;
};

TEST_F(InstallerBinding, LooksTheFunctionsUpInTheirOrder)
{
    EXPECT_EQ(BindInstallerLibrary(installer.Module()), ERROR_SUCCESS);
    EXPECT_EQ(installer.LookedUp(), kFunctions);
}

TEST_F(InstallerBinding, KeepsEachFunctionInItsPlace)
{
    ASSERT_EQ(BindInstallerLibrary(installer.Module()), ERROR_SUCCESS);
    EXPECT_EQ(BoundFunctions(), FunctionsOf(installer.Module()));
}

TEST_F(InstallerBinding, WithoutAModuleFailsAndLooksNothingUp)
{
    EXPECT_EQ(BindInstallerLibrary(nullptr), ERROR_FUNCTION_FAILED);
    EXPECT_TRUE(installer.LookedUp().empty());
}

TEST_F(InstallerBinding, LooksEverythingUpAgainEachTime)
{
    ASSERT_EQ(BindInstallerLibrary(installer.Module()), ERROR_SUCCESS);
    ASSERT_EQ(BindInstallerLibrary(installer.Module()), ERROR_SUCCESS);
    EXPECT_EQ(installer.LookedUp().size(), 2 * kFunctions.size());
}

TEST_F(InstallerBinding, OutlivesACallWithoutAModule)
{
    ASSERT_EQ(BindInstallerLibrary(installer.Module()), ERROR_SUCCESS);
    const std::vector<void*> before = BoundFunctions();
    ASSERT_EQ(BindInstallerLibrary(nullptr), ERROR_FUNCTION_FAILED);
    EXPECT_EQ(BoundFunctions(), before);
}

class MissingFunction : public InstallerBinding, public testing::WithParamInterface<size_t>
{
};

TEST_P(MissingFunction, EndsTheBindingInFailure)
{
    const auto missing = kFunctions.begin() + static_cast<std::ptrdiff_t>(GetParam());
    installer.missing = {*missing};
    EXPECT_EQ(BindInstallerLibrary(installer.Module()), ERROR_FUNCTION_FAILED);
    EXPECT_EQ(installer.LookedUp(), std::vector<std::string>(kFunctions.begin(), missing + 1));
}

INSTANTIATE_TEST_SUITE_P(Functions, MissingFunction, testing::Range(size_t{0}, kFunctions.size()),
    [](const testing::TestParamInfo<size_t>& parameter) { return kFunctions[parameter.param]; });

// ---- The library that the process has loaded ------------------------------------------------------------

TEST_F(InstallerBinding, FindsTheLoadedLibraryByItsName)
{
    HMODULE module = nullptr;
    EXPECT_EQ(BindLoadedInstallerLibrary(&module), ERROR_SUCCESS);
    EXPECT_EQ(module, installer.Module());
    EXPECT_EQ(BoundFunctions(), FunctionsOf(installer.Module()));
}

TEST_F(InstallerBinding, NeedsNobodyWhoAsksForTheModule)
{
    EXPECT_EQ(BindLoadedInstallerLibrary(), ERROR_SUCCESS);
    EXPECT_EQ(installer.LookedUp(), kFunctions);
}

TEST_F(InstallerBinding, LoadsNoLibrary)
{
    installer.isLoaded = false;
    HMODULE module = installer.Module();
    EXPECT_EQ(BindLoadedInstallerLibrary(&module), ERROR_FUNCTION_FAILED);
    EXPECT_EQ(module, nullptr);
    EXPECT_TRUE(installer.LoadedPaths().empty());
}

}  // namespace
