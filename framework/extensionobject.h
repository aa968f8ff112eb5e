// The base of every object that script sees: reference count, interface query, member table, dispatch.
//
// A class derives from KJCExtendJsObj<itself>, names itself in ScriptName and declares its members:
//
//     class KJsApiLog final : public KJCExtendJsObj<KJsApiLog> {
//     public:
//         static constexpr char16_t ScriptName[] = u"NovaExtension.Log";
//         static const jsapi::MemberList& members();
//         ...
//     };
#pragma once

#include "framework/handle.h"
#include "framework/members.h"
#include "framework/objectbase.h"

template <> inline bool supportsInterface<IJSExtentionObject>(const KIID& iid)
{
    return iid == IID_IJSExtentionObject;
}

/// What a class has once in the process: its name, type id and member table.
class ExtensionClass {
public:
    explicit ExtensionClass(const char16_t* scriptName, const jsapi::MemberList& (*members)())
        : m_name(QString::fromUtf16(scriptName))
        , m_declared(members)
    {
    }
    /// Takes the class back from the JS core where it was announced, so that the module can be unloaded.
    ~ExtensionClass();
    ExtensionClass(const ExtensionClass&) = delete;
    ExtensionClass& operator=(const ExtensionClass&) = delete;

    std::int64_t typeId();
    KResult publish(const JSContextEnv& context, IJSMemberList** out);
    /// A new object of the class for a page, made by the JS core, to which the class is announced before the
    /// first one; null when it makes none. `options` may be null.
    KRef<IJSExtentionObject> makeObject(
        const JSContextEnv& page, IJSObjectFactory::Creator creator, IJSONValue* options);

    /// Finds a member and reports the call that follows to the trace hook. Null when there is no such member.
    const JSMemberEntry* enter(
        IVEXJSCore& core, const JSContextEnv& context, std::int32_t id, JSAccess access) const
    {
        const JSMemberEntry* entry = core.Registry()->FindMember(m_table, id, access);
        if (IJSTraceHook* hook = core.TraceHook(); hook && entry)
            hook->CallNotice(m_name, context, entry);
        return entry;
    }

private:
    void fill();

    QString m_name;
    const jsapi::MemberList& (*m_declared)();
    JSMemberTable m_table;
    std::int32_t m_typeId = -1;
    IJSObjectFactory* m_announcedTo = nullptr;
};

/// Reports to the JS core, where there still is one, that a call has ended.
inline void completeCall(const JSContextEnv& context, KJSVariant& value, std::int64_t extra)
{
    if (IVEXJSCore* core = vexlite::GetVEXJSCore())
        core->Registry()->CallCompleted(context, value, extra);
}

template <typename T> class KJCExtendJsObj : public KJCExtentionObjBase {
public:
    std::int64_t GetTypeId() override { return extensionClass().typeId(); }

    KResult InvokePropertyGet(const JSContextEnv& context, std::int32_t id, std::int64_t extra,
        KJSVariant& value, KJSVariant& exception) override
    {
        const KResult status = dispatchProperty(context, id, JSAccess::PropertyGet, value, exception);
        completeCall(context, value, extra);
        return status;
    }

    KResult InvokePropertyPut(
        const JSContextEnv& context, std::int32_t id, KJSVariant& value, KJSVariant& exception) override
    {
        return dispatchProperty(context, id, JSAccess::PropertyPut, value, exception);
    }

    KResult InvokeMethod(const JSContextEnv& context, std::int32_t id, JSApiArguments& arguments,
        KJSVariant& result, std::int64_t completion, KJSVariant& exception) override
    {
        IVEXJSCore* core = vexlite::GetVEXJSCore();
        if (!core)
            return KR_NOT_AVAILABLE;
        const JSMemberEntry* entry = extensionClass().enter(*core, context, id, JSAccess::Method);
        const KResult status = entry
            ? reinterpret_cast<JSMethodInvoke>(entry->invoke)(this, context, arguments, result, exception)
            : KR_NOT_AVAILABLE;
        completeCall(context, result, completion);
        return status;
    }

    KResult GetMemberTable(const JSContextEnv& context, IJSMemberList** out) override
    {
        return extensionClass().publish(context, out);
    }

    /// A new object of this class, which another class hands out: see framework/handle.h.
    static KRef<IJSExtentionObject> makeFor(const JSContextEnv& page, IJSONValue* options)
    {
        const auto creator = [](IJSCreatable** creatable) -> IJSExtentionObject* {
            auto* object = new T;
            if constexpr (std::is_base_of_v<IJSCreatable, T>)
                *creatable = object;
            else
                *creatable = nullptr;
            return object;
        };
        return extensionClass().makeObject(page, creator, options);
    }

private:
    static ExtensionClass& extensionClass()
    {
        static ExtensionClass shared(T::ScriptName, &T::members);
        return shared;
    }

    KResult dispatchProperty(const JSContextEnv& context, std::int32_t id, JSAccess access, KJSVariant& value,
        KJSVariant& exception)
    {
        IVEXJSCore* core = vexlite::GetVEXJSCore();
        if (!core)
            return KR_NOT_AVAILABLE;
        const JSMemberEntry* entry = extensionClass().enter(*core, context, id, access);
        return entry ? reinterpret_cast<JSPropertyInvoke>(entry->invoke)(this, context, value, exception)
                     : KR_NOT_AVAILABLE;
    }
};
