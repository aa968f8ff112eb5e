#include "host/cloudd/names.h"

#include "host/cloudd/state.h"

#include <QUrl>
#include <algorithm>

namespace cloudd {

namespace {

constexpr int MostNameBytes = 255;
/// So that three times as many, of folderNameOf(), are a file name.
constexpr int MostUserIdBytes = 80;
constexpr int MostUserIds = 100;
constexpr std::size_t MostUserIdsBytes = std::size_t { MostUserIds } * (MostUserIdBytes + 1);
constexpr int MostSourceBytes = 4095;
/// What is longer is no extension, but part of the name.
constexpr int MostExtensionBytes = 32;

bool hasControls(const QString& text)
{
    return std::any_of(text.begin(), text.end(),
        [](QChar character) { return character.category() == QChar::Other_Control; });
}

const QString& checked(const QString& given, bool allowed)
{
    if (!allowed)
        throw Refusal(State::WrongArguments);
    return given;
}

} // namespace

QString text(const std::string& utf8)
{
    const QString decoded = QString::fromStdString(utf8);
    return checked(decoded, decoded.toStdString() == utf8);
}

QString userId(const std::string& utf8)
{
    const QString id = text(utf8);
    return checked(id, !utf8.empty() && utf8.size() <= MostUserIdBytes && !hasControls(id));
}

QStringList userIds(const std::string& utf8)
{
    // What is too long is not even taken apart.
    QStringList ids =
        checked(text(utf8), utf8.size() <= MostUserIdsBytes).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ids.removeDuplicates();
    for (const QString& id : ids)
        userId(id.toStdString());
    if (ids.size() > MostUserIds)
        throw Refusal(State::WrongArguments);
    return ids;
}

QString itemName(const QString& name)
{
    const bool isStep = name == QLatin1String(".") || name == QLatin1String("..");
    return checked(name,
        !name.isEmpty() && !isStep && name.toUtf8().size() <= MostNameBytes
            && !name.contains(QLatin1Char('/')) && !hasControls(name));
}

QStringList pathParts(const QString& path)
{
    QStringList parts = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    std::for_each(parts.cbegin(), parts.cend(), itemName);
    return parts;
}

QString sourcePath(const std::string& utf8)
{
    QString path = text(utf8);
    checked(
        path, utf8.size() <= MostSourceBytes && path.startsWith(QLatin1Char('/')) && !path.contains(QChar()));
    itemName(path.mid(path.lastIndexOf(QLatin1Char('/')) + 1));
    return path;
}

QByteArray folderNameOf(const QString& userId)
{
    // The functions for URLs keep "." and "~", too.
    return QUrl::toPercentEncoding(userId, {}, ".~");
}

QString numberedName(const QString& name, int number)
{
    int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || name.mid(dot).toUtf8().size() > MostExtensionBytes)
        dot = name.size();
    const QString tail = QString::fromLatin1(" (%1)").arg(number) + name.mid(dot);
    QString stem = name.left(dot);
    while (stem.toUtf8().size() + tail.toUtf8().size() > MostNameBytes)
        stem.chop(stem.at(stem.size() - 1).isLowSurrogate() ? 2 : 1);
    return stem + tail;
}

} // namespace cloudd
