#include "host/cloudd/names.h"

#include "host/cloudd/state.h"
#include "host/cloudwire/userid.h"

#include <QUrl>
#include <algorithm>

namespace cloudd {

namespace {

using cloudwire::containsControls;
using cloudwire::MaxUserIdBytes;

constexpr int MaxNameBytes = 255;
constexpr int MaxUserIds = 100;
constexpr std::size_t MaxUserIdsBytes = std::size_t { MaxUserIds } * (MaxUserIdBytes + 1);
constexpr int MaxSourceBytes = 4095;
/// A longer extension counts as part of the name.
constexpr int MaxExtensionBytes = 32;

const QString& check(const QString& given, bool allowed)
{
    if (!allowed)
        throw Error(State::WrongArguments);
    return given;
}

} // namespace

QString decodeUtf8(const std::string& utf8)
{
    const QString decoded = QString::fromStdString(utf8);
    return check(decoded, decoded.toStdString() == utf8);
}

QString checkUserId(const std::string& utf8)
{
    const QString id = decodeUtf8(utf8);
    return check(id, cloudwire::isUserId(utf8));
}

QStringList checkUserIds(const std::string& utf8)
{
    // The length is checked before the string is split.
    QStringList ids =
        check(decodeUtf8(utf8), utf8.size() <= MaxUserIdsBytes).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ids.removeDuplicates();
    for (const QString& id : ids)
        checkUserId(id.toStdString());
    if (ids.size() > MaxUserIds)
        throw Error(State::WrongArguments);
    return ids;
}

QString checkLabel(const std::string& utf8)
{
    const QString label = decodeUtf8(utf8);
    return check(label, !label.isEmpty() && utf8.size() <= MaxNameBytes && !containsControls(label));
}

QString checkItemName(const QString& name)
{
    const bool isStep = name == QLatin1String(".") || name == QLatin1String("..");
    return check(name,
        !name.isEmpty() && !isStep && name.toUtf8().size() <= MaxNameBytes && !name.contains(QLatin1Char('/'))
            && !containsControls(name));
}

QStringList splitCloudPath(const QString& path)
{
    QStringList parts = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    std::for_each(parts.cbegin(), parts.cend(), checkItemName);
    return parts;
}

QString checkSourcePath(const std::string& utf8)
{
    QString path = decodeUtf8(utf8);
    check(
        path, utf8.size() <= MaxSourceBytes && path.startsWith(QLatin1Char('/')) && !path.contains(QChar()));
    checkItemName(path.mid(path.lastIndexOf(QLatin1Char('/')) + 1));
    return path;
}

QByteArray encodeFolderName(const QString& userId)
{
    // The third argument adds what toPercentEncoding() would leave as it is.
    return QUrl::toPercentEncoding(userId, {}, ".~");
}

QString makeNumberedName(const QString& name, int number, const QString& label)
{
    int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || name.mid(dot).toUtf8().size() > MaxExtensionBytes)
        dot = name.size();
    const QString tail = QString::fromLatin1(" (%1%2)").arg(label).arg(number) + name.mid(dot);
    QString stem = name.left(dot);
    while (stem.toUtf8().size() + tail.toUtf8().size() > MaxNameBytes)
        stem.chop(stem.at(stem.size() - 1).isLowSurrogate() ? 2 : 1);
    return stem + tail;
}

} // namespace cloudd
