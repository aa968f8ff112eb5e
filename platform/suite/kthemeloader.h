// Values of a theme as its files have them.
#pragma once

#include <QString>
#include <memory>

class KThemeLoaderPrivate;

/// The values of the current theme, and those of a file that are put over them. [GUI thread] for all; throws nothing.
///
/// Objects are made by the library, so its size is a part of the contract: one pointer.
class KThemeLoader {
public:
    /// Begins with the values of the current theme.
    KThemeLoader();
    ~KThemeLoader();
    KThemeLoader(const KThemeLoader&) = delete;
    KThemeLoader& operator=(const KThemeLoader&) = delete;

    /// Puts the values of a theme file over those that there are. False, and they stay as they are, when the file can not
    /// be read or is no theme file.
    bool load(const QString& path);
    /// A value as a theme file may have it, a colour, a gradient or a number of CSS as well as anything else; null when
    /// there is none. Its text is the file's: it may be of any length and content.
    QString value(const QString& group, const QString& name) const;

private:
    std::unique_ptr<KThemeLoaderPrivate> d;
};
