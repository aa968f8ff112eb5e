#include "host/jsc/scriptfunction.h"

#include "host/jsc/fromscript.h"
#include "host/jsc/pagestate.h"
#include "host/jsc/toscript.h"

namespace engine::jsc {

ScriptFunction::ScriptFunction(PageState& page, JSObjectRef function)
    : m_page(&page)
    , m_function(function)
    , m_env(page.env())
    , m_member(page.callingMember())
{
}

ScriptFunction::~ScriptFunction()
{
    if (m_page)
        m_page->functions().forget(this);
}

KResult ScriptFunction::perform(const JSApiArguments& arguments, KJSVariant* result, const QString& event)
{
    if (result)
        *result = {};
    if (!m_page || !m_page->isLive())
        return KR_NOT_AVAILABLE;
    // The call may destroy this handle, and the page.
    const std::shared_ptr<PageState> page = m_page->shared_from_this();
    JSObjectRef function = m_function;
    const Entry entry(*page);
    if (!entry)
        return KR_NOT_AVAILABLE;
    if (!page->engine().canNest()) {
        page->reportUncaught(QStringLiteral("RangeError: Maximum call stack size exceeded."));
        return KR_REJECTED;
    }

    const auto report = [&](JSValueRef thrown) {
        page->reportThrown(thrown,
            event.isNull() ? QStringLiteral("in a callback") : QStringLiteral("in a listener of ") + event);
    };
    constexpr std::size_t inlineCount = 16;
    JSContextRef ctx = page->ctx();
    JSValueRef values[inlineCount];
    JSValueRef exception = nullptr;
    JSValueRef answer = nullptr;
    ToScript toScript(*page);
    if (arguments.size() <= inlineCount) {
        std::size_t count = 0;
        for (const KJSVariant& argument : arguments) {
            values[count] = toScript.value(argument.raw());
            if (!values[count++]) {
                report(toScript.thrown());
                return KR_REJECTED;
            }
        }
        answer = JSObjectCallAsFunction(ctx, function, nullptr, count, values, &exception);
    } else {
        JSValueRef list = toScript.list(
            arguments.size(), [&](std::size_t i) -> const MVARIANT& { return arguments[i].raw(); });
        if (!list) {
            report(toScript.thrown());
            return KR_REJECTED;
        }
        answer =
            page->prelude().call(page->prelude().spread, &exception, static_cast<JSValueRef>(function), list);
    }
    if (!answer) {
        report(exception ? exception : JSValueMakeUndefined(ctx));
        return KR_REJECTED;
    }
    if (!result)
        return KR_OK;
    FromScript fromScript(*page);
    if (fromScript.read(answer, *result))
        return KR_OK;
    *result = {};
    page->reportUncaught(QStringLiteral("the answer of a function: ") + fromScript.problem());
    return KR_REJECTED;
}

ScriptFunction* Functions::keep(JSObjectRef function)
{
    auto* kept = new ScriptFunction(m_page, function);
    JSValueProtect(m_page.ctx(), function);
    m_kept.insert(kept);
    m_page.core().addLiveFunctions(1);
    return kept;
}

void Functions::addPending(PendingList& list) const
{
    for (const ScriptFunction* function : m_kept) {
        const auto kind = function->event().isEmpty() ? Pending::Kind::Function : Pending::Kind::Listener;
        list.push_back({ kind, function->m_member, function->event(), function->m_since });
    }
}

void Functions::forget(ScriptFunction* function)
{
    if (!m_kept.erase(function))
        return;
    JSValueUnprotect(m_page.ctx(), function->m_function);
    if (vexlite::Core* core = vexlite::Core::instance())
        core->addLiveFunctions(-1);
}

void Functions::clear()
{
    while (!m_kept.empty()) {
        ScriptFunction* function = *m_kept.begin();
        forget(function);
        function->m_page = nullptr;
    }
}

} // namespace engine::jsc
