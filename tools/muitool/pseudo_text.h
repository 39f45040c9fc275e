// Texts that look translated and can still be read: what stays plain on the screen was never meant to
// be translated, what is cut has no room for other languages.
#pragma once

#include <string>
#include <string_view>

// Accents, about a third more characters, brackets around it all. Placeholders, access keys and line
// ends stay. At most `room` characters unless that is 0; then the additions go first.
std::wstring PseudoTranslate(std::wstring_view text, std::size_t room);
