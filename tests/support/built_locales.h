// The folders of the built resource libraries beside the test program, as parameters of tests.
#pragma once

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace arvmui_test
{

inline std::filesystem::path BuiltResourceFolder()
{
    return TestProgramFolder() / L"resource";
}

inline std::filesystem::path BuiltResourceLibrary(const std::wstring& locale)
{
    return BuiltResourceFolder() / locale / L"arvmuiUI.DLL";
}

// In the order of their names.
inline std::vector<std::wstring> BuiltLocales()
{
    std::vector<std::wstring> locales;
    for (const auto& folder : std::filesystem::directory_iterator(BuiltResourceFolder()))
        locales.push_back(folder.path().filename().wstring());
    std::sort(locales.begin(), locales.end());
    return locales;
}

// GoogleTest takes letters, digits and '_' for a test's name.
inline std::string LocaleTestName(const testing::TestParamInfo<std::wstring>& locale)
{
    std::string name;
    for (const wchar_t c : locale.param) name += c == L'-' ? '_' : static_cast<char>(c);
    return name;
}

}  // namespace arvmui_test
