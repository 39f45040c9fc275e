// Whether the package carries the files that its tables promise.

#include "installer/sample_package/sample_package.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <set>

#include <objbase.h>
#include <setupapi.h>

using namespace arvmui_test;

namespace
{

std::filesystem::path WriteCabinet(const TemporaryFolder& folder)
{
    const MsiRows streams = ReadMsiRows(Sample().Database(), L"SELECT `Data` FROM `_Streams` WHERE `Name`='files.cab'");
    const std::filesystem::path path = folder.Path() / L"files.cab";
    std::ofstream file(path, std::ios::binary);
    for (const auto& row : streams)
    {
        for (const wchar_t byte : row[0]) file.put(static_cast<char>(byte));
    }
    return path;
}

struct CabinetFile
{
    std::wstring name;
    std::wstring size;

    bool operator==(const CabinetFile&) const = default;
};

UINT CALLBACK NoteFile(void* context, UINT notification, UINT_PTR first, UINT_PTR)
{
    if (notification != SPFILENOTIFY_FILEINCABINET) return NO_ERROR;
    const auto& info = *reinterpret_cast<const FILE_IN_CABINET_INFO_W*>(first);
    static_cast<std::vector<CabinetFile>*>(context)->push_back({info.NameInCabinet, std::to_wstring(info.FileSize)});
    return FILEOP_SKIP;
}

std::wstring SummaryText(UINT property)
{
    MSIHANDLE summary = 0;
    if (::MsiGetSummaryInformationW(Sample().Database(), nullptr, 0, &summary) != ERROR_SUCCESS) return {};
    const MsiHandle owner(summary);
    UINT type = 0;
    INT number = 0;
    FILETIME time = {};
    wchar_t text[256] = {};
    DWORD length = ARRAYSIZE(text);
    ::MsiSummaryInfoGetPropertyW(summary, property, &type, &number, &time, text, &length);
    return text[0] != L'\0' ? text : std::to_wstring(number);
}

}  // namespace

TEST(SamplePackageFiles, CabinetHoldsTheFilesInTheirOrderWithTheirSizes)
{
    std::vector<CabinetFile> expected(Sample().Table(L"File").rows.size());
    for (const PackageRow& row : Sample().Table(L"File").rows)
        expected.at(std::stoul(row.at(L"Sequence")) - 1) = {row.at(L"File"), row.at(L"FileSize")};

    const TemporaryFolder folder;
    const std::filesystem::path cabinet = WriteCabinet(folder);
    std::vector<CabinetFile> files;
    ASSERT_NE(::SetupIterateCabinetW(cabinet.c_str(), 0, NoteFile, &files), FALSE);
    EXPECT_EQ(files, expected);
}

TEST(SamplePackageFiles, MediaEndsWithTheLastFile)
{
    const PackageRow& media = Sample().Row(L"Media", L"1");
    EXPECT_EQ(media.at(L"LastSequence"), std::to_wstring(Sample().Table(L"File").rows.size()));
    EXPECT_EQ(media.at(L"Cabinet"), L"#files.cab");
}

TEST(SamplePackageFiles, EveryComponentBelongsToTheFeature)
{
    for (const PackageRow& component : Sample().Table(L"Component").rows)
        EXPECT_NE(Sample()
                      .Table(L"FeatureComponents")
                      .FindRow(std::wstring(L"Complete") + kKeySeparator + component.at(L"Component")),
            nullptr)
            << Narrow(component.at(L"Component"));
}

TEST(SamplePackageFiles, EveryKeyPathIsOfItsOwnComponent)
{
    constexpr int kRegistryKeyPath = 4;
    for (const PackageRow& component : Sample().Table(L"Component").rows)
    {
        const bool isRegistry = (std::stoi(component.at(L"Attributes")) & kRegistryKeyPath) != 0;
        const PackageRow& key = Sample().Row(isRegistry ? L"Registry" : L"File", component.at(L"KeyPath"));
        EXPECT_EQ(key.at(L"Component_"), component.at(L"Component"));
    }
}

TEST(SamplePackageFiles, ComponentsHaveCodesOfTheirOwn)
{
    std::set<std::wstring> codes;
    for (const PackageRow& component : Sample().Table(L"Component").rows) codes.insert(component.at(L"ComponentId"));
    EXPECT_EQ(codes.size(), Sample().Table(L"Component").rows.size());
}

TEST(SamplePackageFiles, SummaryTellsA64BitEnglishPackageWithItsFilesInside)
{
    constexpr UINT kTemplate = 7;
    constexpr UINT kSourceType = 15;
    EXPECT_EQ(SummaryText(kTemplate), L"x64;1033");
    EXPECT_EQ(SummaryText(kSourceType), L"2");  // long file names, compressed
}

TEST(SamplePackageFiles, PackageCodeIsACodeOfItsOwn)
{
    constexpr UINT kPackageCode = 9;
    const std::wstring code = SummaryText(kPackageCode);
    CLSID parsed;
    EXPECT_EQ(::CLSIDFromString(code.c_str(), &parsed), NOERROR) << Narrow(code);
    EXPECT_NE(code, Sample().Row(L"Property", L"ProductCode").at(L"Value"));
    EXPECT_NE(code, Sample().Row(L"Property", L"UpgradeCode").at(L"Value"));
}

TEST(SamplePackageFiles, UpgradeFindsOtherVersionsOfThisProduct)
{
    const std::wstring version = Sample().Row(L"Property", L"ProductVersion").at(L"Value");
    std::set<std::wstring> properties;
    for (const PackageRow& row : Sample().Table(L"Upgrade").rows)
    {
        EXPECT_EQ(row.at(L"UpgradeCode"), Sample().Row(L"Property", L"UpgradeCode").at(L"Value"));
        const bool older = row.at(L"ActionProperty") == L"OLDERVERSIONFOUND";
        EXPECT_EQ(row.at(older ? L"VersionMax" : L"VersionMin"), version);
        properties.insert(row.at(L"ActionProperty"));
    }
    EXPECT_EQ(properties, (std::set<std::wstring>{L"OLDERVERSIONFOUND", L"NEWERVERSIONFOUND"}));
}
