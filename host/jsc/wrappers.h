// Wrappers: the script objects that stand for native ones, their classes, and the NovaExtension object.
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

/// A native object of the page and the script object that stands for it. Holds one reference to the first.
struct Wrapper {
    IJSExtentionObject* object;
    const NativeClass* nativeClass;
    JSObjectRef script;
    JSWeakRef weak; ///< null for an object of NovaExtension, which stays as long as the page

    bool isAlive() const { return !weak || JSWeakGetObject(weak); }
};

/// The wrappers of one page. A wrapper is an ordinary script object, known by its address: property look-ups
/// on it are as fast as on every other, and page script finds nothing in it to take hold of. [GUI thread]
class Wrappers {
public:
    explicit Wrappers(PageState& page)
        : m_page(page)
    {
    }

    /// The NovaExtension object; kept until clear().
    void setRoot(JSObjectRef root);
    /// The getter behind which an object of NovaExtension waits for its first touch.
    JSObjectRef makeRootGetter(const QString& shortName);
    /// Binds that object, or answers the wrapper that there is. Null with `exception` set on failure.
    JSValueRef touch(JSObjectRef getter, JSValueRef* exception);
    /// The wrapper of an object that a call handed out, the same one while script holds it. `name` is the
    /// script name of its class should this be its first. Null when it can not be bound; `status` says why
    /// then.
    JSObjectRef wrap(IJSExtentionObject* object, const QString& name, KResult& status);

    /// The wrapper behind a script object, or null.
    Wrapper* find(JSObjectRef script) const
    {
        Wrapper* wrapper = m_byScript.find(script);
        return wrapper && wrapper->isAlive() ? wrapper : nullptr;
    }
    /// True for functions of this engine.
    bool isNative(JSObjectRef function) const;

    /// Gives back the objects whose wrappers have been collected.
    void sweep();
    /// Gives everything back.
    void clear();

private:
    JSObjectRef make(vexlite::BoundObject bound, const QString& name, bool stays);
    const NativeClass* classOf(IJSExtentionObject* object, IJSMemberList& members, const QString& name);
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
