// What becomes of a command line and of an argument vector, as plainly as it can be put. What the library
// does in place is measured against this.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace arvmui_test
{

// A line without its locale options, and the value of the first that has one.
struct PlainLine
{
    std::wstring line;
    std::wstring value;

    bool operator==(const PlainLine&) const = default;
};

// Of lines that name no file.
PlainLine ParsePlainly(const std::wstring& line);

std::vector<std::wstring> WithoutLocaleArguments(const std::vector<std::wstring>& arguments);

}  // namespace arvmui_test
