// Settings files and questions to them, made up from a number: valid and malformed lines, text in
// several code pages, and changes of the encoding.
#pragma once

#include "plain_profile.h"

#include <cstdint>
#include <string>

namespace arvmui_test
{

class SettingsGenerator
{
public:
    explicit SettingsGenerator(std::uint64_t seed) : state_(seed) {}

    std::string File();
    ProfileQuery<wchar_t> WideQuery();
    ProfileQuery<char> NarrowQuery();

    unsigned Below(unsigned limit);

private:
    bool OneIn(unsigned count) { return Below(count) == 0; }
    std::string Blanks();
    std::string LineEnd();
    std::string Name();
    std::string Value();
    std::string Encoding();
    std::string Line();
    DWORD Size();
    std::wstring WideName();
    std::string NarrowName();
    template <typename Char>
    ProfileQuery<Char> Query();

    std::uint64_t state_;
};

}  // namespace arvmui_test
