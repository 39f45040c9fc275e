// Standard output and standard error: Unicode on a console, UTF-8 in files and pipes.
#pragma once

#include <string_view>

// Text in UTF-8; lines end with "\n" here and with "\r\n" where they go.
void Print(std::string_view text);
void PrintLine(std::string_view line);
void PrintError(std::string_view line);
