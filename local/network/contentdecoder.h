// ContentDecoder: undoes the compression of a response, and stops where it grows beyond a limit.
#pragma once

#include <QByteArray>
#include <memory>

struct z_stream_s;

namespace jsapi {

/// One response. What no compression is known for passes as it is.
class ContentDecoder {
public:
    /// `encoding` is the value of the header Content-Encoding.
    explicit ContentDecoder(const QByteArray& encoding = {});
    ContentDecoder(ContentDecoder&& other) noexcept = default;
    ContentDecoder& operator=(ContentDecoder&& other) noexcept = default;

    enum class Result { Done, TooLarge, Broken };
    /// Appends what `bytes` stand for to `content`, which gets no more than `limit` bytes.
    Result decode(const QByteArray& bytes, QByteArray& content, qint64 limit);
    /// Whether what has come so far is whole.
    bool isComplete() const { return !m_stream || m_isAtEnd; }

private:
    struct End {
        void operator()(z_stream_s* stream) const;
    };
    std::unique_ptr<z_stream_s, End> m_stream; ///< none where there is no compression
    bool m_mayBeRaw = false; ///< "deflate" has a header by the standard, and none from some servers
    bool m_isAtEnd = true;   ///< at a place where the content may end
};

} // namespace jsapi
