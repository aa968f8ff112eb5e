// Script values as JSON text: values(R"("a", {"b": [1]})") makes two, json(value) shows one.
#pragma once

#include "vexlite/jsapiutil.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>
#include <string>

namespace support {

/// The values of a JSON list, which is given without its brackets.
inline QVariantList parse(const QByteArray& list)
{
    QJsonParseError error {};
    const QJsonDocument document = QJsonDocument::fromJson('[' + list + ']', &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << list.constData();
    return document.array().toVariantList();
}

inline KJSVariant value(const QVariant& given)
{
    KJSVariant converted;
    KJSApiUtil::ConvertQVariantToJSVariant(given, converted);
    return converted;
}

inline std::vector<KJSVariant> values(const QByteArray& list)
{
    std::vector<KJSVariant> converted;
    for (const QVariant& one : parse(list))
        converted.push_back(value(one));
    return converted;
}

inline QVariant read(const KJSVariant& value)
{
    QVariant converted;
    EXPECT_TRUE(KJSApiUtil::ConvertJSVariantToQVariant(value, converted));
    return converted;
}

/// Compact, with sorted keys; undefined is "".
inline std::string json(const QVariant& value)
{
    if (!value.isValid())
        return {};
    const QByteArray list =
        QJsonDocument(QJsonArray { QJsonValue::fromVariant(value) }).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2).toStdString();
}

inline std::string json(const KJSVariant& value)
{
    return json(read(value));
}

/// What an exception or a rejection carries, as "3 why".
inline std::string failure(const KJSVariant& value)
{
    const QVariantMap map = read(value).toMap();
    EXPECT_EQ(json(map.value(QStringLiteral("success"))), "false");
    return json(map.value(QStringLiteral("code"))) + ' '
        + map.value(QStringLiteral("msg")).toString().toStdString();
}

} // namespace support
