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
    void evaluate(const QString& source, Done done) override;
    QStringList propertyNames(const QString& path) override;
    PendingList pending() const override { return m_state->pending(); }
    bool isBusy() const override { return m_state->isBusy(); }
    bool knowsAllPending() const override { return true; }
    void settle(std::function<void(int exitCode)> done) override;
    void close() override { m_state->close(); }

private:
    void declareAwaited(int ticket, const QString& awaited, const QString& declaration);

    std::shared_ptr<PageState> m_state;
};

} // namespace engine::jsc
