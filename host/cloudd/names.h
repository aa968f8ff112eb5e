// Names and paths as they come from strangers, checked once before anything else sees them.
//
//     const QString name = itemName(text(request.fname));       // throws Refusal(WrongArguments)
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <string>

namespace cloudd {

/// Levels of folders below a root folder.
constexpr int MostFolderDepth = 64;

// All of these throw Refusal(WrongArguments) for what they do not allow.

/// The text of UTF-8.
QString text(const std::string& utf8);
/// Not empty, at most 80 bytes, no control characters.
QString userId(const std::string& utf8);
/// userId()s separated by line feeds, each once, at most 100.
QStringList userIds(const std::string& utf8);
/// Something that may be the name of a local file: not empty, not "." or "..", at most 255 bytes, without "/"
/// and control characters.
QString itemName(const QString& name);
/// The parts of a cloud path, each an itemName(); none for a root folder. Empty parts do not count.
QStringList pathParts(const QString& path);
/// An absolute path of this machine, at most 4095 bytes, that ends with an itemName().
QString sourcePath(const std::string& utf8);

/// A user's id as the name of a folder: letters, digits, "-" and "_" stay, each other byte becomes %XX.
QByteArray folderNameOf(const QString& userId);
/// "name (1).ext", "name (2).ext", ...: what is before the number is cut where an itemName() would be too
/// long.
QString numberedName(const QString& name, int number);

} // namespace cloudd
