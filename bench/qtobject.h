// The rival from Qt: an object whose methods are found by reflection.
#pragma once

#include <QObject>
#include <QVariantMap>

namespace bench {

class QtObject final : public QObject {
    Q_OBJECT
public:
    Q_INVOKABLE void empty() { }
    Q_INVOKABLE QVariantMap enveloped()
    {
        return { { QStringLiteral("success"), true }, { QStringLiteral("data"), ++m_answers } };
    }
    Q_INVOKABLE void options(const QVariantMap& options)
    {
        m_sum += options.value(QStringLiteral("name")).toString().size()
            + options.value(QStringLiteral("visible")).toBool()
            + options.value(QStringLiteral("width")).toInt();
    }

private:
    int m_answers = 0;
    qint64 m_sum = 0;
};

} // namespace bench
