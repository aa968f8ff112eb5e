#include "host/suite/skin/skinimages.h"

#include "host/engine/webengine.h"
#include "host/suite/skin/icontheme.h"
#include "host/suite/skin/skinservice.h"
#include "suite/kskinimageschemehandler.h"

#include <QBuffer>
#include <QUrl>
#include <QUrlQuery>

namespace suite {

namespace {

constexpr int LongestAddress = 2048;
constexpr int LongestArea = 64;

/// 0 for one that is missing or wrong.
int readLength(const QUrlQuery& query, const char* name)
{
    constexpr int Largest = 1024;
    const QString text = query.queryItemValue(QString::fromLatin1(name));
    bool isNumber = false;
    const int length = text.toInt(&isNumber);
    return isNumber && length > 0 && length <= Largest ? length : 0;
}

/// The skin in use, or the one before of which a page shows many images. Null when there is none of this name.
const Skin* findSkin(const QString& name)
{
    const Skin& current = SkinService::instance().current();
    if (name == current.name)
        return &current;
    static std::optional<Skin> other;
    QString error;
    if (!other || other->name != name)
        other = loadSkin(name, error);
    return other ? &*other : nullptr;
}

} // namespace

QString nameSkinImage(const QString& icon, const QString& area)
{
    if (IconTheme::instance().find(icon).empty())
        return {};
    const auto encode = [](const QString& text) {
        return QString::fromLatin1(QUrl::toPercentEncoding(text));
    };
    // One that can be no part of an address has no colours either.
    const bool isUsable = !area.isEmpty() && area.size() <= LongestArea && area != QLatin1String(".")
        && area != QLatin1String("..");
    const QString name = SkinService::instance().current().name;
    return name + QLatin1Char('/') + (isUsable ? encode(area) + QLatin1Char('/') : QString()) + encode(icon);
}

QByteArray drawSkinImage(const QUrl& url)
{
    if (url.toEncoded().size() > LongestAddress)
        return {};
    QStringList path = url.path(QUrl::FullyEncoded).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (QString& part : path)
        part = QUrl::fromPercentEncoding(part.toLatin1());
    const QUrlQuery query(url);
    const QSize size(readLength(query, "width"), readLength(query, "height"));
    if (path.isEmpty() || path.size() > 2 || size.isEmpty())
        return {};
    const Skin* skin = findSkin(url.host());
    if (!skin)
        return {};
    const QImage image =
        drawIcon(path.last(), skin->theme, path.size() == 2 ? path.first() : QString(), size);
    QByteArray png;
    QBuffer buffer(&png);
    return !image.isNull() && image.save(&buffer, "PNG") ? png : QByteArray();
}

} // namespace suite

QString KSkinImageSchemeHandler::schemeName()
{
    return QString::fromLatin1(engine::SkinImageScheme);
}
