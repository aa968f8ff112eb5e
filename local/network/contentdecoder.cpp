#include "local/network/contentdecoder.h"

#include <algorithm>
#include <zlib.h>

namespace jsapi {

namespace {

constexpr int RawWindow = -MAX_WBITS;
constexpr int HeaderWindow = MAX_WBITS + 32; ///< gzip or zlib, as the header says

} // namespace

void ContentDecoder::End::operator()(z_stream_s* stream) const
{
    inflateEnd(stream);
    delete stream;
}

ContentDecoder::ContentDecoder(const QByteArray& encoding)
{
    const QByteArray name = encoding.trimmed().toLower();
    if (name != "gzip" && name != "x-gzip" && name != "deflate")
        return;
    auto stream = std::make_unique<z_stream_s>();
    if (inflateInit2(stream.get(), HeaderWindow) != Z_OK)
        throw std::bad_alloc();
    m_stream.reset(stream.release());
    m_mayBeRaw = name == "deflate";
}

ContentDecoder::Result ContentDecoder::decode(const QByteArray& bytes, QByteArray& content, qint64 limit)
{
    if (!m_stream) {
        if (content.size() + bytes.size() > limit)
            return Result::TooLarge;
        content += bytes;
        return Result::Done;
    }
    char buffer[1 << 16];
    z_stream& stream = *m_stream;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.constData()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    do {
        if (m_isAtEnd && stream.avail_in == 0)
            break;
        stream.next_out = reinterpret_cast<Bytef*>(buffer);
        stream.avail_out = sizeof buffer;
        int status = inflate(&stream, Z_NO_FLUSH);
        if (status == Z_DATA_ERROR && std::exchange(m_mayBeRaw, false) && stream.total_out == 0) {
            if (inflateReset2(&stream, RawWindow) != Z_OK)
                return Result::Broken;
            stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.constData()));
            stream.avail_in = static_cast<uInt>(bytes.size());
            stream.avail_out = sizeof buffer;
            stream.next_out = reinterpret_cast<Bytef*>(buffer);
            status = inflate(&stream, Z_NO_FLUSH);
        }
        if (status != Z_OK && status != Z_STREAM_END && status != Z_BUF_ERROR)
            return Result::Broken;
        const auto count = static_cast<int>(sizeof buffer - stream.avail_out);
        m_mayBeRaw = m_mayBeRaw && count == 0;
        if (content.size() + count > limit)
            return Result::TooLarge;
        content.append(buffer, count);
        m_isAtEnd = status == Z_STREAM_END;
        // Another one may follow.
        if (m_isAtEnd && inflateReset(&stream) != Z_OK)
            return Result::Broken;
    } while (stream.avail_in > 0 || stream.avail_out == 0);
    return Result::Done;
}

} // namespace jsapi
