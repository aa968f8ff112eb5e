// Printing of output and errors.
#pragma once

#include "host/engine/page.h"

#include <cstdio>

namespace novahost {

/// Exit codes, besides 0 and those set by script.
constexpr int Failure = 1;
constexpr int UsageError = 2;

/// Where standard output is no terminal, lines that follow each other closely are written together: at the latest when this
/// thread waits for events, before errors, and at the end.
void printLine(const QString& line, bool toErrors);
/// Whether what is printed there has colours: on a terminal that has any, unless NO_COLOR is set; or where FORCE_COLOR is.
bool useColors(FILE* stream);
/// Prints a script error, with its source, stack and causes, to standard error.
void printError(const engine::Outcome& error);
/// Prints what open pages hold, as JSON, to standard error.
void printLiveCounts(const char* when);
/// Prints an error of novahost itself to standard error. Returns `exitCode`.
int fail(int exitCode, const QString& error);

} // namespace novahost
