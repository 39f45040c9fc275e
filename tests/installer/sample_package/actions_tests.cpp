// Whether the package schedules the library's actions as they need it, and names the product consistently.

#include "installer/sample_package/sample_package.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

using namespace arvmui_test;

namespace
{

constexpr int kLibraryInBinaryTable = 1;
constexpr int kSetProperty = 51;
constexpr int kKindMask = 0x3F;
constexpr int kIgnoreResult = 0x40;
constexpr int kAsynchronous = 0x80;
constexpr int kDeferred = 0x400;
constexpr int kNoImpersonation = 0x800;

std::wstring ActionName(const std::wstring& name)
{
    return L"ARV_MUI_" + name + L".5E1A7C30_94B2_4F6D_A8C1_0B3D62E94F17";
}

int TypeOf(const std::wstring& action)
{
    return std::stoi(Sample().Row(L"CustomAction", action).at(L"Type"));
}

int Place(const wchar_t* sequence, const std::wstring& action)
{
    return std::stoi(Sample().Row(sequence, action).at(L"Sequence"));
}

bool IsScheduled(const wchar_t* sequence, const std::wstring& action)
{
    return Sample().Table(sequence).FindRow(action) != nullptr;
}

const wchar_t* const kSequences[] = {L"InstallUISequence", L"AdminUISequence", L"InstallExecuteSequence",
    L"AdminExecuteSequence", L"AdvtExecuteSequence"};

std::string FileBytes(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// How the installer writes a product code in its registry keys: the digits of each number in the code's
// binary form, in the order in which they lie in memory, low digit first.
std::wstring PackedCode(const std::wstring& code)
{
    const int digits[] = {8, 7, 6, 5, 4, 3, 2, 1, 13, 12, 11, 10, 18, 17, 16, 15, 21, 20, 23, 22, 26, 25, 28, 27, 30,
        29, 32, 31, 34, 33, 36, 35};
    std::wstring packed;
    for (const int digit : digits) packed += code.at(static_cast<size_t>(digit));
    return packed;
}

}  // namespace

TEST(SamplePackageActions, LibraryIsTheBuiltOne)
{
    const std::wstring& stored = Sample().Row(L"Binary", L"arvmui64.dll").at(L"Data");
    const std::string built = FileBytes(TestProgramFolder() / L"arvmui64.dll");
    ASSERT_FALSE(built.empty());
    EXPECT_TRUE(std::equal(stored.begin(), stored.end(), built.begin(), built.end(),
        [](wchar_t one, char other) { return one == static_cast<unsigned char>(other); }));
}

TEST(SamplePackageActions, LibraryExportsWhatTheActionsCall)
{
    const HMODULE library = ::GetModuleHandleW(L"arvmui64.dll");
    ASSERT_NE(library, nullptr);
    int actions = 0;
    for (const PackageRow& row : Sample().Table(L"CustomAction").rows)
    {
        if ((std::stoi(row.at(L"Type")) & kKindMask) != kLibraryInBinaryTable) continue;
        ++actions;
        EXPECT_EQ(row.at(L"Source"), L"arvmui64.dll");
        EXPECT_NE(::GetProcAddress(library, Narrow(row.at(L"Target")).c_str()), nullptr) << Narrow(row.at(L"Target"));
    }
    EXPECT_EQ(actions, 6);
}

TEST(SamplePackageActions, ActionsBearTheNamesThatTheLibraryTakesOutOfTheCachedPackage)
{
    const std::pair<const wchar_t*, const wchar_t*> names[] = {{L"SetLocale", L"ARVMUI_MSI_SetLocale"},
        {L"TranslateLocalPackage", L"ARVMUI_MSI_TranslateLocalPackage"},
        {L"StartFontResetter", L"ARVMUI_MSI_StartFontResetter"}, {L"StopFontResetter", L"ARVMUI_MSI_StopFontResetter"}};
    for (const auto& [name, target] : names)
        EXPECT_EQ(Sample().Row(L"CustomAction", ActionName(name)).at(L"Target"), target);
}

TEST(SamplePackageActions, SetLocaleIsImmediateAndItsFailureEndsTheSession)
{
    EXPECT_EQ(TypeOf(ActionName(L"SetLocale")), kLibraryInBinaryTable);
}

TEST(SamplePackageActions, SetLocaleComesFirstWhereverTextsAreShown)
{
    for (const wchar_t* sequence :
        {L"InstallUISequence", L"AdminUISequence", L"InstallExecuteSequence", L"AdminExecuteSequence"})
    {
        int first = 32767;
        for (const PackageRow& row : Sample().Table(sequence).rows)
        {
            const int place = std::stoi(row.at(L"Sequence"));
            if (place > 0) first = std::min(first, place);
        }
        EXPECT_EQ(Place(sequence, ActionName(L"SetLocale")), first) << Narrow(sequence);
        EXPECT_EQ(Sample().Row(sequence, ActionName(L"SetLocale")).at(L"Condition"), L"") << Narrow(sequence);
    }
}

TEST(SamplePackageActions, FontIsChosenBehindTheLocaleAndBeforeAnyDialog)
{
    for (const wchar_t* sequence : {L"InstallUISequence", L"AdminUISequence"})
    {
        const int place = Place(sequence, ActionName(L"SetDefaultCSFont"));
        EXPECT_GT(place, Place(sequence, ActionName(L"SetLocale")));
        for (const PackageRow& dialog : Sample().Table(L"Dialog").rows)
        {
            const PackageRow* const row = Sample().Table(sequence).FindRow(dialog.at(L"Dialog"));
            if (row && std::stoi(row->at(L"Sequence")) > 0)
            {
                EXPECT_LT(place, std::stoi(row->at(L"Sequence")));
            }
        }
    }
}

TEST(SamplePackageActions, TranslationIsDeferredAndNeverFailsTheInstallation)
{
    EXPECT_EQ(TypeOf(ActionName(L"TranslateLocalPackage")),
        kLibraryInBinaryTable | kDeferred | kNoImpersonation | kIgnoreResult);
}

TEST(SamplePackageActions, TranslationRunsWhenThePackageIsCachedAndBeforeTheScriptEnds)
{
    const wchar_t* const sequence = L"InstallExecuteSequence";
    const int place = Place(sequence, ActionName(L"TranslateLocalPackage"));
    EXPECT_GT(place, Place(sequence, L"InstallInitialize"));
    EXPECT_GT(place, Place(sequence, L"RegisterProduct"));
    EXPECT_GT(place, Place(sequence, L"PublishProduct"));
    EXPECT_LT(place, Place(sequence, L"InstallFinalize"));
}

TEST(SamplePackageActions, TranslationGetsItsDataUnderTheSameCondition)
{
    const wchar_t* const sequence = L"InstallExecuteSequence";
    const PackageRow& action = Sample().Row(L"CustomAction", L"SetTranslateLocalPackageData");
    EXPECT_EQ(action.at(L"Type"), std::to_wstring(kSetProperty));
    EXPECT_EQ(action.at(L"Source"), ActionName(L"TranslateLocalPackage"));
    EXPECT_EQ(action.at(L"Target"), L"[UILOCALE],[ProductCodeFast],[TRANSFORMS]");
    EXPECT_LT(Place(sequence, L"SetTranslateLocalPackageData"), Place(sequence, ActionName(L"TranslateLocalPackage")));
    EXPECT_EQ(Sample().Row(sequence, L"SetTranslateLocalPackageData").at(L"Condition"),
        Sample().Row(sequence, ActionName(L"TranslateLocalPackage")).at(L"Condition"));
}

// Where it watches the windows itself, the installation has to go on meanwhile, and to reach the action that ends it.
TEST(SamplePackageActions, FontResetterRunsBesideTheInstallation)
{
    EXPECT_EQ(TypeOf(ActionName(L"StartFontResetter")), kLibraryInBinaryTable | kAsynchronous);
    EXPECT_EQ(TypeOf(ActionName(L"StopFontResetter")), kLibraryInBinaryTable | kIgnoreResult);
}

TEST(SamplePackageActions, FontResetterIsStartedAndStoppedUnderTheSameCondition)
{
    const wchar_t* const sequence = L"InstallExecuteSequence";
    EXPECT_GT(Place(sequence, ActionName(L"StartFontResetter")), Place(sequence, ActionName(L"SetLocale")));
    EXPECT_GT(Place(sequence, ActionName(L"StopFontResetter")), Place(sequence, L"InstallFinalize"));
    EXPECT_EQ(Sample().Row(sequence, ActionName(L"StartFontResetter")).at(L"Condition"),
        Sample().Row(sequence, ActionName(L"StopFontResetter")).at(L"Condition"));
}

TEST(SamplePackageActions, PreviewIsInNoSequence)
{
    for (const wchar_t* sequence : kSequences)
        EXPECT_FALSE(IsScheduled(sequence, ActionName(L"SelectionDialogBoxPreview"))) << Narrow(sequence);
}

TEST(SamplePackageActions, EveryScheduledActionExists)
{
    const std::set<std::wstring> standard = {L"CostFinalize", L"CostInitialize", L"CreateShortcuts", L"ExecuteAction",
        L"FileCost", L"FindRelatedProducts", L"InstallAdminPackage", L"InstallFiles", L"InstallFinalize",
        L"InstallInitialize", L"InstallValidate", L"LaunchConditions", L"MigrateFeatureStates", L"ProcessComponents",
        L"PublishFeatures", L"PublishProduct", L"RegisterProduct", L"RegisterUser", L"RemoveExistingProducts",
        L"RemoveFiles", L"RemoveRegistryValues", L"RemoveShortcuts", L"UnpublishFeatures", L"WriteRegistryValues"};
    for (const wchar_t* sequence : kSequences)
    {
        for (const PackageRow& row : Sample().Table(sequence).rows)
        {
            const std::wstring& action = row.at(L"Action");
            EXPECT_TRUE(standard.contains(action) || Sample().Table(L"CustomAction").FindRow(action)
                        || Sample().Table(L"Dialog").FindRow(action))
                << Narrow(sequence) << ": " << Narrow(action);
        }
    }
}

TEST(SamplePackageActions, NoTwoActionsHaveOnePlace)
{
    for (const wchar_t* sequence : kSequences)
    {
        std::set<std::wstring> places;
        for (const PackageRow& row : Sample().Table(sequence).rows)
            EXPECT_TRUE(places.insert(row.at(L"Sequence")).second) << Narrow(sequence + (L": " + row.at(L"Action")));
    }
}

TEST(SamplePackageActions, LanguageAndDialogsReachTheInstallingProcess)
{
    const std::wstring names = L";" + Sample().Row(L"Property", L"SecureCustomProperties").at(L"Value") + L";";
    for (const wchar_t* name : {L";UILOCALE;", L";ENABLE_DIALOGS;", L";OLDERVERSIONFOUND;", L";NEWERVERSIONFOUND;"})
        EXPECT_NE(names.find(name), std::wstring::npos) << Narrow(name);
}

TEST(SamplePackageActions, ProductCodeFastIsTheProductCodeOfTheInstallersKeys)
{
    EXPECT_EQ(Sample().Row(L"Property", L"ProductCodeFast").at(L"Value"),
        PackedCode(Sample().Row(L"Property", L"ProductCode").at(L"Value")));
}

TEST(SamplePackageActions, LanguageIsRecordedForTheUpgradeCodeInThe32BitView)
{
    constexpr int k64BitComponent = 0x100;
    const PackageRow& value = Sample().Row(L"Registry", L"InstallUILocale");
    EXPECT_EQ(value.at(L"Root"), L"2");  // the local machine
    EXPECT_EQ(value.at(L"Key"), L"SOFTWARE\\Pelkor\\MUI\\[UpgradeCode]");
    EXPECT_EQ(value.at(L"Name"), L"InstallUILocale");
    EXPECT_EQ(value.at(L"Value"), L"[UILOCALE]");
    EXPECT_EQ(std::stoi(Sample().Row(L"Component", value.at(L"Component_")).at(L"Attributes")) & k64BitComponent, 0);
}
