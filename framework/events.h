// Events: a class whose objects have listeners derives from one of the two templates at the end and ends its
// member table with withEvents<itself>().
#pragma once

#include "framework/extensionobject.h"

#include <QVariantMap>

/// What an event-capable object offers to native code. [GUI thread]
class IKJSExtentionApiEvent {
public:
    /// The object's hub, asked of the JS core once; null without a JS core or without hubs. Owned by the JS
    /// core.
    virtual IJSEventHub* hub() = 0;
    /// Sends an event to the listeners of one page, or of every page. Does nothing without a hub.
    virtual void dispatch(
        const QString& event, const JSContextEnv& target, const std::vector<KJSVariant>& payload) = 0;
    /// Sends an event that carries one object to the listeners of every page.
    void tell(const char* event, const QVariantMap& values);
    /// Whether any page listens to any event.
    bool hasListeners();

protected:
    ~IKJSExtentionApiEvent() = default;
};

/// The four generic event members, over whichever hub the derived template obtains.
template <typename T>
class KJCExtendJsObj_EventBase : public KJCExtendJsObj<T>, public IKJSExtentionApiEvent {
public:
    static MemberList eventMembers();

    IKJSExtentionApiEvent* GetApiEvent() { return this; }

    IJSEventHub* hub() final
    {
        if (!m_hub) {
            IVEXJSCore* core = vexlite::GetVEXJSCore();
            if (IJSEventHubFactory* factory = core ? core->EventHubs() : nullptr)
                m_hub = obtainHub(*factory, static_cast<std::int32_t>(this->GetTypeId()));
        }
        return m_hub;
    }

    void dispatch(
        const QString& event, const JSContextEnv& target, const std::vector<KJSVariant>& payload) final
    {
        if (IJSEventHub* events = hub())
            events->Dispatch(event, target, payload);
    }

    Reply addEventListener(Call& call)
    {
        return withHub(call, [&](IJSEventHub& events) {
            return call.status(
                events.Add(convertedText(call.argument(0)), call.context(), call.copiedArgument(1)));
        });
    }

    Reply removeEventListener(Call& call)
    {
        return withHub(call, [&](IJSEventHub& events) {
            return call.status(
                events.Remove(convertedText(call.argument(0)), call.context(), call.copiedArgument(1)));
        });
    }

    Reply dispatchEvent(Call& call)
    {
        return withHub(call, [&](IJSEventHub& events) {
            const bool onlyCaller = call.count() < 2 || convertedBoolean(call.argument(1), true);
            std::vector<KJSVariant> payload;
            for (std::size_t i = 2; i < call.count(); ++i)
                payload.push_back(call.copiedArgument(i));
            events.Dispatch(convertedText(call.argument(0)),
                onlyCaller ? call.context() : JSContextEnv::everyContext(), payload);
            return call.status(KR_OK);
        });
    }

    Reply getAllEventInfo(Call& call)
    {
        return withHub(call, [&](IJSEventHub& events) {
            KJSVariant report;
            events.Report(report);
            return call.answer(std::move(report));
        });
    }

protected:
    virtual IJSEventHub* obtainHub(IJSEventHubFactory& factory, std::int32_t typeId) = 0;
    /// Called first by each of the four members: whatever the events come from is connected then.
    virtual void prepareEvents() { }
    IJSEventHub* knownHub() const noexcept { return m_hub; }

private:
    template <typename Action> Reply withHub(Call& call, Action action)
    {
        prepareEvents();
        if (IJSEventHub* events = hub())
            return action(*events);
        return call.fail(ErrorCode::OperationFailed, "Event service error.");
    }

    IJSEventHub* m_hub = nullptr;
};

template <typename T> MemberList KJCExtendJsObj_EventBase<T>::eventMembers()
{
    return {
        method<&T::addEventListener>(u"addEventListener", Category::None, Type::None,
            { { Type::String, u"eventName" }, { Type::Variant, u"callback" } }),
        method<&T::removeEventListener>(u"removeEventListener", Category::None, Type::None,
            { { Type::String, u"eventName" }, { Type::Variant, u"callback" } }),
        method<&T::dispatchEvent>(u"dispatchEvent", Category::None, Type::None,
            { { Type::String, u"eventName" }, { Type::Boolean, u"isInsidePlugin" },
                { Type::Variant, u"payload" } }),
        method<&T::getAllEventInfo>(u"getAllEventInfo", Category::None, Type::Array),
    };
}

/// Events that all objects of a class share.
template <typename T> class KJCExtendJsEventObj : public KJCExtendJsObj_EventBase<T> {
protected:
    IJSEventHub* obtainHub(IJSEventHubFactory& factory, std::int32_t typeId) override
    {
        return factory.ClassHub(typeId);
    }
};

/// Events that belong to one object and end with it.
template <typename T> class KJCExtendJsObj_InstanceLevelEvent : public KJCExtendJsObj_EventBase<T> {
public:
    ~KJCExtendJsObj_InstanceLevelEvent() override
    {
        IVEXJSCore* core = vexlite::GetVEXJSCore();
        IJSEventHubFactory* factory = core ? core->EventHubs() : nullptr;
        if (factory && this->knownHub())
            factory->ReleaseInstanceHub(this->knownHub());
    }

protected:
    IJSEventHub* obtainHub(IJSEventHubFactory& factory, std::int32_t typeId) override
    {
        return factory.InstanceHub(typeId, this);
    }
};
