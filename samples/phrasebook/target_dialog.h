// The dialog in which the user chooses the language to translate into.
#pragma once

#include <windows.h>

#include <cstddef>
#include <vector>

#include "texts.h"

// Shows the dialog in the first of the languages; `target` is the index of the chosen one, before and
// after. False when the user cancelled.
bool AskForTarget(HWND owner, const std::vector<Texts>& languages, std::size_t& target);
