// LineReader: reads standard input that is no terminal, line by line, from the event loop.
#pragma once

#include <QByteArray>
#include <QSocketNotifier>
#include <functional>

namespace novahost {

class LineReader {
public:
    /// Each call of next() calls `line` once, or `end` at the end of the input.
    LineReader(std::function<void(const QString&)> line, std::function<void()> end);

    /// The callbacks come from the event loop, never from within this call.
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
