// The values of a theme, by group and name, and the files that they come from.
#pragma once

#include <QColor>
#include <QGradient>
#include <QMap>
#include <QStringList>
#include <variant>

namespace suite {

inline const QString CommonPalette = QStringLiteral("CommonPalette");
inline const QString CommonThemePalette = QStringLiteral("CommonThemePalette");

struct ThemeGradient {
    QGradient gradient; ///< in the coordinates of what is painted
    QString css;
    bool operator==(const ThemeGradient& other) const { return css == other.css; }
};

/// A value. It is cheap to copy. [GUI thread]
class Theme {
public:
    /// Puts the values of a file over those that there are. Returns what is wrong with it, each error with its place; then
    /// nothing has changed.
    QStringList load(const QString& path);
    void setText(const QString& group, const QString& name, const QString& text);

    // The value when it is there and of that kind.
    QColor color(const QString& group, const QString& name, const QColor& fallback = {}) const;
    QGradient gradient(const QString& group, const QString& name, const QGradient& fallback) const;
    int hint(const QString& group, const QString& name, int fallback) const;
    /// As CSS has it; null when there is none.
    QString css(const QString& group, const QString& name) const;

    bool operator==(const Theme&) const = default;

private:
    struct Text {
        QString text;
        QColor color; ///< invalid when it is none
        bool operator==(const Text&) const = default;
    };
    using Value = std::variant<Text, double, ThemeGradient>;
    using Groups = QMap<QString, QMap<QString, Value>>;
    friend class ThemeReader;

    template <typename Kind> const Kind* find(const QString& group, const QString& name) const;

    Groups m_groups;
};

} // namespace suite
