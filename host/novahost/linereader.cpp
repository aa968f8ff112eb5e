#include "host/novahost/linereader.h"

#include <unistd.h>

namespace novahost {

LineReader::LineReader(std::function<void(const QString&)> line, std::function<void()> end)
    : m_line(std::move(line))
    , m_end(std::move(end))
    , m_input(STDIN_FILENO, QSocketNotifier::Read)
{
    m_input.setEnabled(false);
    QObject::connect(&m_input, &QSocketNotifier::activated, [this] { read(); });
}

void LineReader::next()
{
    if (m_ended || m_waiting.contains('\n'))
        QMetaObject::invokeMethod(
            &m_input, [this] { deliver(); }, Qt::QueuedConnection);
    else
        m_input.setEnabled(true);
}

void LineReader::read()
{
    char bytes[4096];
    const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    m_ended = count <= 0;
    m_waiting.append(bytes, static_cast<int>(count > 0 ? count : 0));
    if (!m_ended && !m_waiting.contains('\n'))
        return;
    m_input.setEnabled(false);
    deliver();
}

void LineReader::deliver()
{
    if (m_waiting.isEmpty()) {
        m_end();
        return;
    }
    const int newline = m_waiting.indexOf('\n');
    const int length = newline < 0 ? m_waiting.size() : newline;
    const QString line = QString::fromUtf8(m_waiting.constData(), length);
    m_waiting.remove(0, length + 1);
    m_line(line);
}

} // namespace novahost
