// Wrappers: the script objects that represent native ones, their classes, and the NovaExtension object.
#pragma once

#include "host/jsc/api.h"
#include "host/jsc/members.h"
#include "host/jsc/pointermap.h"
#include "host/vexlite/core.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace engine::jsc {

class PageState;

/// A native object and the script object that represents it. Holds one reference to the native one.
struct Wrapper {
    IJSExtentionObject* object;
    const NativeClass* nativeClass;
    JSObjectRef script;
    JSWeakRef weak; ///< null for an object of NovaExtension, which lives as long as the page

    bool isAlive() const { return !weak || JSWeakGetObject(weak); }
};

/// The wrappers of one page. A wrapper is an ordinary script object, known by its address: property look-ups
/// are as fast as on any other, and page script finds no internals in it. [GUI thread]
class Wrappers {
public:
    explicit Wrappers(PageState& page)
        : m_page(page)
    {
    }

    /// Sets the NovaExtension object, which is a root until clear().
    void setRoot(JSObjectRef root);
    /// Makes the getter that binds an object of NovaExtension at its first access.
    JSObjectRef makeRootGetter(const QString& shortName);
    /// Binds that object, or returns its existing wrapper. Null with `exception` set on failure.
    JSValueRef touch(JSObjectRef getter, JSValueRef* exception);
    /// The wrapper of an object that a call returned, the same one as long as script holds it. `name` is the
    /// script name for its class if that is new and the core knows none. Null, with the reason in `status`, when it can not be bound.
    JSObjectRef wrap(IJSExtentionObject* object, const QString& name, KResult& status);

    /// The wrapper record of a script object, or null.
    Wrapper* find(JSObjectRef script) const
    {
        Wrapper* wrapper = m_byScript.find(script);
        return wrapper && wrapper->isAlive() ? wrapper : nullptr;
    }
    /// Whether this is a native function of this engine.
    bool isNative(JSObjectRef function) const;

    /// Releases the objects whose wrappers were collected.
    void sweep();
    /// Releases everything.
    void clear();

private:
    JSObjectRef make(vexlite::BoundObject bound, const QString& name, bool stays);
    const NativeClass* findClass(IJSExtentionObject* object, IJSMemberList& members, const QString& name);
    void forget(Wrapper& wrapper);

    PageState& m_page;
    JSObjectRef m_root = nullptr;
    std::unordered_map<JSObjectRef, QString> m_rootGetters;
    std::unordered_map<QString, JSObjectRef> m_rootObjects;
    std::vector<std::unique_ptr<NativeClass>> m_classes;
    PointerMap<OpaqueJSValue, Wrapper> m_byScript;
    std::unordered_map<IJSExtentionObject*, std::unique_ptr<Wrapper>> m_wrappers;
};

} // namespace engine::jsc
