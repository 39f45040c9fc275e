// Locale hints from a file that is named on a command line: its own settings, and the browser's
// languages where the file lies in the browser's cache.
#pragma once

namespace arvmui
{

// Whether the text names something that exists and is not a program.
bool IsDataFile(const wchar_t* path) noexcept;

// Fills the hint slots that have not been looked at yet.
void RecordFileHints(const wchar_t* path) noexcept;

}  // namespace arvmui
