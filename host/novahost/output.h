// What novahost prints.
#pragma once

#include "host/engine/page.h"

namespace novahost {

/// Exit codes beside 0 and those that script chooses.
constexpr int Failure = 1;
constexpr int UsageError = 2;

void printLine(const QString& line, bool toErrors);
/// Prints an error of script with its stack and its code to standard error.
void printError(const engine::Outcome& error);
/// Prints an error of novahost to standard error. Returns `exitCode`.
int fail(int exitCode, const QString& error);

} // namespace novahost
