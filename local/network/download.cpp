#include "local/network/download.h"

#include "framework/values.h"

#include <QDateTime>
#include <QLocale>

namespace jsapi {

namespace {

constexpr int ProgressMs = 100;
constexpr int PartialStatus = 206;
constexpr int RangeNotSatisfiable = 416;

QDateTime readHttpDate(const QByteArray& text)
{
    return QLocale::c().toDateTime(QString::fromLatin1(text), heapString("ddd, dd MMM yyyy hh:mm:ss 'GMT'"));
}

/// What changes whenever the content does: a strong ETag, or a date of the last change that is so old that there was no
/// other change within its second.
QByteArray findValidator(const HttpHead& head)
{
    QByteArray tag = head.value("etag");
    if (tag.startsWith('"'))
        return tag;
    const QByteArray modified = head.value("last-modified");
    const QDateTime changed = readHttpDate(modified);
    const QDateTime sent = readHttpDate(head.value("date"));
    return changed.isValid() && sent.isValid() && changed.secsTo(sent) >= 60 ? modified : QByteArray();
}

} // namespace

KDownload::KDownload(DownloadOptions options, Callback<DownloadReport>&& callback)
    : KHttpTransfer(
        { options.page, options.id, std::move(options.request), options.timeoutMs, "identity", true })
    , m_target(std::move(options.target))
    , m_overwrite(options.overwrite)
    , m_isResumable(options.isResumable)
    , m_maxBytes(options.maxBytes)
    , m_callback(std::move(callback))
{
    m_origin.url = request().url.toEncoded();
    m_report.requestId = options.id;
    m_report.path = m_target.string();
    m_progress.setSingleShot(true);
    m_progress.setInterval(ProgressMs);
    connect(&m_progress, &QTimer::timeout, this, &KDownload::reportProgress);
}

KDownload::~KDownload()
{
    if (m_part && m_isResumable)
        m_part->keep(m_origin);
}

KHttpTransfer::Outcome KDownload::prepare()
{
    m_part = PartFile::open(m_target, m_isResumable, m_origin.url);
    if (!m_part)
        return NetworkError::FileNotWritten;
    m_asksForRest = m_part->size() > 0;
    if (m_asksForRest) {
        request().headers.emplace_back("Range", "bytes=" + QByteArray::number(m_part->size()) + '-');
        request().headers.emplace_back("If-Range", m_part->validator());
    }
    return std::nullopt;
}

bool KDownload::continuesPart(const HttpHead& head)
{
    // "bytes 5-9/10"
    const QByteArray range = head.value("content-range");
    const int dash = range.indexOf('-');
    const int slash = range.indexOf('/');
    const QByteArray tag = head.value("etag");
    const bool isSame = tag.isEmpty() || !m_part->validator().startsWith('"') || tag == m_part->validator();
    bool isFirst = false;
    bool isLast = false;
    bool isTotal = false;
    const qint64 first = range.mid(6, dash - 6).toLongLong(&isFirst);
    const qint64 last = range.mid(dash + 1, slash - dash - 1).toLongLong(&isLast);
    const qint64 total = range.mid(slash + 1).toLongLong(&isTotal);
    if (!isSame || !range.startsWith("bytes ") || !isFirst || !isLast || !isTotal || first != m_part->size()
        || last != total - 1 || last < first || (head.length && *head.length != total - first))
        return false;
    m_total = total;
    return true;
}

KHttpTransfer::Outcome KDownload::begin(const HttpHead& head)
{
    const bool isRest = std::exchange(m_asksForRest, false);
    if (isRest
        && (head.status == RangeNotSatisfiable || (head.status == PartialStatus && !continuesPart(head)))) {
        if (!m_part->clear())
            return NetworkError::FileNotWritten;
        sendAgain();
        return std::nullopt;
    }
    m_report.httpStatus = head.status;
    if (head.status == PartialStatus && isRest) {
        m_report.resumedBytes = static_cast<double>(m_part->size());
        m_origin.validator = m_part->validator();
    } else if (head.status == OkStatus) {
        if (!m_part->clear())
            return NetworkError::FileNotWritten;
        m_total = head.length;
        m_origin.validator = findValidator(head);
    } else {
        return NetworkError::StatusIsNoSuccess;
    }
    if (m_total)
        m_report.totalBytes = static_cast<double>(*m_total);
    if (m_maxBytes && m_total > *m_maxBytes)
        return NetworkError::ResponseIsTooLarge;
    m_hasBegun = true;
    m_report.receivedBytes = static_cast<double>(m_part->size());
    return std::nullopt;
}

KHttpTransfer::Outcome KDownload::take(const QByteArray& content)
{
    if (!m_hasBegun)
        return std::nullopt;
    if (m_maxBytes && m_part->size() + content.size() > *m_maxBytes)
        return NetworkError::ResponseIsTooLarge;
    if (const Outcome error = m_part->append(content)) {
        m_origin.validator.clear(); // of no use any more
        return error;
    }
    m_report.receivedBytes = static_cast<double>(m_part->size());
    if (!m_progress.isActive())
        m_progress.start();
    return std::nullopt;
}

KHttpTransfer::Outcome KDownload::settle(Outcome outcome)
{
    m_progress.stop();
    if (!m_part)
        return outcome;
    if (!outcome && m_total && *m_total != m_part->size())
        outcome = NetworkError::ResponseIsBroken;
    if (!outcome)
        outcome = m_part->take(m_overwrite);
    else if (m_isResumable)
        m_part->keep(m_origin);
    m_part.reset();
    return outcome;
}

void KDownload::reportProgress()
{
    m_callback(m_report); // may destroy this
}

void KDownload::report(Outcome outcome)
{
    m_report.error = outcome;
    m_report.state = !outcome                ? DownloadState::Finished
        : *outcome == NetworkError::Canceled ? DownloadState::Canceled
                                             : DownloadState::Failed;
    const Callback<DownloadReport> callback = std::move(m_callback);
    callback(DownloadReport(m_report));
}

} // namespace jsapi
