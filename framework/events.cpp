#include "framework/events.h"

void IKJSExtentionApiEvent::dispatch(
    const char* event, const std::vector<KJSVariant>& payload, const JSContextEnv& target)
{
    if (IJSEventHub* listeners = hub())
        listeners->Dispatch(heapString(event), target, payload);
}

namespace jsapi {

bool Argument<IJSEventHub>::read(ArgumentReader& reader, KJCExtentionObjBase& object)
{
    IKJSExtentionApiEvent* events = object.GetApiEvent();
    events->prepareEvents();
    hub = events->hub();
    return hub || reader.refuse(EventServiceError);
}

namespace {

Answer<Plain<void>> addEventListener(
    IJSEventHub& events, const EventName& name, const JSContextEnv& page, const Listener<void>& listener)
{
    return Plain<void> { events.Add(name.string, page, listener.callback) };
}

Answer<Plain<void>> removeEventListener(IJSEventHub& events, const EventName& name, const JSContextEnv& page,
    const RemovedListener<void>& listener)
{
    return Plain<void> { events.Remove(name.string, page, listener.callback) };
}

Answer<Plain<void>> dispatchEvent(IJSEventHub& events, const EventName& name,
    const TrueByDefault& isInsidePlugin, const JSContextEnv& page, const Rest& payload)
{
    events.Dispatch(name.string, isInsidePlugin.value ? page : JSContextEnv::everyContext(), payload.values);
    return Plain<void> { KR_OK };
}

Answer<Plain<KJSVariant>> getAllEventInfo(IJSEventHub& events)
{
    KJSVariant report;
    events.Report(report);
    return Plain<KJSVariant> { std::move(report) };
}

} // namespace

void MemberList::appendEventMembers()
{
    append(member<&addEventListener>(u"addEventListener", Category::None, Type::None,
        { { Type::String, u"eventName", "the event" },
            { Type::Variant, u"callback", "is called with what the event carries" } },
        "Adds a listener of the page. The same function is added once.", { &WrongParameters }));
    append(member<&removeEventListener>(u"removeEventListener", Category::None, Type::None,
        { { Type::String, u"eventName", "the event" },
            { Type::Variant, u"callback", "the listener; without one all of the page's are removed" } },
        "Removes a listener of the page.", { &WrongParameters }));
    append(member<&dispatchEvent>(u"dispatchEvent", Category::None, Type::None,
        { { Type::String, u"eventName", "the event" },
            { Type::Boolean, u"isInsidePlugin", "whether only listeners of the calling page are called" },
            { Type::Variant, u"payload", "what the listeners are called with" } },
        "Calls the listeners of an event."));
    append(member<&getAllEventInfo>(u"getAllEventInfo", Category::None, Type::Array,
        "Returns how many listeners each event has, over all pages."));
}

} // namespace jsapi
