// Texts of bytes as the library's reader gives them, and their comparison with what they should be.
#pragma once

#include "memory_file.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>

namespace arvmui_test
{

struct CodePageCase
{
    const char* name;
    UINT codePage;
};

inline std::ostream& operator<<(std::ostream& stream, const CodePageCase& row)
{
    return stream << row.name;
}

inline constexpr CodePageCase kCodePages[] = {
    {"Western", 1252},
    {"Turkish", 1254},
    {"CentralEuropean", 1250},
    {"Cyrillic", 1251},
    {"Greek", 1253},
    {"Thai", 874},
    {"Japanese", 932},
    {"SimplifiedChinese", 936},
    {"Korean", 949},
    {"TraditionalChinese", 950},
    {"JapaneseEuc", 20932},
    {"Latin1", 28591},
    {"Utf8", CP_UTF8},
    {"Ansi", CP_ACP},
    {"Oem", CP_OEMCP},
    {"Mac", CP_MACCP},
    {"Thread", CP_THREAD_ACP},
    {"Utf7RefusesTheFlags", 65000},
    {"SymbolRefusesTheFlags", 42},
};

inline char Byte(unsigned value)
{
    return static_cast<char>(static_cast<unsigned char>(value));
}

// The text of the file in memory, unit by unit and in runs of at most `capacity`.
std::wstring ReadOneByOne(MemoryFile& file, UINT codePage);
std::wstring ReadInRuns(MemoryFile& file, UINT codePage, size_t capacity);

// Shows where they differ; the texts are too long to be printed whole.
testing::AssertionResult Equal(std::wstring_view expected, std::wstring_view got);

// Reads a file of these bytes in every way.
void ExpectDecoded(std::string bytes, UINT codePage, std::wstring_view expected);
void ExpectDecodedPlainly(const std::string& bytes, UINT codePage);

}  // namespace arvmui_test
