#include "bench/web/object.h"

#include "bench/web/stopwatch.h"
#include "framework/bytes.h"
#include "framework/events.h"
#include "framework/factory.h"
#include "framework/request.h"

#include <QPointer>
#include <QTimer>
#include <vector>

namespace bench {

namespace {

using jsapi::Answer;

struct Tick {
    std::int32_t number = 0;
    static constexpr bool AsArguments = true;
    static constexpr auto fields()
    {
        return std::tuple(jsapi::property("number", &Tick::number, "a number"));
    }
};
constexpr jsapi::Event<Tick> TickEvent { "bench.event", "An event to measure." };

/// A promise of a number.
class Request final : public KJsRequestFor<std::int32_t> {
public:
    static Answer<jsapi::Promise<std::int32_t>> make(const JSContextEnv& page, QPointer<Request>* made)
    {
        auto request = std::make_unique<Request>();
        *made = request.get();
        return promise(page, std::move(request));
    }
    void finish() { resolve(1); }
};

class WebObject final : public KJCExtendJsEventObj<WebObject> {
public:
    static constexpr char16_t ScriptName[] = u"NovaExtension.Bench";
    static const jsapi::MemberList& members();

    Answer<std::int32_t> next() { return ++m_last; }
    Answer<std::int32_t> put(const QString& text)
    {
        m_text = text;
        return static_cast<std::int32_t>(text.size());
    }
    Answer<QString> get() { return m_text; }
    Answer<void> putBytes(const jsapi::Demanded<jsapi::Bytes>& bytes)
    {
        m_bytes = bytes.value;
        return {};
    }
    Answer<jsapi::Bytes> getBytes() { return m_bytes; }

    Answer<jsapi::Promise<std::int32_t>> later(const JSContextEnv& page)
    {
        QPointer<Request> request;
        auto answer = Request::make(page, &request);
        QTimer::singleShot(0, request, [request] { request->finish(); });
        return answer;
    }
    Answer<jsapi::Promise<std::int32_t>> pending(const JSContextEnv& page)
    {
        return Request::make(page, &m_pending.emplace_back());
    }
    Answer<void> settleAll()
    {
        QTimer::singleShot(0, [this] {
            Stopwatch::begin();
            for (const QPointer<Request>& request : std::exchange(m_pending, {}))
                request->finish();
        });
        return {};
    }
    Answer<void> burst(std::int32_t count)
    {
        QTimer::singleShot(0, [this, count] {
            Stopwatch::begin();
            for (std::int32_t i = 0; i < count; ++i)
                send(TickEvent, { .number = i });
        });
        return {};
    }
    Answer<void> heard()
    {
        Stopwatch::end();
        return {};
    }

private:
    std::int32_t m_last = 0;
    QString m_text;
    jsapi::Bytes m_bytes;
    std::vector<QPointer<Request>> m_pending;
};

const jsapi::MemberList& WebObject::members()
{
    using jsapi::Category;
    using jsapi::member;
    using jsapi::Type;
    using Self = WebObject;
    static const jsapi::MemberList list = jsapi::MemberList("Members and events to measure.",
        {
            member<&Self::next>(u"next", Category::Usual, Type::JsValue, ""),
            member<&Self::put>(u"put", Category::Usual, Type::JsValue, { Type::String }, ""),
            member<&Self::get>(u"get", Category::Usual, Type::JsValue, ""),
            member<&Self::putBytes>(u"putBytes", Category::Usual, Type::JsValue, { Type::JsValue }, ""),
            member<&Self::getBytes>(u"getBytes", Category::Usual, Type::JsValue, ""),
            member<&Self::later>(u"later", Category::Usual, Type::JsValue, ""),
            member<&Self::pending>(u"pending", Category::Usual, Type::JsValue, ""),
            member<&Self::settleAll>(u"settleAll", Category::Usual, Type::JsValue, ""),
            member<&Self::burst>(u"burst", Category::Usual, Type::JsValue, { Type::JsValue }, ""),
            member<&Self::heard>(u"heard", Category::Usual, Type::JsValue, ""),
        })
                                              .withEvents(TickEvent);
    return list;
}

} // namespace

KResult webObjectFactory(std::int64_t creationContext, std::int64_t creationTarget)
{
    return sharedObjectFactory<WebObject>(creationContext, creationTarget);
}

} // namespace bench
