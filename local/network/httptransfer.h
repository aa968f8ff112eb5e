// KHttpTransfer: one request of a page with its redirects, from the queue to its one end.
#pragma once

#include "framework/pagewatch.h"
#include "local/network/addressfinder.h"
#include "local/network/httprequest.h"

#include <QNetworkReply>
#include <QPointer>

namespace jsapi {

inline constexpr int OkStatus = 200;

/// What comes before the content of a response.
struct HttpHead {
    int status = 0;
    QString statusText;
    QList<QNetworkReply::RawHeaderPair> headers;
    std::optional<qint64> length; ///< of the content, as the server announces it

    /// Empty where there is none.
    QByteArray value(const char* name) const;
};

/// Every hop asks for permission anew: for its origin, and for the address if that is private. A transfer belongs to the queue
/// (local/network/transferqueue.h) until it ends, then to itself until the page has been told. [GUI thread]
class KHttpTransfer : public QObject {
    Q_OBJECT

public:
    const JSContextEnv& page() const noexcept { return m_watch.page(); }
    const QString& id() const noexcept { return m_id; }
    int bodySize() const noexcept { return m_request.body.size(); }
    bool hasStarted() const noexcept { return m_hasStarted; }
    bool isDownload() const noexcept { return m_isDownload; }

    /// Sends the request.
    void start();
    /// Ends the transfer unless it has ended: the page is told later.
    void cancel() { finish(NetworkError::Canceled); }
    /// Ends the transfer of a page that has gone, or that may not reach any more what it has reached.
    void endIfNotPermitted();

protected:
    struct Options {
        JSContextEnv page {};
        QString id;
        HttpRequest request;
        int timeoutMs = 0;
        QByteArray acceptEncoding;
        bool isDownload = false;
    };
    explicit KHttpTransfer(Options options);

    using Outcome = std::optional<NetworkError>;
    /// The request is about to be sent for the first time. An error ends the transfer, here and in what follows.
    virtual Outcome prepare() { return std::nullopt; }
    /// The response begins; it is no redirect. May call sendAgain().
    virtual Outcome begin(const HttpHead& head) = 0;
    virtual Outcome take(const QByteArray& content) = 0;
    /// The transfer has ended, and the server's part without an error if `outcome` is none. Returns how it has ended as a
    /// whole. Called once; no script is called from here.
    virtual Outcome settle(Outcome outcome) { return outcome; }
    /// Tells the page. Called once, from the event loop; the last call of all.
    virtual void report(Outcome outcome) = 0;

    /// Sends the request once more from the beginning, and forgets the response.
    void sendAgain();
    HttpRequest& request() noexcept { return m_request; }
    bool isRedirected() const noexcept { return m_hops > 1; }

private:
    void hop();
    void send(const QHostAddress& address);
    void readHead();
    void readContent();
    void readEnd();
    void drop();
    void finish(Outcome outcome);

    PageWatch m_watch;
    QString m_id;
    HttpRequest m_first; ///< as the page made it
    HttpRequest m_request;
    QByteArray m_acceptEncoding;
    KAddressFinder* m_finder = nullptr;
    QPointer<QNetworkReply> m_reply; ///< belongs to the page's manager
    bool m_hasHead = false;          ///< of the reply
    QTimer m_patience;               ///< until something must have come or gone
    int m_hops = 0;
    bool m_isDownload;
    bool m_hasStarted = false;
    bool m_hasEnded = false;
};

} // namespace jsapi
