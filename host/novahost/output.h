// Printing of output and errors.
#pragma once

#include "host/engine/page.h"

namespace novahost {

/// Exit codes, besides 0 and those set by script.
constexpr int Failure = 1;
constexpr int UsageError = 2;

void printLine(const QString& line, bool toErrors);
/// Prints a script error with its stack and code to standard error.
void printError(const engine::Outcome& error);
/// Prints what open pages hold, as JSON, to standard error.
void printLiveCounts(const char* when);
/// Prints an error of novahost itself to standard error. Returns `exitCode`.
int fail(int exitCode, const QString& error);

} // namespace novahost
