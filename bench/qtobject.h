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

private:
    int m_answers = 0;
};

} // namespace bench
