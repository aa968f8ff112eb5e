// Pages without an engine: NullPage for the JS core alone, Page to call members by name as script does:
//
//     Page page(core);
//     page.call("Product", "language")                  // the answer's data as JSON: "\"en-GB\""
//     page.call("Log", "logInfo", R"({"logStr": 5})")   // or what it throws: "1 missing required
//     parameters."
#pragma once

#include "host/vexlite/core.h"
#include "host/vexlite/pagefunction.h"
#include "tests/support/values.h"

#include <map>

namespace support {

/// A script function; what it does is up to the test.
class FakeFunction final : public vexlite::PageFunction {
public:
    using Body = std::function<KResult(const JSApiArguments&)>;

    FakeFunction(const JSContextEnv& context, std::uintptr_t identity, Body body)
        : m_context(context)
        , m_identity(identity)
        , m_body(std::move(body))
    {
        ++alive;
    }
    ~FakeFunction() override { --alive; }

    KResult perform(const JSApiArguments& arguments, KJSVariant*, const QString&) override
    {
        return m_body(arguments);
    }
    std::uintptr_t Identity() const override { return m_identity; }
    JSContextEnv Context() const override { return m_context; }

    static inline int alive = 0;

private:
    JSContextEnv m_context;
    std::uintptr_t m_identity;
    Body m_body;
};

/// A value with a new wrapper of the function `identity` of a page.
inline KJSVariant function(const JSContextEnv& context, std::uintptr_t identity, FakeFunction::Body body)
{
    return KJSVariant::fromUnknown(new FakeFunction(context, identity, std::move(body)));
}

/// Notes what the core asks of it.
class NullPage : public vexlite::ScriptPage {
public:
    bool createPromise(std::int64_t) override { return makesPromises; }
    void settlePromise(std::int64_t promise, JSPromiseState state, const KJSVariant& value) override
    {
        settled.push_back(state == JSPromiseState::Resolved ? json(value) : "rejected: " + failure(value));
        lastSettled = promise;
        if (onSettle)
            onSettle();
    }
    void releasePromise(std::int64_t promise) override { released.push_back(promise); }

    bool makesPromises = true;
    std::function<void()> onSettle;
    std::vector<std::string> settled;
    std::int64_t lastSettled = 0;
    std::vector<std::int64_t> released;
};

class Page final : public NullPage {
public:
    explicit Page(vexlite::Core& core, const vexlite::BrowserFacts& browser = {})
        : context(core.openPage(this, browser))
        , m_core(core)
    {
    }
    ~Page() override { close(); }
    /// Pages of no origin may do nothing beyond their window.
    QString origin() const override { return pageOrigin; }
    QString pageOrigin;
    void close()
    {
        m_objects.clear();
        result = {};
        if (m_core.isOpen(context))
            m_core.closePage(context);
    }

    /// The object of a short name.
    const vexlite::BoundObject& object(const char* name)
    {
        vexlite::BoundObject& bound = m_objects[name];
        if (!bound.object)
            bound = m_core.bindObject(context, QString::fromLatin1(name));
        EXPECT_EQ(bound.status, KR_OK) << name;
        return bound;
    }
    /// The object that the last call handed out.
    vexlite::BoundObject handedOut() const
    {
        auto* handle = dynamic_cast<IJSSubObject*>(result.raw().punkVal);
        EXPECT_TRUE(handle);
        return handle ? m_core.bindSubObject(context, handle->Object()) : vexlite::BoundObject();
    }

    std::string call(const char* of, const char* member, const QByteArray& arguments = {})
    {
        return call(object(of), member, values(arguments));
    }
    std::string call(
        const vexlite::BoundObject& of, const char* member, const std::vector<KJSVariant>& given = {})
    {
        for (std::int32_t index = 0; index < of.members->Count(); ++index) {
            if (QString::fromUtf16(of.members->Name(index)) != QLatin1String(member))
                continue;
            KJSVariant exception;
            JSApiArguments arguments(given.data(), given.size());
            m_core.call(of.object.get(), context, of.members->Id(index), JSAccess::Method, arguments,
                result = {}, exception);
            if (!exception.isEmpty())
                return failure(exception);
            QVariant answer;
            KJSApiUtil::ConvertJSVariantToQVariant(result, answer); // promises and objects have no such form
            return json(answer.toMap().value(QStringLiteral("data")));
        }
        ADD_FAILURE() << "no member " << member;
        return {};
    }

    /// Has `heard` called with the first value of each event's payload, as JSON.
    void listen(
        const vexlite::BoundObject& of, const char* event, std::function<void(const std::string&)> heard)
    {
        const auto body = [heard = std::move(heard)](const JSApiArguments& payload) {
            heard(payload.size() > 0 ? json(payload[0]) : std::string());
            return KR_OK;
        };
        call(of, "addEventListener", { value(QString::fromLatin1(event)), function(context, 1, body) });
    }

    const JSContextEnv context;
    KJSVariant result; ///< of the last call, as it came

private:
    vexlite::Core& m_core;
    std::map<std::string, vexlite::BoundObject> m_objects;
};

} // namespace support
