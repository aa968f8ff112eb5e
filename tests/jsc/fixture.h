// Probe, a native object whose members a test makes up, and the fixture with a page that reaches it.
#pragma once

#include "host/engine/page.h"
#include "host/vexlite/counted.h"
#include "host/vexlite/scriptvalues.h"

#include <QCoreApplication>
#include <QElapsedTimer>
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
    std::int32_t kind;
    std::function<KResult(ProbeCall&)> body;
};

/// Counts its instances, so that a lost reference shows.
class Probe final : public vexlite::Counted<IJSExtentionObject, IID_IJSExtentionObject> {
public:
    explicit Probe(std::int64_t typeId, std::vector<ProbeMember> members)
        : m_typeId(typeId)
        , m_members(std::move(members))
    {
        ++alive;
    }
    ~Probe() override { --alive; }
    static inline int alive = 0;

    std::int64_t GetTypeId() override { return m_typeId; }
    KResult InvokePropertyGet(const JSContextEnv& context, std::int32_t id, std::int64_t, KJSVariant& value,
        KJSVariant& exception) override
    {
        JSApiArguments none;
        return InvokeMethod(context, id, none, value, 0, exception);
    }
    KResult InvokePropertyPut(const JSContextEnv&, std::int32_t, KJSVariant&, KJSVariant&) override
    {
        return KR_REJECTED;
    }
    KResult InvokeMethod(const JSContextEnv& context, std::int32_t id, JSApiArguments& arguments,
        KJSVariant& result, std::int64_t, KJSVariant& exception) override
    {
        ProbeCall call { context, arguments, result, exception };
        return m_members[static_cast<std::size_t>(id)].body(call);
    }
    KResult GetMemberTable(const JSContextEnv&, IJSMemberList** out) override
    {
        *out = new List(m_members);
        return KR_OK;
    }
    void* GetHostPointer() override { return nullptr; }
    void Reserved() override { }
    void SetHostPointer(void*) override { }
    void GetInstanceMode(std::uint32_t*) override { }
    void SetInstanceMode(std::uint32_t) override { }

private:
    inline static const KIID listId {};
    class List final : public vexlite::Counted<IJSMemberList, listId> {
    public:
        explicit List(const std::vector<ProbeMember>& members)
            : m_members(members)
        {
        }
        std::int32_t Count() const override { return static_cast<std::int32_t>(m_members.size()); }
        std::int32_t Id(std::int32_t index) const override { return index; }
        const char16_t* Name(std::int32_t index) const override { return at(index).name; }
        std::int32_t Kind(std::int32_t index) const override { return at(index).kind; }
        std::uint32_t Mask(std::int32_t) const override { return 0; }
        std::int32_t ResultType(std::int32_t) const override { return 0; }
        std::int32_t ParameterCount(std::int32_t) const override { return 0; }
        JSParameter Parameter(std::int32_t, std::int32_t) const override { return {}; }
        JSMemberInvoke Invoke(std::int32_t) const override { return nullptr; }

    private:
        const ProbeMember& at(std::int32_t index) const { return m_members[static_cast<std::size_t>(index)]; }
        std::vector<ProbeMember> m_members;
    };

    std::int64_t m_typeId;
    std::vector<ProbeMember> m_members;
};

/// What a handler hands out for another object.
class SubObject final : public vexlite::Counted<IJSSubObject, IID_IJSSubObject> {
public:
    explicit SubObject(vexlite::Ref<IJSExtentionObject> object)
        : m_object(std::move(object))
    {
    }
    IJSExtentionObject* Object() const override { return m_object.get(); }
    std::int64_t Token() const override { return 1; }

private:
    vexlite::Ref<IJSExtentionObject> m_object;
};

inline KJSVariant text(const char* ascii)
{
    return vexlite::makeText(QString::fromLatin1(ascii));
}

/// A page, and NovaExtension.Probe with the members that the test gives: kind 0 by method(), kind 1 by
/// property().
class PageTest : public testing::Test {
protected:
    PageTest();
    ~PageTest() override;

    /// Members must be there before the first touch.
    void method(const char16_t* name, std::function<KResult(ProbeCall&)> body)
    {
        members.push_back({ name, 0, std::move(body) });
    }
    void property(const char16_t* name, std::function<KResult(ProbeCall&)> body)
    {
        members.push_back({ name, 1, std::move(body) });
    }

    std::unique_ptr<Page> open();
    /// Runs as `run` does and waits; the test fails when no answer comes.
    Outcome run(const char* source, Page* where = nullptr);
    Outcome evaluate(const char* source, Page* where = nullptr);
    /// The answer as JSON, or "!" and the error's text.
    QString answer(const char* source) { return shown(run(source)); }
    static QString shown(const Outcome& outcome);
    /// Spins the event loop until `done` or two seconds have passed.
    static bool waitFor(const std::function<bool()>& done);

    static inline std::vector<ProbeMember> members;
    vexlite::Core& core;
    std::unique_ptr<ScriptEngine> engine = makeJscEngine();
    QStringList lines; ///< of the console, those of errors with "E " in front
    std::vector<Outcome> uncaught;
    std::vector<int> exits;
    QStringList played;
    std::weak_ptr<int> playing; ///< gone when the last page opened has let its plays go
    std::function<void()> onExit;
    std::unique_ptr<Page> page;
};

inline PageTest::PageTest()
    : core(vexlite::Core::start({}))
{
    members.clear();
    core.setFactories({ { QStringLiteral("Probe"),
                            [](std::int64_t context, std::int64_t target) {
                                return vexlite::GetVEXJSCore()->Registry()->Bind(
                                    new Probe(1, members), context, target, 0);
                            } },
        { QStringLiteral("Broken"), [](std::int64_t, std::int64_t) { return KR_NOT_AVAILABLE; } } });
    page = open();
}

inline PageTest::~PageTest()
{
    page.reset();
    engine.reset();
    vexlite::Core::stop();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(Probe::alive, 0);
}

inline std::unique_ptr<Page> PageTest::open()
{
    PageHost host;
    host.console = [this](const QString& line, bool isError) {
        lines += isError ? QStringLiteral("E ") + line : line;
    };
    host.uncaughtError = [this](const Outcome& error) { uncaught.push_back(error); };
    const auto token = std::make_shared<int>();
    playing = token;
    host.play = [this, token](const QString& steps) {
        played += steps;
        return QString();
    };
    host.exitRequested = [this](int code) {
        exits.push_back(code);
        if (onExit)
            onExit();
    };
    return engine->openPage({ { QStringLiteral("page.js"), QStringLiteral("-x") }, {} }, std::move(host));
}

inline bool PageTest::waitFor(const std::function<bool()>& done)
{
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < 2000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
    return done();
}

inline Outcome PageTest::run(const char* source, Page* where)
{
    std::vector<Outcome> outcomes;
    (where ? where : page.get())
        ->run(QString::fromUtf8(source), QStringLiteral("test.js"),
            [&](const Outcome& outcome) { outcomes.push_back(outcome); });
    EXPECT_TRUE(outcomes.empty()) << "answered from inside the call";
    EXPECT_TRUE(waitFor([&] { return !outcomes.empty(); })) << source;
    return outcomes.empty() ? Outcome {} : outcomes.front();
}

inline Outcome PageTest::evaluate(const char* source, Page* where)
{
    std::vector<Outcome> outcomes;
    (where ? where : page.get())->evaluate(QString::fromUtf8(source), [&](const Outcome& outcome) {
        outcomes.push_back(outcome);
    });
    EXPECT_TRUE(waitFor([&] { return !outcomes.empty(); })) << source;
    return outcomes.empty() ? Outcome {} : outcomes.front();
}

inline QString PageTest::shown(const Outcome& outcome)
{
    if (!outcome.ok)
        return QLatin1Char('!') + outcome.text;
    return outcome.json.isEmpty() ? outcome.text : outcome.json;
}

template <typename Case> std::string caseName(const testing::TestParamInfo<Case>& info)
{
    return info.param.name;
}

} // namespace engine::test
