// KDownload: a request whose response becomes a file, for "download".
#pragma once

#include "framework/arguments.h"
#include "local/network/httptransfer.h"
#include "local/network/partfile.h"

namespace jsapi {

enum class DownloadState { Progress, Finished, Failed, Canceled };
template <>
inline constexpr std::array<Choice<DownloadState>, 4> ChoicesOf<DownloadState> {
    { { DownloadState::Progress, "progress" }, { DownloadState::Finished, "finished" },
        { DownloadState::Failed, "failed" }, { DownloadState::Canceled, "canceled" } }
};

/// What the script function of a download is called with.
struct DownloadReport {
    QString requestId;
    DownloadState state = DownloadState::Progress;
    double receivedBytes = 0;
    std::optional<double> totalBytes;
    double resumedBytes = 0;
    QString path;
    std::optional<std::int32_t> httpStatus;
    std::optional<NetworkError> error;
    static constexpr auto fields()
    {
        using Self = DownloadReport;
        return std::tuple(property("requestId", &Self::requestId, "of the download"),
            property("state", &Self::state, "each but `progress` is the last one"),
            property(
                "receivedBytes", &Self::receivedBytes, "so much of the file is there, with what was resumed"),
            property("totalBytes", &Self::totalBytes, "the size of the whole file, where the server says it"),
            property("resumedBytes", &Self::resumedBytes, "so much was there from an earlier download"),
            property("path", &Self::path, "the file, absolute; it is there when the download has finished"),
            property("httpStatus", &Self::httpStatus, "the status of the response, where there was one"),
            property("error", &Self::error, "with `failed` and `canceled`"));
    }
};

class KDownload final : public KHttpTransfer {
    Q_OBJECT

public:
    struct DownloadOptions {
        JSContextEnv page {};
        QString id;
        HttpRequest request;
        int timeoutMs = 0;
        WritablePath target;
        bool overwrite = false;
        bool isResumable = false;
        std::optional<qint64> maxBytes;
    };
    KDownload(DownloadOptions options, Callback<DownloadReport>&& callback);
    /// Of one that is under way, when the suite ends, the part is kept as well.
    ~KDownload() override;

private:
    Outcome prepare() override;
    Outcome begin(const HttpHead& head) override;
    Outcome take(const QByteArray& content) override;
    Outcome settle(Outcome outcome) override;
    void report(Outcome outcome) override;

    /// Whether a response has what follows on the part that is there.
    bool continuesPart(const HttpHead& head);
    void reportProgress();

    WritablePath m_target;
    bool m_overwrite;
    bool m_isResumable;
    std::optional<qint64> m_maxBytes;
    Callback<DownloadReport> m_callback;
    std::optional<PartFile> m_part;
    PartFile::Origin m_origin;
    std::optional<qint64> m_total; ///< the size of the whole file
    bool m_asksForRest = false;
    bool m_hasBegun = false; ///< what comes belongs to the file
    DownloadReport m_report;
    QTimer m_progress; ///< runs when the page must be told of progress
};

} // namespace jsapi
