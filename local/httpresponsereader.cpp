#include "local/httpresponsereader.h"

#include "local/httprequest.h"

#include <algorithm>

namespace jsapi {

namespace {

/// A number without a sign or spaces; nothing for any other text.
std::optional<qint64> readNumber(const QByteArray& text, int base)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber, base);
    const bool isPlain = std::all_of(text.begin(), text.end(),
        [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); });
    return isNumber && isPlain ? std::optional(number) : std::nullopt;
}

} // namespace

QByteArray HttpHead::value(const char* name) const
{
    const auto found = std::find_if(headers.begin(), headers.end(),
        [&](const auto& header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.end() ? QByteArray() : found->second;
}

void HttpResponseReader::add(const QByteArray& bytes)
{
    m_bytes = m_at == m_bytes.size() ? bytes : m_bytes.mid(m_at) + bytes;
    m_at = 0;
}

HttpResponseReader::Step HttpResponseReader::next()
{
    for (;;) {
        switch (m_state) {
        case State::Done:
            return Step::End;
        case State::Broken:
            return Step::Broken;
        case State::Length:
            return takeBytes(m_left, State::Done);
        case State::Chunk:
            return takeBytes(m_left, State::ChunkEnd);
        case State::UntilClosed:
            if (m_at == m_bytes.size() && m_isClosed)
                m_state = State::Done;
            else
                return takeBytes(m_bytes.size() - m_at, State::UntilClosed);
            break;
        default: {
            const std::optional<QByteArray> line = takeLine();
            if (!line && m_state != State::Broken && !m_isClosed)
                return Step::NeedsMore;
            if (!line || !readLine(*line))
                m_state = State::Broken;
            else if (std::exchange(m_headIsNew, false))
                return Step::Head;
        }
        }
    }
}

std::optional<QByteArray> HttpResponseReader::takeLine()
{
    const int end = m_bytes.indexOf('\n', m_at);
    const int size = (end < 0 ? m_bytes.size() : end + 1) - m_at;
    if (m_headBytes + size > MostHeadBytes) {
        m_state = State::Broken;
        return std::nullopt;
    }
    if (end < 0)
        return std::nullopt;
    // Lines between chunks may be as many as there are chunks.
    if (m_state != State::ChunkSize && m_state != State::ChunkEnd)
        m_headBytes += size;
    QByteArray line = m_bytes.mid(m_at, size - 1);
    m_at = end + 1;
    if (line.endsWith('\r'))
        line.chop(1);
    return line;
}

HttpResponseReader::Step HttpResponseReader::takeBytes(qint64 most, State afterwards)
{
    const auto count = static_cast<int>(std::min<qint64>(most, m_bytes.size() - m_at));
    if (count == 0) {
        if (m_isClosed)
            m_state = State::Broken;
        return m_isClosed ? Step::Broken : Step::NeedsMore;
    }
    m_content = count == m_bytes.size() ? m_bytes : m_bytes.mid(m_at, count);
    m_at += count;
    m_left -= count;
    if (count == most)
        m_state = afterwards;
    return Step::Content;
}

bool HttpResponseReader::readLine(const QByteArray& line)
{
    switch (m_state) {
    case State::StatusLine:
        return readStatusLine(line);
    case State::Headers:
        return line.isEmpty() ? beginContent() : readHeader(line);
    case State::ChunkSize:
        return readChunkSize(line);
    case State::ChunkEnd:
        m_state = State::ChunkSize;
        return line.isEmpty();
    default: // Trailers, which nobody wants
        if (line.isEmpty())
            m_state = State::Done;
        return true;
    }
}

bool HttpResponseReader::readStatusLine(const QByteArray& line)
{
    // "HTTP/1.1 200 OK"
    constexpr int StatusAt = 9;
    constexpr int StatusEnd = StatusAt + 3;
    const std::optional<qint64> status = readNumber(line.mid(StatusAt, 3), 10);
    if (!status || *status < 100 || !line.startsWith("HTTP/1.") || line[StatusAt - 1] != ' '
        || (line.size() > StatusEnd && line[StatusEnd] != ' '))
        return false;
    m_head = {};
    m_head.status = static_cast<int>(*status);
    m_head.statusText = QString::fromLatin1(line.mid(StatusEnd + 1));
    m_state = State::Headers;
    return true;
}

bool HttpResponseReader::readHeader(const QByteArray& line)
{
    // A line that goes on with the one before.
    if (line.startsWith(' ') || line.startsWith('\t')) {
        if (m_head.headers.isEmpty())
            return false;
        m_head.headers.last().second += ' ' + line.trimmed();
        return true;
    }
    const int colon = line.indexOf(':');
    const QByteArray name = line.left(std::max(colon, 0));
    if (!isHttpToken(name))
        return false;
    m_head.headers.append({ name, line.mid(colon + 1).trimmed() });
    return true;
}

bool HttpResponseReader::beginContent()
{
    const int status = m_head.status;
    if (status < 200) { // another one comes
        m_state = State::StatusLine;
        return status != 101;
    }
    const QByteArray encoding = m_head.value("transfer-encoding").toLower();
    for (const auto& [name, value] : qAsConst(m_head.headers)) {
        if (!encoding.isEmpty() || name.compare("content-length", Qt::CaseInsensitive) != 0)
            continue;
        const std::optional<qint64> length = readNumber(value, 10);
        if (!length || (m_head.length && *m_head.length != *length))
            return false;
        m_head.length = length;
    }
    m_headIsNew = true;
    if (!m_hasContent || status == 204 || status == 304 || m_head.length == 0) {
        m_state = State::Done;
    } else if (m_head.length) {
        m_state = State::Length;
        m_left = *m_head.length;
    } else if (encoding.isEmpty()) {
        m_state = State::UntilClosed;
    } else {
        m_state = State::ChunkSize;
        return encoding == "chunked";
    }
    return true;
}

bool HttpResponseReader::readChunkSize(const QByteArray& line)
{
    const int extension = line.indexOf(';');
    const std::optional<qint64> size =
        readNumber(line.left(extension < 0 ? line.size() : extension).trimmed(), 16);
    if (!size)
        return false;
    m_left = *size;
    m_state = m_left == 0 ? State::Trailers : State::Chunk;
    return true;
}

} // namespace jsapi
