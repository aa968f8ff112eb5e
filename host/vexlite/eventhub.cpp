#include "host/vexlite/eventhub.h"

#include "host/vexlite/conversion.h"
#include "host/vexlite/core.h"
#include "host/vexlite/eventhubs.h"
#include "host/vexlite/ownedtext.h"
#include "host/vexlite/scriptvalues.h"
#include "host/vexlite/trace.h"

namespace vexlite {

namespace {

/// The script function in a value, or null.
Ref<PageFunction> functionOf(const KJSVariant& value)
{
    return Ref<PageFunction>::share(
        dynamic_cast<PageFunction*>(queryInterface<IJSFunction>(value, IID_IJSFunction).get()));
}

} // namespace

EventHub::~EventHub()
{
    // Dispatches under way keep their lists, so the listeners must be removed from those.
    DroppedFunctions dropped;
    for (const std::shared_ptr<ListenerList>& list : std::as_const(m_lists))
        list->clear([this](const JSContextEnv& context) { m_owner.uncountListeners(context, 1); }, dropped);
    m_lists.clear();
}

KResult EventHub::Add(const QString& event, const JSContextEnv& context, const KJSVariant& callback)
{
    Ref<PageFunction> function = functionOf(callback);
    if (!function || !(function->Context() == context) || event.size() > CoreLimits::eventNameLength)
        return KR_REJECTED;
    if (!m_owner.isOpen(context))
        return KR_NOT_AVAILABLE;
    const auto known = m_lists.constFind(event);
    if (known != m_lists.constEnd() && (*known)->has(context, *function.get()))
        return KR_OK;
    if (!m_owner.countListener(context, this))
        return KR_REJECTED;
    std::shared_ptr<ListenerList>& list =
        m_lists[known == m_lists.constEnd() ? makeOwnedText(event) : known.key()];
    if (!list)
        list = std::make_shared<ListenerList>();
    function->listenTo(makeOwnedText(event));
    list->add(context, std::move(function));
    return KR_OK;
}

KResult EventHub::Remove(const QString& event, const JSContextEnv& context, const KJSVariant& callback)
{
    const Ref<PageFunction> function = functionOf(callback);
    if (!function && !callback.isEmpty())
        return KR_REJECTED;
    const auto known = m_lists.find(event);
    if (known == m_lists.end())
        return KR_OK;
    DroppedFunctions dropped;
    ListenerList& list = **known;
    const int removed =
        function ? list.remove(context, *function.get(), dropped) : list.removePage(context, dropped);
    if (!list.count())
        m_lists.erase(known);
    m_owner.uncountListeners(context, removed);
    return KR_OK;
}

KResult EventHub::Dispatch(
    const QString& event, const JSContextEnv& target, const std::vector<KJSVariant>& payload)
{
    const EventHubs::DispatchLevel level(m_owner);
    if (!level.isAllowed())
        return KR_REJECTED;
    if (!(target == JSContextEnv::everyContext()) && !m_owner.isOpen(target))
        return KR_NOT_AVAILABLE;
    // From here on no member may be used: the first listener may destroy this hub.
    const std::shared_ptr<ListenerList> list = m_lists.value(event);
    if (!list)
        return KR_OK;
    const JSApiArguments arguments(payload.data(), payload.size());
    const JSContextEnv receiver = target;
    // Like the receiver, it may be part of what a listener destroys.
    const QString name = event; // NOLINT(performance-unnecessary-copy-initialization)
    CallTrace::Emission emission(m_typeId, m_object, name, arguments);
    const ListenerList::Reading reading(*list);
    for (std::size_t position = 0; position < reading.end(); ++position) {
        // An exception is reported as the page's uncaught error, and the next listener is called.
        if (const Ref<PageFunction> function = reading.at(position, receiver)) {
            emission.reach(function->Context());
            function->perform(arguments, nullptr, name);
        }
    }
    return KR_OK;
}

KResult EventHub::Report(KJSVariant& result)
{
    QStringList events = m_lists.keys();
    events.sort();
    Ref<IJSArray> report = makeScriptArray();
    for (const QString& event : std::as_const(events)) {
        Ref<IJSONValue> entry = makeScriptObject();
        entry->SetString(QStringLiteral("eventName"), event);
        entry->SetInt32(QStringLiteral("listenerCount"), m_lists.value(event)->count());
        report->Append(KJSVariant::fromUnknown(entry.release()));
    }
    result = KJSVariant::fromUnknown(report.release(), MV_ARRAY);
    return KR_OK;
}

void EventHub::dropPage(const JSContextEnv& context, DroppedFunctions& dropped)
{
    for (auto entry = m_lists.begin(); entry != m_lists.end();) {
        (*entry)->removePage(context, dropped);
        entry = (*entry)->count() ? std::next(entry) : m_lists.erase(entry);
    }
}

} // namespace vexlite
