// A page with NovaExtension.Probe, a native object whose members are made for the tests, and tables of
// scripts.
#pragma once

#include "host/engine/page.h"
#include "host/vexlite/core.h"
#include "host/vexlite/counted.h"
#include "host/vexlite/scriptvalues.h"
#include "tests/services/rows.h"

#include <functional>
#include <gtest/gtest.h>

/// For the messages of failed tests.
inline std::ostream& operator<<(std::ostream& out, const QString& text)
{
    return out << qPrintable(text);
}

namespace engine::test {

struct ProbeCall {
    JSContextEnv context;
    JSApiArguments& arguments;
    KJSVariant& result;
    KJSVariant& exception;
};

struct ProbeMember {
    const char16_t* name;
    std::int32_t kind; ///< 0 a method, 1 a property
    std::function<KResult(ProbeCall&)> body;
};

/// How many probes there are, so that a lost reference shows.
int liveProbes();

/// The script's function in a value; null when there is none.
vexlite::Ref<IJSFunction> functionOf(const KJSVariant& value);

class PageTest : public testing::Test {
protected:
    PageTest();
    ~PageTest() override;

    /// Adds a method to Probe, before its first touch.
    void method(const char16_t* name, std::function<KResult(ProbeCall&)> body)
    {
        members.push_back({ name, 0, std::move(body) });
    }

    std::unique_ptr<Page> open();
    /// Runs the script as the body of an async function, or as a line of the repl, and waits for its answer.
    Outcome run(const QString& source, Page* where = nullptr);
    Outcome run(const char* source, Page* where = nullptr) { return run(QString::fromUtf8(source), where); }
    Outcome evaluate(const QString& line);
    /// JSON, a text where there is no JSON, or "!" and the error's text.
    static QString shown(const Outcome& outcome);
    /// A result that is a string.
    static QString textOf(const Outcome& outcome);
    /// An expected error need only be the beginning of what is shown.
    static void expectShown(const QString& found, const QString& expected);
    /// Spins the event loop until it is so; false after a minute.
    static bool waitFor(const std::function<bool()>& isSo);
    /// Spins the event loop until what is due within the time has happened.
    static void letPass(int milliseconds);
    /// What the console has got: the first line of each call.
    QString log() const { return lines.join(QLatin1Char('|')); }

    /// Binds a new probe: a factory.
    static KResult bindProbe(std::int64_t context, std::int64_t target);

    static inline std::vector<ProbeMember> members; ///< a factory has no context
    vexlite::Core& core;
    std::unique_ptr<ScriptEngine> engine = makeJscEngine();
    QStringList lines; ///< of the console, those of errors with "E " in front
    std::vector<Outcome> uncaught;
    std::vector<int> exits;
    QStringList played;
    std::weak_ptr<int> playing; ///< gone when the last page opened has let its plays go
    std::function<void()> onExit = [] {};
    vexlite::Ref<IJSFunction> kept; ///< what p.keep was given last
    std::int64_t pending = 0;       ///< the promise that p.later returned last
    int taken = 0;                  ///< calls of p.take
    std::unique_ptr<Page> page;

private:
    void addMembers();
};

class RowTest : public PageTest, public testing::WithParamInterface<Row> { };

} // namespace engine::test
