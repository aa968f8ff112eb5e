// Events: a class whose objects have listeners derives from one of the two templates at the end and ends its
// member table with .withEvents(its events). An event is a constant with the struct that it carries:
//
//     inline constexpr jsapi::Event<LoginChange> LoginEvent {
//         "event.account.login", "A user has signed in." };
//     ...
//     account.send(LoginEvent, { .userId = id });
#pragma once

#include "framework/extensionobject.h"

namespace jsapi {

/// An event: its name, what it means, and the type of the one object that it carries.
template <typename Payload> struct Event {
    using Carried = Payload;

    const char* name;
    const char* doc;
};

/// A payload that says `static constexpr bool AsArguments = true;` is no object: listeners are called with its fields, one
/// argument each.
template <typename Payload>
concept IsArguments = requires
{
    Payload::AsArguments;
};

/// What listeners are called with.
template <typename Payload> std::vector<KJSVariant> toArguments(const Payload& payload)
{
    if constexpr (IsArguments<Payload>) {
        return std::apply(
            [&](const auto&... field) {
                return std::vector<KJSVariant> { toScript(payload.*field.member)... };
            },
            FieldList<Payload>);
    } else {
        return { convertVariant(toMap(payload)) };
    }
}

} // namespace jsapi

/// What an event-capable object offers to native code. [GUI thread]
class IKJSExtentionApiEvent {
public:
    /// The object's hub, requested from the JS core once; null without a JS core or without hubs. Owned by
    /// the JS core.
    virtual IJSEventHub* hub() = 0;
    /// Called before each member that concerns listeners: whatever the events come from is connected then.
    virtual void prepareEvents() { }

    /// Sends an event to the listeners of every page, or of one. Does nothing without a hub.
    template <typename Payload>
    void send(const jsapi::Event<Payload>& event, const Payload& payload,
        const JSContextEnv& target = JSContextEnv::everyContext())
    {
        dispatch(event.name, jsapi::toArguments(payload), target);
    }
    /// The same with the payload as the service gave it, which may add keys to those of `Payload`.
    template <typename Payload> void send(const jsapi::Event<Payload>& event, const QVariantMap& payload)
    {
        dispatch(event.name, { jsapi::convertVariant(payload) }, JSContextEnv::everyContext());
    }

protected:
    ~IKJSExtentionApiEvent() = default;

private:
    void dispatch(const char* event, const std::vector<KJSVariant>& payload, const JSContextEnv& target);
};

namespace jsapi {

inline constexpr Failure EventServiceError { ErrorCode::OperationFailed, "Event service error." };

/// The hub of the object that is called, as a parameter. Whatever the events come from is connected first.
template <> struct Argument<IJSEventHub> {
    static constexpr bool IsScript = false;
    static constexpr std::array Refusals { &EventServiceError };
    bool read(ArgumentReader& reader, KJCExtentionObjBase& object);
    IJSEventHub& get() const { return *hub; }
    IJSEventHub* hub = nullptr;
};

/// The name of an event; what is no string is converted, or else an empty name.
struct EventName {
    QString string;
};
template <> struct Argument<EventName> : ArgumentValue<EventName> {
    bool read(ArgumentReader& reader)
    {
        value.string = convertToString(reader.next().raw()).value_or(QString());
        return true;
    }
};

/// A listener as a parameter: a function of script's that is called with a `Payload`, or with anything where that is void.
/// Whether it is a function is the hub's to check.
template <typename Payload> struct Listener {
    KJSVariant callback;
};
/// The same to remove: none stands for all of the page's.
template <typename Payload> struct RemovedListener : Listener<Payload> {
};

template <typename T> struct ListenerArgument : ArgumentValue<T> {
    bool read(ArgumentReader& reader)
    {
        this->value.callback = copyValue(reader.next());
        return true;
    }
};
template <typename Payload> struct Argument<Listener<Payload>> : ListenerArgument<Listener<Payload>> {
};
template <typename Payload>
struct Argument<RemovedListener<Payload>> : ListenerArgument<RemovedListener<Payload>> {
};

template <const auto& ListenedEvent>
using PayloadOf = typename std::remove_cvref_t<decltype(ListenedEvent)>::Carried;

inline Answer<void> reportListenerChange(KResult status)
{
    if (status != KR_OK)
        return WrongParameters;
    return {};
}

// The two members for listeners of one event. `Services` are refused before anything else.
template <const auto& ListenedEvent, typename... Services>
Answer<void> addListener(const Services&..., IJSEventHub& events, const JSContextEnv& page,
    const Listener<PayloadOf<ListenedEvent>>& listener)
{
    return reportListenerChange(events.Add(heapString(ListenedEvent.name), page, listener.callback));
}
template <const auto& ListenedEvent, typename... Services>
Answer<void> removeListener(const Services&..., IJSEventHub& events, const JSContextEnv& page,
    const RemovedListener<PayloadOf<ListenedEvent>>& listener)
{
    return reportListenerChange(events.Remove(heapString(ListenedEvent.name), page, listener.callback));
}

/// The row of both.
template <typename T, const auto& ListenedEvent, typename... Services>
MemberDescriptor listeners(const char16_t* add, const char16_t* remove, Category category)
{
    constexpr auto Add = &addListener<ListenedEvent, Services...>;
    constexpr auto Remove = &removeListener<ListenedEvent, Services...>;
    MemberDescriptor row = member<Add, T>(
        add, category, Type::JsValue, { { Type::Object, "callback" } }, "", { &WrongParameters });
    row.counterpart = remove;
    row.counterpartInvoke = reinterpret_cast<JSMemberInvoke>(&detail::Thunk<Remove, T>::method);
    row.documentation.template describeListeners<Remove>(ListenedEvent.name);
    return row;
}

} // namespace jsapi

/// An object with a hub, whichever the derived template obtains.
template <typename T>
class KJCExtendJsObj_EventBase : public KJCExtendJsObj<T>, public IKJSExtentionApiEvent {
public:
    IKJSExtentionApiEvent* GetApiEvent() final { return this; }

    IJSEventHub* hub() final
    {
        if (!m_hub) {
            IVEXJSCore* core = vexlite::GetVEXJSCore();
            if (IJSEventHubFactory* factory = core ? core->EventHubs() : nullptr)
                m_hub = obtainHub(*factory, static_cast<std::int32_t>(this->GetTypeId()));
        }
        return m_hub;
    }

protected:
    virtual IJSEventHub* obtainHub(IJSEventHubFactory& factory, std::int32_t typeId) = 0;
    IJSEventHub* knownHub() const noexcept { return m_hub; }

private:
    IJSEventHub* m_hub = nullptr;
};

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
