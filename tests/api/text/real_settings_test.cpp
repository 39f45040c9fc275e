// Settings files that Debian packages ship, against what Python's configparser reads from them. The
// expected entries lie beside the files, see real_files/README.md; ARVMUI_REAL_FILES in the
// environment names another folder of such files.

#include "settings_file.h"
#include "support/child_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace arvmui_test
{
namespace
{

namespace fs = std::filesystem;

using Fields = std::vector<std::string>;  // in UTF-8

constexpr char kDeclaration[] = "[Encoding]\nInputEncoding=UTF-8\n";

fs::path RealFilesFolder()
{
    const char* const folder = std::getenv("ARVMUI_REAL_FILES");
    return folder ? fs::path(folder) : fs::path(L"real_files");
}

struct RealFile
{
    fs::path path;
};

std::ostream& operator<<(std::ostream& stream, const RealFile& file)
{
    return stream << file.path.filename().string();
}

// Those with expected entries.
std::vector<RealFile> FindRealFiles()
{
    std::vector<RealFile> files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(RealFilesFolder(), error))
    {
        if (entry.path().extension() == L".expected") files.push_back({fs::path(entry.path()).replace_extension()});
    }
    return files;
}

std::string TestName(const testing::TestParamInfo<RealFile>& information)
{
    std::string name = std::to_string(information.index) + "_";
    for (const char c : information.param.path.filename().string())
    {
        if (std::isalnum(static_cast<unsigned char>(c))) name += c;
    }
    return name;
}

std::string ReadBytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// Comments that begin with '#' begin with ';' instead, as the library knows no others.
std::string WithLibraryComments(const std::string& text)
{
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);)
    {
        const size_t first = line.find_first_not_of(" \t");
        if (first != std::string::npos && line[first] == '#') line[first] = ';';
        result += line + "\n";
    }
    return result;
}

std::string Unescape(const std::string& field)
{
    std::string text;
    for (size_t i = 0; i < field.size(); ++i)
    {
        if (field[i] != '\\' || i + 1 == field.size())
        {
            text += field[i];
            continue;
        }
        const char escaped = field[++i];
        text += escaped == 't' ? '\t' : escaped == 'n' ? '\n' : escaped == 'r' ? '\r' : escaped;
    }
    return text;
}

std::vector<Fields> ReadExpected(const fs::path& path, const std::string& kind)
{
    std::vector<Fields> entries;
    std::ifstream file(fs::path(path) += L".expected", std::ios::binary);
    for (std::string line; std::getline(file, line);)
    {
        Fields fields;
        std::istringstream parts(line);
        for (std::string field; std::getline(parts, field, '\t');) fields.push_back(Unescape(field));
        if (!line.empty() && line.back() == '\t') fields.emplace_back();
        if (!fields.empty() && fields.front() == kind) entries.emplace_back(fields.begin() + 1, fields.end());
    }
    return entries;
}

std::vector<std::wstring> WideTexts(Fields::const_iterator begin, Fields::const_iterator end)
{
    std::vector<std::wstring> texts;
    for (auto field = begin; field != end; ++field) texts.push_back(WideFromUtf8(*field));
    return texts;
}

class RealSettingsTest : public testing::TestWithParam<RealFile>
{
protected:
    std::vector<Fields> Expected(const std::string& kind) const { return ReadExpected(GetParam().path, kind); }

    const SettingsFile file_{kDeclaration + WithLibraryComments(ReadBytes(GetParam().path))};
};

INSTANTIATE_TEST_SUITE_P(Files, RealSettingsTest, testing::ValuesIn(FindRealFiles()), TestName);

TEST_P(RealSettingsTest, HaveTheSameSections)
{
    std::vector<std::wstring> expected = {L"Encoding"};
    for (const Fields& section : Expected("section")) expected.push_back(WideFromUtf8(section.at(0)));
    if (expected.size() == 1) GTEST_SKIP() << "too malformed for the library to list its sections";
    EXPECT_EQ(file_.Sections(), expected);
}

TEST_P(RealSettingsTest, HaveTheSameKeys)
{
    for (const Fields& keys : Expected("keys"))
    {
        EXPECT_EQ(file_.Keys(WideFromUtf8(keys.at(0)).c_str()), WideTexts(keys.begin() + 1, keys.end())) << keys.at(0);
    }
}

TEST_P(RealSettingsTest, HaveTheSameValues)
{
    for (const Fields& value : Expected("value"))
    {
        const std::wstring section = WideFromUtf8(value.at(0));
        const std::wstring key = WideFromUtf8(value.at(1));
        EXPECT_EQ(file_.Value(section.c_str(), key.c_str()), WideFromUtf8(value.at(2)))
            << value.at(0) << ", " << value.at(1);
    }
}

TEST_P(RealSettingsTest, HaveTheSameNarrowValues)
{
    for (const Fields& value : Expected("value"))
    {
        EXPECT_EQ(file_.Value(value.at(0).c_str(), value.at(1).c_str()), value.at(2))
            << value.at(0) << ", " << value.at(1);
    }
}

// Most of these files begin with more than two lines of such comments.
TEST(RealSettings, CommentsWithANumberSignAreMalformedLines)
{
    const std::string bytes = ReadBytes(fs::path(L"real_files") / L"debian-xterm.desktop");
    ASSERT_NE(bytes, "");
    EXPECT_EQ(SettingsFile(bytes).Value(L"Desktop Entry", L"Name"), L"<none>");
    EXPECT_EQ(SettingsFile(WithLibraryComments(bytes)).Value(L"Desktop Entry", L"Name"), L"XTerm");
}

}  // namespace
}  // namespace arvmui_test
