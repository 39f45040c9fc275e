// Checks a settings file for what the library's reader passes over without a word.
#pragma once

#include "findings.h"

#include <string>

// `bytes` is the file's content; findings carry line numbers.
void CheckSettings(const std::filesystem::path& file, const std::string& bytes, Findings& findings);
