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
    /// Runs a script in the document as one of its own, and calls `done` with its value; not if the document has gone.
    using World =
        std::function<void(const QString& source, const std::function<void(const QVariant&)>& done)>;
    /// `gone` is called when the page is destroyed.
    ScriptPage(PageOptions options, PageHost host, Gone gone);
    ~ScriptPage() override;

    const QString& viewId() const { return m_options.browser.browserId; }
    /// Takes the document, whose script has not begun.
    void attach(Frame& frame);

    void setWorld(World world) { m_world = std::move(world); }

    /// {0, 0} until the document has been opened.
    JSContextEnv context() const override;
    void run(const QString& source, const QString& fileName, Done done) override;
    bool importModule(const QString& fileName, const QString& source, Done done) override;
    void evaluate(const PageScript& script, Done done) override;
    void propertyNames(const QStringList& path, std::function<void(const QStringList& names)> found) override;
    PendingList pending() const override;
    bool isBusy() const override;
    bool knowsAllPending() const override { return false; }
    void settle(std::function<void(int exitCode)> done) override;
    void close() override;

private:
    struct Work {
        ScriptKind kind;
        QString fileName;
        PageScript script;
        Done done;
    };
    void begin(Work work);
    void declare(Work work);
    void finish(int ticket, const Outcome& outcome);
    /// Calls one that waits for the document to settle, from the event loop.
    void finishSettling(int ticket, int exitCode);
    /// Looks whether the document returns to its event loop in time.
    void checkTime();

    PageOptions m_options;
    PageHost m_host;
    Gone m_gone;
    World m_world;
    std::weak_ptr<Frame> m_frame;
    std::vector<Work> m_later;
    std::map<int, Done> m_running;
    std::map<int, std::function<void(int exitCode)>> m_settling;
    QTimer m_check;
    QElapsedTimer m_turn; ///< since the document has been asked whether it returns to its event loop
    bool m_isReturning = true;
    int m_lastTicket = 0;
    int m_inputs = 0;
    bool m_isDeclaring = false;
    QObject m_mailbox;
};

} // namespace engine::web
