// Checks of translations. Each adds what it finds and touches nothing.
#pragma once

#include "findings.h"
#include "translation.h"

#include <map>
#include <string>

// A translation against the reference: what is missing or superfluous, placeholders, controls.
void CompareTranslations(const Translation& reference, const Translation& translation, Findings& findings);

// A translation by itself: its locale, its code page, the room for its texts, its access keys.
void CheckTexts(const Translation& translation, Findings& findings);
void CheckDialogs(const Translation& translation, Findings& findings);

// Whether the users of its language are led to a folder of that language, and those of Chinese to one in
// their script. `folders` are the locale folders that hold the file, with the languages that they name.
void CheckFallback(const Translation& translation, const std::map<std::wstring, LANGID>& folders, Findings& findings);

// The file as a file: resources only, no code.
void CheckImage(const std::filesystem::path& path, Findings& findings);
