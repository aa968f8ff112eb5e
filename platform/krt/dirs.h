// The suite's directories.
#pragma once

#include <QString>

namespace krt::dirs {

/// Where the suite is installed. [any thread]
QString officeInstallRoot();

/// Where the suite keeps the documents and data of this user. [any thread]
QString officeData();

/// Where the suite keeps its own state of this user. [any thread]
QString officeHome();

/// The home of all the vendor's products of this user; plugin pools lie below it. [any thread]
QString velmoraHome();

/// Whether a file's content is of a kind that pages may pass on: false for programs and the like, for what the
/// suite keeps from pages, and for a file that can not be read. Looks into the file; its name alone does not decide. [any thread]
bool isFileFormatSafe(const QString& path);

/// True for an absolute path that is, or lies in, a directory into which pages may not write. Links are
/// followed as far as the path exists. [any thread]
bool inBlackDownloadDir(const QString& path);
} // namespace krt::dirs
