// Findings on standard output.
#pragma once

#include "findings.h"

// A line each, "file(number): kind: text", which editors take as a place to jump to, or one JSON
// array. The exit code for a check that found these.
int ReportFindings(const Findings& findings, bool asJson);
