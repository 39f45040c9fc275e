#include "installer/session/session_fixture.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace arvmui_test
{

SessionTest::SessionTest() : file(folder.Path() / L"session.msi")
{
    // A process is asked once; each test plays one of its own.
    ARVMUI_GetDescriptor()->LocaleHintTable[HINT_ASKED][0] = L'\0';
}

void SessionTest::Open()
{
    package.tables.Write(file);
    bytesBefore_ = BytesOf(file);
    session_ = OpenMsiSession(file);
}

// Whatever the test was about: nothing stays open or published, and the package is as it was.
void SessionTest::TearDown()
{
    EXPECT_FALSE(IsContextPublished());
    session_.Close();
    EXPECT_EQ(::MsiCloseAllHandles(), 0U) << "handles of the installer were left open";
    if (!bytesBefore_.empty())
    {
        EXPECT_TRUE(BytesOf(file) == bytesBefore_) << "the package has changed";
    }
}

void SessionTest::Set(const std::wstring& property, const std::wstring& value) const
{
    EXPECT_EQ(::MsiSetPropertyW(Session(), property.c_str(), value.c_str()), UINT{ERROR_SUCCESS});
}

TablesOfLanguage SessionTest::Tables() const
{
    return ReadTables(ActiveDatabase(Session()).Get());
}

std::string BytesOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

bool IsContextPublished()
{
    const auto& context = ARVMUI_GetDescriptor()->installerContext;
    return std::any_of(std::begin(context), std::end(context), [](BYTE byte) { return byte != 0; });
}

TablesOfLanguage ReadTables(MSIHANDLE database)
{
    TablesOfLanguage tables;
    for (const auto& [name, rows] : EnglishTables())
        tables[name] = SortedMsiRows(database, L"SELECT * FROM `" + name + L"`");
    return tables;
}

}  // namespace arvmui_test
