// Checks of names and paths in requests, whose senders are not trusted.
//
//     const QString name = checkItemName(decodeUtf8(request.fname));
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <string>

namespace cloudd {

/// Levels of folders below a root folder.
constexpr int MaxFolderDepth = 64;

// They return what they were given, converted, or throw Error(WrongArguments).

/// UTF-8 without errors.
QString decodeUtf8(const std::string& utf8);
/// Not empty, at most 80 bytes, no control characters.
QString checkUserId(const std::string& utf8);
/// Ids separated by line feeds, at most 100; duplicates are removed.
QStringList checkUserIds(const std::string& utf8);
/// Not empty, at most 255 bytes, no control characters.
QString checkLabel(const std::string& utf8);
/// A name that a local file can have: not empty, not "." or "..", at most 255 bytes, without "/"
/// and control characters.
QString checkItemName(const QString& name);
/// The names in a cloud path, each checked; none for a root folder. Empty ones are dropped.
QStringList splitCloudPath(const QString& path);
/// An absolute path of this machine, at most 4095 bytes, that ends with an item name.
QString checkSourcePath(const std::string& utf8);

/// Makes a folder's name of a user's id: letters, digits, "-" and "_" stay, any other byte becomes %XX.
QByteArray encodeFolderName(const QString& userId);
/// "name (1).ext", "name (2).ext", ..., or "name (label 1).ext"; the part before that is cut when the name would
/// be too long.
QString makeNumberedName(const QString& name, int number, const QString& label = {});

} // namespace cloudd
