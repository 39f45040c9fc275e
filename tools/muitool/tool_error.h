// How a command tells that it could not do its work, and the exit codes of the tool.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

enum ExitCode : int
{
    kSuccess = 0,
    kFindings = 1,  // a check found something, or what was asked for does not exist
    kFailure = 2,   // wrong arguments, unreadable files, refused access
};

// Ends a command with kFailure; the text says what to do.
class ToolError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The system's text for an error code, with the code.
std::string SystemErrorText(DWORD code);
