// The values of the current theme, as pages get them.
#pragma once

#include "suite/kthemeloader.h"
#include "webui/cssvalues.h"

#include <QHash>
#include <variant>

namespace jsapi {

/// What script gets for a name of the theme's, kept while the same skin is used. [GUI thread]
///
/// A name is "group/name", or a name in the group "CommonPalette" or, where that has none, in "CommonThemePalette". One that
/// the theme does not have stands for 0, "rgba(0,0,0,0)" and a gradient without stops.
class KSkinValues {
public:
    /// The skin whose values are asked for from now on.
    void useSkin(const QString& skin);

    std::int32_t hint(const QString& name);
    QString color(const QString& name);
    SkinGradient gradient(const QString& name);

    /// Forgets all: the theme may have other values.
    void clear();

private:
    using Value = std::variant<std::int32_t, QString, SkinGradient>;

    template <typename T> T find(const QString& name, T (*read)(const QString& name));

    QString m_skin;
    QHash<QString, Value> m_values; ///< by skin and name
};

/// The values of the current theme, and of the file that the skin's plugin puts over it, as their files have them.
class KSkinConfig {
public:
    KSkinConfig();

    /// The value of a name, or of a colour or gradient in its place: a colour or a gradient as it begins, anything else as it
    /// is. What begins as one of them and is none stands for what KSkinValues has for an unknown name. An empty string for a
    /// name that is not known, and for what can be no value of CSS: control characters, thousands of characters.
    std::variant<QString, SkinGradient> value(const QString& name) const;

private:
    KThemeLoader m_theme;
};

} // namespace jsapi
