// What Qt WebChannel gives to a page for the same work.
#pragma once

#include "bench/web/stopwatch.h"

#include <QObject>
#include <QString>

namespace bench {

/// Its members do what those of NovaExtension.Bench do.
class ChannelObject final : public QObject {
    Q_OBJECT

public:
    Q_INVOKABLE int next() { return ++m_last; }
    Q_INVOKABLE int put(const QString& text)
    {
        m_text = text;
        return text.size();
    }
    Q_INVOKABLE QString get() { return m_text; }
    Q_INVOKABLE void burst(int count)
    {
        QMetaObject::invokeMethod(
            this,
            [this, count] {
                Stopwatch::begin();
                for (int i = 0; i < count; ++i)
                    Q_EMIT event(i);
            },
            Qt::QueuedConnection);
    }
    Q_INVOKABLE void heard() { Stopwatch::end(); }

Q_SIGNALS:
    void event(int number);

private:
    int m_last = 0;
    QString m_text;
};

} // namespace bench
