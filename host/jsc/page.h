// JscPage: the handle of a page, which the host owns.
#pragma once

#include "host/engine/page.h"
#include "host/jsc/pagestate.h"

namespace engine::jsc {

class JscPage final : public Page {
public:
    JscPage(std::shared_ptr<Engine> engine, const PageOptions& options, PageHost host);
    ~JscPage() override;

    JSContextEnv context() const override { return m_state->env(); }
    void run(const QString& source, const QString& fileName, Done done) override;
    bool importModule(const QString&, const QString&, Done) override { return false; }
    void evaluate(const PageScript& script, Done done) override;
    void propertyNames(const QStringList& path, std::function<void(const QStringList& names)> found) override;
    PendingList pending() const override { return m_state->pending(); }
    bool isBusy() const override { return m_state->isBusy(); }
    bool knowsAllPending() const override { return true; }
    void settle(std::function<void(int exitCode)> done) override;
    void close() override { m_state->close(); }

private:
    QStringList namesAt(QStringList path);

    std::shared_ptr<PageState> m_state;
};

} // namespace engine::jsc
