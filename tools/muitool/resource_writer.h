// Writes a resource library with other texts.
#pragma once

#include "translation.h"

// Copies the library that `original` was read from and changes in the copy what differs in `changed`:
// where nothing does, the copy is the same byte for byte. The target is replaced only once it is complete.
void WriteTranslation(const Translation& original, const Translation& changed, const std::filesystem::path& target);
