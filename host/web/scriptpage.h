// ScriptPage: a page that runs scripts of the command line, in a document of its own.
#pragma once

#include "host/web/frame.h"

#include <QElapsedTimer>
#include <QTimer>

namespace engine::web {

/// [GUI thread] Scripts wait until the document has been opened.
class ScriptPage final : public Page {
public:
    using Gone = std::function<void(const ScriptPage& page)>;
    using Compiles = std::function<bool(const QString& source)>;
    /// `gone` is called when the page is destroyed.
    ScriptPage(PageOptions options, PageHost host, Compiles compiles, Gone gone);
    ~ScriptPage() override;

    const QString& viewId() const { return m_options.browser.browserId; }
    /// Takes the document, whose script has not begun.
    void attach(Frame& frame);

    /// {0, 0} until the document has been opened.
    JSContextEnv context() const override;
    void run(const QString& source, const QString& fileName, Done done) override;
    void evaluate(const QString& source, Done done) override;
    /// None: a browser's document can not be asked and waited for.
    QStringList propertyNames(const QString&) override { return {}; }
    PendingList pending() const override;
    bool isBusy() const override;
    bool knowsAllPending() const override { return false; }
    void settle(std::function<void(int exitCode)> done) override;
    void close() override;

private:
    struct Work {
        bool isExpression;
        QString fileName;
        QString source;
        Done done;
    };
    void begin(Work work);
    void finish(int ticket, const Outcome& outcome);
    /// Calls one that waits for the document to settle, from the event loop.
    void finishSettling(int ticket, int exitCode);
    /// Looks whether the document returns to its event loop in time.
    void checkTime();

    PageOptions m_options;
    PageHost m_host;
    Compiles m_compiles;
    Gone m_gone;
    std::weak_ptr<Frame> m_frame;
    std::vector<Work> m_later;
    std::map<int, Done> m_running;
    std::map<int, std::function<void(int exitCode)>> m_settling;
    QTimer m_check;
    QElapsedTimer m_turn; ///< since the document has been asked whether it returns to its event loop
    bool m_isReturning = true;
    int m_lastTicket = 0;
    QObject m_mailbox;
};

} // namespace engine::web
