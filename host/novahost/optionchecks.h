// What the values of options and arguments must be, in words for the user.
#pragma once

#include <QStringList>
#include <functional>
#include <string>

namespace novahost {

/// These return the error, or an empty string.
std::string checkMask(const std::string& given);
std::string checkSize(const std::string& given);
std::string checkFile(const std::string& given);
/// - is standard input.
std::string checkScript(const std::string& given);
std::string checkPort(const std::string& given);
std::string checkShell(const std::string& given);
/// The shells that there is completion for.
QStringList shellNames();

using Check = std::function<std::string(const std::string& given)>;
/// `what`: "a number of seconds"
Check checkNumber(const char* what, double least, double most);

/// False when it is none.
bool readSize(const std::string& given, int& width, int& height);

/// What the word that the help has for a value stands for: "a file" for FILE.png, "a port" for PORT.
std::string describeValue(const std::string& form);

} // namespace novahost
