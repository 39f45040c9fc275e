// Diagnostic lines for an attached debugger, one line an event, and the exported switch for the
// library's own message boxes. There are no levels and there is no file.
#pragma once

namespace arvmui
{

// Printf-style; "%s" takes text of the format's own width. Starts with the name of the reporting
// function by custom. A line that cannot be built is dropped. May change the last-error code.
void LogLineW(const wchar_t* format, ...) noexcept;
void LogLineA(const char* format, ...) noexcept;

}  // namespace arvmui
