// TraceLines: what happens between pages and the library, a line for each, as --trace prints them.
#pragma once

#include "host/novahost/watching.h"

#include <vector>

namespace novahost {

/// What happens within a call, or within an event that listeners hear, is indented. The line of a call is printed when it has
/// ended, or in two parts when something else is to be printed before that.
class TraceLines final : public vexlite::Observer {
public:
    void pageOpened(const JSContextEnv& context, const QString& origin) override;
    void callBegan(const vexlite::CallFacts& call) override;
    void callEnded(const vexlite::CallFacts& call, const vexlite::CallOutcome& outcome) override;
    void promiseSettled(const vexlite::SettledPromise& promise) override;
    void eventBegan(const vexlite::EventFacts& event) override;
    void eventEnded(const vexlite::EventFacts& event) override;
    void functionBegan(const vexlite::FunctionFacts& function) override;
    void functionEnded(const vexlite::FunctionFacts& function, vexlite::TraceTime end) override;
    void stepPlayed(const QString& step) override;

private:
    struct Open {
        double at;
        QString text;
        bool isPrinted = false;
    };
    void begin(const JSContextEnv& context, vexlite::TraceTime start, const QString& text);
    void end(const QString& outcome);
    void printOpen();
    void print(double at, int depth, const QString& text) const;
    QString pageOf(const JSContextEnv& context) const;

    WatchedPages m_pages;
    std::vector<Open> m_open;
    QHash<std::int64_t, vexlite::TraceTime> m_promises; ///< when their calls ended
};

} // namespace novahost
