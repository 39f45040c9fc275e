/*
 * Text to the standard output and standard error: as it is to a console, as UTF-8 to a pipe or
 * file. The C runtime's streams would go through a code page that lacks most languages.
 */
#ifndef SAMPLES_TEXT_OUTPUT_H
#define SAMPLES_TEXT_OUTPUT_H

#include <string_view>

/** Writes a line and its end to the standard output. */
void PrintLine(std::wstring_view line);

/** Writes a line and its end to the standard error. */
void PrintErrorLine(std::wstring_view line);

#endif
