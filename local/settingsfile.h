// A settings file of a page's: an INI file that pages may write to. What it holds is read and written by
// QSettings, on a copy; the file itself is only ever looked at and replaced as a whole, in the directory that was
// checked. [GUI thread]
#pragma once

#include "local/pathcheck.h"

#include <QSettings>

namespace jsapi {

class KSettingsFile {
public:
    /// The file of a path, the same object for all who have it open. The file need not be there, nor its
    /// directory: both are made with the first value. Null for what is there and is no settings file: a
    /// directory, a device, a pipe, a link that leads nowhere or to where pages may not write, a file that does
    /// not parse, or one of more than 16 MiB.
    static std::shared_ptr<KSettingsFile> open(const WritablePath& path);

    explicit KSettingsFile(const WritablePath& path);
    ~KSettingsFile();
    KSettingsFile(const KSettingsFile&) = delete;
    KSettingsFile& operator=(const KSettingsFile&) = delete;

    /// Reads what is on disk now, unless it is known. False when it is no settings file (any more).
    bool refresh();

    /// A value, as of the last refresh that was successful.
    QVariant value(const QString& key, const QVariant& fallback) const;

    /// Stores a value: it is on disk when this returns true, together with what others have stored there
    /// meanwhile. Otherwise nothing has changed. False too for a file that QSettings would not write as it is:
    /// one with comments, say, or of another program that has its own spelling.
    bool setValue(const QString& key, const QVariant& value);

private:
    struct Content;

    /// Whether the file is still what m_content was read from or written to.
    bool isKnown(const std::optional<struct stat>& facts) const;

    WritablePath m_path;
    std::unique_ptr<Content> m_content;
    std::optional<bool> m_mayRewrite;  ///< known when something is first written to what was read
    std::optional<struct stat> m_read; ///< the file, or nothing when it was not there
};

} // namespace jsapi
