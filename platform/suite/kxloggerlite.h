// The suite's log.
#pragma once

#include <string>

namespace KxLoggerLite {
// One record each: the module that writes, and its message. Never fails and never throws: a record that can
// not be written is dropped. Line breaks in a message stay within its record. [any thread]
void writeInfo(const std::wstring& module, const std::wstring& text);
void writeWarning(const std::wstring& module, const std::wstring& text);
void writeError(const std::wstring& module, const std::wstring& text);
} // namespace KxLoggerLite
