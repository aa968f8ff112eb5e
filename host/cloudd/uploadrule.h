// Which files of this machine may be uploaded.
//
//     UploadRule rule({ "/home/ann/.ssh" }, { "/home/ann/.ssh/config" });
//     rule.permits(file, documents);             // once the file is open: it can not become another one
#pragma once

#include "host/cloudd/files.h"

#include <QStringList>
#include <vector>

namespace cloudd {

/// The place nearest to a file decides: the file itself, its folder, the folder above, ... A place is where its
/// path leads now, or led when the rule was made. What is in no place is open.
class UploadRule {
public:
    /// Absolute paths of files and folders, which need not exist.
    UploadRule(const QStringList& closed, const QStringList& open);

    /// `alsoOpen`: another open folder.
    bool permits(const Descriptor& file, const QString& alsoOpen) const;
    /// The same for a name in an open folder, where nothing needs to be.
    bool permits(const Descriptor& folder, const QByteArray& name, const QString& alsoOpen) const;

private:
    struct Place {
        Place(const QString& path, bool isOpen);
        /// Whether it is the file or folder at this path, of this identity.
        bool is(const QByteArray& there, const struct stat& found) const;
        /// Whether its path is that name in this folder.
        bool isIn(const struct stat& folder, const QByteArray& name) const;

        QByteArray path;
        Descriptor held; ///< its first identity; held, so that no other file gets that
        bool isOpen;
    };

    std::vector<Place> m_places;
};

} // namespace cloudd
