// LineReader: the lines of standard input where it is no terminal, a line at a time from the event loop.
#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <functional>

namespace novahost {

class LineReader {
public:
    /// `line` is called once for each call of next(), or `end` when there is none any more.
    LineReader(std::function<void(const QString&)> line, std::function<void()> end);

    /// Never calls back from inside.
    void next();

private:
    void read();
    void deliver();

    std::function<void(const QString&)> m_line;
    std::function<void()> m_end;
    QByteArray m_waiting;
    QSocketNotifier m_input;
    bool m_ended = false;
};

} // namespace novahost
