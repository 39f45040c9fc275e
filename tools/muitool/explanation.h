// Why a module speaks the language that it speaks: the candidates of a locale list in their order, and
// what became of each.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

enum class CandidateState
{
    kChosen,
    kNoFolder,
    kNoFile,
    kNotLoadable,
    kNotTried
};

struct Candidate
{
    std::wstring locale;
    std::wstring item;  // of the list; empty for the fallbacks that follow every list
    std::wstring path;
    CandidateState state;
    DWORD error;  // the system's, for kNotLoadable
};

struct Explanation
{
    std::wstring module;
    std::wstring pathFormat;
    bool refused;  // the user was asked and refused
    std::vector<Candidate> candidates;

    const Candidate* Chosen() const;
};

// Tries what the library tries for a module's resource file. Without a list the process's own counts:
// `processList`, by which candidates are traced back to its items.
Explanation Explain(HMODULE module, const std::optional<std::wstring>& fileName,
    const std::optional<std::wstring>& list, const std::wstring& processList);
