#include "host/jsc/wrappers.h"

#include "host/jsc/pagestate.h"

#include <algorithm>

namespace engine::jsc {

namespace {

QString hex(KResult code)
{
    return QStringLiteral("0x%1").arg(code, 8, 16, QLatin1Char('0'));
}

JSValueRef touchRoot(JSContextRef ctx, JSObjectRef function, JSObjectRef, std::size_t, const JSValueRef[],
    JSValueRef* exception)
{
    PageState* page = Engine::findPage(ctx);
    if (!page || !page->isLive())
        return JSValueMakeUndefined(ctx);
    const std::shared_ptr<PageState> keep = page->shared_from_this();
    const NativeScope scope(*page);
    const JSValueRef value = page->wrappers().touch(function, exception);
    return value ? value : JSValueMakeUndefined(ctx);
}

bool hasMembers(const NativeClass& nativeClass, IJSMemberList& members)
{
    if (static_cast<std::size_t>(members.Count()) != nativeClass.members.size())
        return false;
    for (std::int32_t i = 0; i < members.Count(); ++i) {
        if (nativeClass.members[static_cast<std::size_t>(i)]->id != members.Id(i))
            return false;
    }
    return true;
}

} // namespace

void Wrappers::setRoot(JSObjectRef root)
{
    m_root = root;
    JSValueProtect(m_page.ctx(), root);
}

JSObjectRef Wrappers::makeRootGetter(const QString& shortName)
{
    JSContextRef ctx = m_page.ctx();
    JSObjectRef getter = JSObjectMakeFunctionWithCallback(ctx, Text(shortName), touchRoot);
    JSValueProtect(ctx, getter);
    m_rootGetters.emplace(getter, shortName);
    return getter;
}

JSValueRef Wrappers::touch(JSObjectRef getter, JSValueRef* exception)
{
    const auto found = m_rootGetters.find(getter);
    if (found == m_rootGetters.end())
        return nullptr;
    const QString shortName = found->second;
    if (const auto made = m_rootObjects.find(shortName); made != m_rootObjects.end())
        return made->second;

    vexlite::BoundObject bound = m_page.core().bindObject(m_page.env(), shortName);
    const QString name = QStringLiteral("NovaExtension.") + shortName;
    const KResult status = bound.status;
    JSObjectRef script = nullptr;
    if (status == KR_OK && bound.object && bound.members)
        script = make(std::move(bound), name, true);
    if (!script) {
        *exception = m_page.prelude().makeError(
            3, QStringLiteral("%1 can not be bound: %2").arg(name, hex(status ? status : KR_NOT_AVAILABLE)));
        return nullptr;
    }
    m_rootObjects.emplace(shortName, script);
    const Prelude& prelude = m_page.prelude();
    // Fails when the page has frozen NovaExtension; the getter is called each time then.
    prelude.call(prelude.bindRoot, nullptr, m_root, makeString(m_page.ctx(), shortName), script);
    return script;
}

JSObjectRef Wrappers::wrap(IJSExtentionObject* object, const QString& name, KResult& status)
{
    if (const auto found = m_wrappers.find(object); found != m_wrappers.end()) {
        if (found->second->isAlive())
            return found->second->script;
    }
    vexlite::BoundObject bound = m_page.core().bindSubObject(m_page.env(), object);
    status = bound.status;
    if (status != KR_OK || !bound.object || !bound.members)
        return nullptr;
    const QString known = bound.name;
    return make(std::move(bound), known.isEmpty() ? name : known, false);
}

JSObjectRef Wrappers::make(vexlite::BoundObject bound, const QString& name, bool stays)
{
    JSContextRef ctx = m_page.ctx();
    IJSExtentionObject* object = bound.object.get();
    if (const auto found = m_wrappers.find(object); found != m_wrappers.end()) {
        Wrapper& old = *found->second;
        if (old.isAlive()) {
            // It has a wrapper under another name.
            if (stays && old.weak) {
                JSValueProtect(ctx, old.script);
                JSWeakRelease(m_page.group(), old.weak);
                old.weak = nullptr;
            }
            return old.script;
        }
        const std::unique_ptr<Wrapper> dead = std::move(found->second);
        m_wrappers.erase(found);
        forget(*dead);
    }
    const NativeClass* nativeClass = findClass(object, *bound.members.get(), name);
    const JSValueRef made = nativeClass
        ? JSObjectCallAsFunction(ctx, nativeClass->factory, nullptr, 0, nullptr, nullptr)
        : nullptr;
    if (!made)
        return nullptr;
    JSObjectRef script = asObject(made);
    JSWeakRef weak = nullptr;
    if (stays)
        JSValueProtect(ctx, script);
    else
        weak = JSWeakCreate(m_page.group(), script);
    auto wrapper = std::make_unique<Wrapper>(Wrapper { bound.object.release(), nativeClass, script, weak });
    m_byScript.insert(script, wrapper.get());
    m_wrappers[object] = std::move(wrapper);
    m_page.core().addLiveObjects(1);
    return script;
}

const NativeClass* Wrappers::findClass(
    IJSExtentionObject* object, IJSMemberList& members, const QString& name)
{
    const std::int64_t typeId = object->GetTypeId();
    for (const auto& known : m_classes) {
        if (known->typeId == typeId && hasMembers(*known, members))
            return known.get();
    }
    auto made = makeClass(m_page, name, typeId, members);
    if (!made)
        return nullptr;
    m_classes.push_back(std::move(made));
    return m_classes.back().get();
}

bool Wrappers::isNative(JSObjectRef function) const
{
    return isMemberFunction(function) || m_rootGetters.count(function);
}

// Releases what the wrapper held. There may be a new wrapper at its address by now.
void Wrappers::forget(Wrapper& wrapper)
{
    if (m_byScript.find(wrapper.script) == &wrapper)
        m_byScript.erase(wrapper.script);
    if (wrapper.weak)
        JSWeakRelease(m_page.group(), wrapper.weak);
    else
        JSValueUnprotect(m_page.ctx(), wrapper.script);
    if (vexlite::Core* core = vexlite::Core::instance())
        core->addLiveObjects(-1);
    wrapper.object->Release();
}

void Wrappers::sweep()
{
    std::vector<std::unique_ptr<Wrapper>> dead;
    for (auto it = m_wrappers.begin(); it != m_wrappers.end();) {
        if (it->second->isAlive()) {
            ++it;
        } else {
            dead.push_back(std::move(it->second));
            it = m_wrappers.erase(it);
        }
    }
    const std::shared_ptr<PageState> keep = m_page.shared_from_this();
    for (const auto& wrapper : dead)
        forget(*wrapper);
}

void Wrappers::clear()
{
    JSContextRef ctx = m_page.ctx();
    for (const auto& [getter, name] : m_rootGetters)
        JSValueUnprotect(ctx, getter);
    m_rootGetters.clear();
    m_rootObjects.clear();
    if (m_root)
        JSValueUnprotect(ctx, m_root);
    m_root = nullptr;
    for (const auto& nativeClass : m_classes)
        dropClass(m_page, *nativeClass);
    const auto wrappers = std::move(m_wrappers);
    m_wrappers.clear();
    for (const auto& [object, wrapper] : wrappers)
        forget(*wrapper);
    m_classes.clear();
}

} // namespace engine::jsc
