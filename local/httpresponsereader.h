// HttpResponseReader: takes the bytes of a connection apart into one response. Stricter than QNetworkAccessManager, to which
// chunks that are cut off are a whole response, and whose memory headers without an end fill.
#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <optional>

namespace jsapi {

/// What comes before the content of a response.
struct HttpHead {
    int status = 0;
    QString statusText;
    QList<QPair<QByteArray, QByteArray>> headers;
    std::optional<qint64> length; ///< of the content, as the server announces it

    /// The first value of a header; empty where there is none.
    QByteArray value(const char* name) const;
};

/// One response of HTTP/1. Bytes behind it are ignored.
class HttpResponseReader {
public:
    static constexpr int MostHeadBytes = 64
        << 10; ///< with those of responses that only say that another one comes

    /// `hasContent` is false for the response to HEAD.
    explicit HttpResponseReader(bool hasContent)
        : m_hasContent(hasContent)
    {
    }

    void add(const QByteArray& bytes);
    /// No more bytes come.
    void addEnd() { m_isClosed = true; }

    enum class Step {
        NeedsMore,
        Head,    ///< head() is there
        Content, ///< takeContent() has some
        End,     ///< the response is whole
        Broken,
    };
    /// What is next. Every other step than Head and Content is final until more has been added.
    Step next();
    const HttpHead& head() const noexcept { return m_head; }
    QByteArray takeContent() { return std::exchange(m_content, {}); }

private:
    enum class State {
        StatusLine,
        Headers,
        Length,
        UntilClosed,
        ChunkSize,
        Chunk,
        ChunkEnd,
        Trailers,
        Done,
        Broken
    };

    /// The next line without its end; nothing where it is not there yet.
    std::optional<QByteArray> takeLine();
    Step takeBytes(qint64 most, State afterwards);
    bool readStatusLine(const QByteArray& line);
    bool readHeader(const QByteArray& line);
    bool readChunkSize(const QByteArray& line);
    bool beginContent();
    /// False where the response is broken.
    bool readLine(const QByteArray& line);

    bool m_hasContent;
    bool m_isClosed = false;
    State m_state = State::StatusLine;
    QByteArray m_bytes;
    int m_at = 0; ///< what comes before has been read
    int m_headBytes = 0;
    qint64 m_left = 0;
    bool m_headIsNew = false;
    HttpHead m_head;
    QByteArray m_content;
};

} // namespace jsapi
