#include "cloud/jsonhelper.h"

#include <QJsonDocument>
#include <QJsonObject>

QString JsonHelper::variantMapSerialize(const QVariantMap& map)
{
    return QString::fromUtf8(QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact));
}
