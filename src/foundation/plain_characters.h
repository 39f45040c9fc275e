// The characters about whose comparison without regard to case nobody has to be asked: ASCII letters,
// digits, blanks, '-', '_' and '.'. Words of them are alike to the system exactly if they are alike
// letter by letter.
#pragma once

#include <array>
#include <cstddef>

namespace arvmui
{

constexpr std::array<char, 128> MakePlainCharacters()
{
    std::array<char, 128> plain{};
    for (char c = 'a'; c <= 'z'; ++c) plain[static_cast<size_t>(c)] = plain[static_cast<size_t>(c - 'a' + 'A')] = c;
    for (char c = '0'; c <= '9'; ++c) plain[static_cast<size_t>(c)] = c;
    for (char c : {' ', '-', '_', '.'}) plain[static_cast<size_t>(c)] = c;
    return plain;
}

inline constexpr std::array<char, 128> kPlainCharacters = MakePlainCharacters();

// The character in lower case; 0 for one that only the system can compare.
constexpr char PlainCharacter(unsigned character) noexcept
{
    return character < kPlainCharacters.size() ? kPlainCharacters[character] : '\0';
}

}  // namespace arvmui
