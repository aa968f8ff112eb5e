// Bridge: the documents of one browser page, and what they ask of the suite.
#pragma once

#include "host/web/frame.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class QWebEngineUrlRequestJob;

namespace engine::web {

/// [GUI thread] A document ends when its line does: a request that the browser holds as long as the document lives. That the
/// page begins to load says nothing: what it goes to may be a download. A document is known by the name that it got with its first request and by its origin, which the browser
/// states for every request: a document of another origin can say what it likes. What an origin may have is decided when
/// a document is opened.
class Bridge final : public QObject {
public:
    struct Host {
        std::function<vexlite::BrowserFacts()> browser;
        std::function<OriginRights(const QString& origin)> rights;
        /// Has the top document ask for what there is.
        std::function<void(const QString& origin)> wakeTop;
        /// The origin of the top document.
        std::function<QString()> topOrigin;
        /// A document at the top has been opened; it has not run any script.
        std::function<void(Frame& frame)> opened;
    };
    static constexpr std::size_t maximumFrames = 1024;

    explicit Bridge(Host host);
    ~Bridge() override;

    /// The reply to a request of a document of this origin; null when there is nobody who answers.
    QString request(const QString& origin, const QString& text);
    /// A request by the bridge's own scheme, which is answered when there is a reason. False: the address is wrong.
    bool hold(
        const QString& origin, const QString& kind, const QStringList& path, QWebEngineUrlRequestJob* job);
    /// Closes all documents: their page has gone.
    void closeAll();
    void updateBrowser(const vexlite::BrowserFacts& browser);

    /// Whether a frame of this name is here.
    bool has(const QString& name) const { return m_frames.count(name); }

private:
    struct Document {
        std::shared_ptr<Frame> frame;
        QPointer<QWebEngineUrlRequestJob> line;
        QPointer<QWebEngineUrlRequestJob> bell;
        std::map<int, QPointer<QWebEngineUrlRequestJob>> waiting;
        bool isReplaced = false;
    };

    QString greet(const QString& origin, WireReader& reader);
    void post(const QString& name, const std::function<void(Document&)>& work);
    void wake(const QString& name);
    void perform(const QString& name, int ticket);
    void lineEnded(const QString& name);
    void closeWithoutLine(const QString& name, int afterMs);
    void replaceAll();
    void closeFrame(const QString& name);

    Host m_host;
    std::unordered_map<QString, Document> m_frames;
};

} // namespace engine::web
