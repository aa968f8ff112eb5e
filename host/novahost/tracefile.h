// TraceFile: what happens between pages and the library, in the Trace Event Format, which Perfetto (ui.perfetto.dev) and
// chrome://tracing open.
#pragma once

#include "host/novahost/outputfile.h"
#include "host/novahost/watching.h"

namespace novahost {

/// An array of events, a line each. Readers accept one whose end is missing, as when the process has died.
class TraceFile final : public vexlite::Observer {
public:
    static constexpr char Beginning[] = "[\n{\"ph\":\"M\"";
    explicit TraceFile(std::unique_ptr<OutputFile> file);
    /// Ends the array. Returns whether everything has been written.
    bool finish();

    void pageOpened(const JSContextEnv& context, const QString& origin) override;
    void callEnded(const vexlite::CallFacts& call, const vexlite::CallOutcome& outcome) override;
    void promiseSettled(const vexlite::SettledPromise& promise) override;
    void eventEnded(const vexlite::EventFacts& event) override;
    void functionEnded(const vexlite::FunctionFacts& function, vexlite::TraceTime end) override;
    void stepPlayed(const QString& step) override;

private:
    /// `page` is 0 for the suite; `rest` is what else the event has: ",\"dur\":5".
    void add(const char* phase, const char* category, const QString& name, int page, double milliseconds,
        const QByteArray& rest);

    std::unique_ptr<OutputFile> m_file;
    WatchedPages m_pages;
    bool m_isEmpty = true;
    bool m_isFinished = false; ///< what happens while the suite ends is left out
};

} // namespace novahost
