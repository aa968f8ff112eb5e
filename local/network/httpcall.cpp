#include "local/network/httpcall.h"

namespace jsapi {

KHttpCall::KHttpCall(CallOptions options, Done done)
    : KHttpTransfer(
        { options.page, options.id, std::move(options.request), options.timeoutMs, "gzip, deflate", false })
    , m_maxBytes(options.maxBytes)
    , m_type(options.type)
    , m_done(std::move(done))
{
    m_response.requestId = options.id;
}

KHttpTransfer::Outcome KHttpCall::begin(const HttpHead& head)
{
    m_response.ok = head.status >= 200 && head.status < 300;
    m_response.status = head.status;
    m_response.statusText = head.statusText;
    m_response.url = request().url.toString(QUrl::FullyEncoded);
    m_response.redirected = isRedirected();
    m_response.headers.clear();
    for (const auto& [name, value] : head.headers) {
        const QString key = QString::fromLatin1(name.toLower());
        if (key == QLatin1String("set-cookie"))
            continue;
        const auto known = m_response.headers.find(key);
        if (known == m_response.headers.end())
            m_response.headers.insert(key, QString::fromLatin1(value));
        else
            *known += QLatin1String(", ") + QString::fromLatin1(value);
    }
    m_decoder = ContentDecoder(head.value("content-encoding"));
    return std::nullopt;
}

KHttpTransfer::Outcome KHttpCall::take(const QByteArray& content)
{
    switch (m_decoder.decode(content, m_content, m_maxBytes)) {
    case ContentDecoder::Result::Done:
        return std::nullopt;
    case ContentDecoder::Result::TooLarge:
        return NetworkError::ResponseIsTooLarge;
    case ContentDecoder::Result::Broken:
        break;
    }
    return NetworkError::ResponseIsBroken;
}

KHttpTransfer::Outcome KHttpCall::settle(Outcome outcome)
{
    const bool isCutOff = !outcome && !m_decoder.isComplete();
    return isCutOff ? NetworkError::ResponseIsBroken : outcome;
}

void KHttpCall::report(Outcome outcome)
{
    const Done done = std::move(m_done);
    if (outcome)
        return done(*outcome);
    HttpResponse response = std::move(m_response);
    QByteArray content = std::move(m_content);
    if (m_type == ResponseType::Bytes) {
        response.bytes = Bytes { std::move(content) };
    } else {
        if (content.startsWith("\xef\xbb\xbf"))
            content.remove(0, 3);
        response.body = QString::fromUtf8(content);
    }
    done(std::move(response));
}

} // namespace jsapi
