#include "webui/skinvalues.h"

#include "suite/kdrawhelper.h"
#include "suite/kplugin.h"

#include <QFileInfo>
#include <algorithm>
#include <limits>

namespace jsapi {

namespace {

constexpr int KeptValues = 4096;
constexpr int LongestName = 256; ///< of one that is kept
constexpr int LongestValue = 4096;

struct ThemeName {
    QString group; ///< empty for the two groups of all windows
    QString name;
};

ThemeName splitName(const QString& name)
{
    const int slash = name.indexOf(QLatin1Char('/'));
    return slash < 0 ? ThemeName { {}, name } : ThemeName { name.left(slash), name.mid(slash + 1) };
}

// What stands for a value that the theme does not have, and is none that it may have.
constexpr int NoHint = std::numeric_limits<int>::min();

bool isNone(int hint)
{
    return hint == NoHint;
}
bool isNone(const QColor& color)
{
    return !color.isValid();
}
bool isNone(const QGradient& gradient)
{
    return gradient.type() == QGradient::NoGradient;
}
bool isNone(const QString& text)
{
    return text.isNull();
}

/// The value of a name in its group, or in the first of the two that has it. `read` is given the group, the name, and what
/// stands for a value that is not there.
template <typename T, typename Read> T readTheme(const QString& name, const T& none, Read read)
{
    static const QString commonPalette = heapString("CommonPalette");
    static const QString commonThemePalette = heapString("CommonThemePalette");
    const ThemeName split = splitName(name);
    if (!split.group.isEmpty())
        return read(split.group, split.name, none);
    const T value = read(commonPalette, split.name, none);
    return isNone(value) ? read(commonThemePalette, split.name, none) : value;
}

std::int32_t readHint(const QString& name)
{
    const int hint = readTheme(name, NoHint, KDrawHelper::getHintFromTheme);
    return isNone(hint) ? 0 : hint;
}

QString toCss(const QColor& color)
{
    return toCssColor(isNone(color) ? QColor(Qt::transparent) : color);
}

QString readColor(const QString& name)
{
    return toCss(readTheme(name, QColor(), KDrawHelper::getColorFromTheme));
}

SkinGradient readGradient(const QString& name)
{
    QGradient none;
    none.setSpread(QGradient::PadSpread); // which Qt leaves uninitialised
    return toSkinGradient(readTheme(name, none, KDrawHelper::getGradientFromTheme));
}

} // namespace

void KSkinValues::useSkin(const QString& skin)
{
    if (skin != m_skin)
        clear();
    m_skin = skin;
}

template <typename T> T KSkinValues::find(const QString& name, T (*read)(const QString& name))
{
    if (name.size() > LongestName)
        return read(name);
    const QString key = m_skin + QLatin1Char('_') + name;
    if (const auto kept = m_values.constFind(key); kept != m_values.constEnd()) {
        if (const T* value = std::get_if<T>(&kept.value()))
            return *value;
    }
    if (m_values.size() >= KeptValues)
        m_values.clear();
    T value = read(name);
    m_values.insert(key, value);
    return value;
}

std::int32_t KSkinValues::hint(const QString& name)
{
    return find(name, readHint);
}

QString KSkinValues::color(const QString& name)
{
    return find(name, readColor);
}

SkinGradient KSkinValues::gradient(const QString& name)
{
    return find(name, readGradient);
}

void KSkinValues::clear()
{
    m_values.clear();
}

KSkinConfig::KSkinConfig()
{
    KPluginManager* plugins = KPluginManager::getInstance();
    const KPlugin* plugin =
        plugins ? plugins->getPlugin(KDrawHelper::getCurrentSkinNameFromTheme()) : nullptr;
    const QString directory = plugin ? plugin->localPath() : QString();
    const QString custom = directory + heapString("/custom.kuip");
    if (!directory.isEmpty() && QFileInfo(custom).isFile())
        m_theme.load(custom);
}

std::variant<QString, SkinGradient> KSkinConfig::value(const QString& name) const
{
    const auto readText = [this](const QString& group, const QString& key, const QString& unknown) {
        const QString found = m_theme.value(group, key);
        return found.isNull() ? unknown : found;
    };
    const QString text = classifyCss(name) == CssForm::Other ? readTheme(name, QString(), readText) : name;
    const bool isControlled = std::any_of(text.cbegin(), text.cend(),
        [](QChar character) { return character.category() == QChar::Other_Control; });
    if (text.size() > LongestValue || isControlled)
        return QString();
    switch (classifyCss(text)) {
    case CssForm::Color:
        return toCss(parseCssColor(text).value_or(QColor()));
    case CssForm::Gradient:
        return parseCssGradient(text).value_or(toSkinGradient(QGradient()));
    default:
        return text;
    }
}

} // namespace jsapi
