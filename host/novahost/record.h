// Recorder: what happens between pages and the library, written down so that it can be played back: docs/recording.md.
#pragma once

#include "host/novahost/outputfile.h"
#include "host/novahost/watching.h"

namespace novahost {

/// A line of JSON for each record.
class Recorder final : public vexlite::Observer {
public:
    static constexpr char Beginning[] = "{\"novaRecording\":";
    explicit Recorder(std::unique_ptr<OutputFile> file)
        : m_file(std::move(file))
    {
    }
    /// Returns whether everything has been written.
    bool finish() { return m_file->finish(); }

    void pageOpened(const JSContextEnv& context, const QString& origin) override;
    void callEnded(const vexlite::CallFacts& call, const vexlite::CallOutcome& outcome) override;
    void promiseSettled(const vexlite::SettledPromise& promise) override;
    void eventBegan(const vexlite::EventFacts& event) override;
    void functionBegan(const vexlite::FunctionFacts& function) override;
    void stepPlayed(const QString& step) override;

private:
    /// The beginning of a record; `page` is null for the suite's.
    QByteArray begin(const char* type, double at, const JSContextEnv* page, int within = 0) const;

    std::unique_ptr<OutputFile> m_file;
    WatchedPages m_pages;
};

} // namespace novahost
