// What the JS core asks of an extension object, and the member tables that it fills for them.
#pragma once

#include "vexlite/jsvariant.h"

#include <map>

class IJSExtentionObject;
class IJSMemberList;

inline constexpr KIID IID_IJSExtentionObject { 0x42710844, 0x66D0, 0x463E,
    { 0x93, 0xF0, 0xC1, 0xC2, 0x82, 0xFD, 0x98, 0x6D } };
inline constexpr KIID IID_IJSSubObject { 0x8D3C2F60, 0x94B1, 0x4E0A,
    { 0xA7, 0x1E, 0x0B, 0x3E, 0x58, 0xC9, 0x62, 0x4D } };

/// How a member is looked up.
enum class JSAccess : std::int32_t { Method = 0, PropertyGet = 1, PropertyPut = 2 };

/// The function behind a method: returns 0, or 1 after it has filled `exception`. Throws nothing. [GUI
/// thread]
using JSMethodInvoke = KResult (*)(IJSExtentionObject* self, const JSContextEnv& context,
    JSApiArguments& arguments, KJSVariant& result, KJSVariant& exception);
/// The function behind a read-only property.
using JSPropertyInvoke = KResult (*)(
    IJSExtentionObject* self, const JSContextEnv& context, KJSVariant& value, KJSVariant& exception);
/// Either of the two, by the member's kind.
using JSMemberInvoke = void (*)();

/// One parameter of a member, passed by value.
struct JSParameter {
    std::uint64_t type;
    const char16_t* name;   ///< null in the objects' own tables
    std::uint64_t reserved; ///< 0
};
static_assert(sizeof(JSParameter) == 24);

/// An entry of a member table. The JS core derives its own record from this one; everything but `invoke` is
/// its own business.
struct JSMemberEntry {
    JSMemberInvoke invoke = nullptr;
    virtual ~JSMemberEntry() = default;
};

/// A class's members by id. The module constructs it empty, the JS core fills it.
using JSMemberTable = std::map<std::int32_t, std::shared_ptr<const JSMemberEntry>>;

/// Every object that script sees. 15 slots: the three of IUnknown, the two of the destructor, then these.
/// All operations [GUI thread] but AddRef and Release; none throws.
class IJSExtentionObject : public IUnknown {
public:
    virtual ~IJSExtentionObject() = default;

    /// The class's type id, asked of the JS core once; 0x80000008 without a JS core.
    virtual std::int64_t GetTypeId() = 0;
    /// Reads a property into `value`, or fills `exception` and returns 1. `extra` goes to CallCompleted.
    virtual KResult InvokePropertyGet(const JSContextEnv& context, std::int32_t id, std::int64_t extra,
        KJSVariant& value, KJSVariant& exception) = 0;
    virtual KResult InvokePropertyPut(
        const JSContextEnv& context, std::int32_t id, KJSVariant& value, KJSVariant& exception) = 0;
    /// Calls a method; `completion` goes to CallCompleted. Only ids of the published table are allowed.
    virtual KResult InvokeMethod(const JSContextEnv& context, std::int32_t id, JSApiArguments& arguments,
        KJSVariant& result, std::int64_t completion, KJSVariant& exception) = 0;
    /// Publishes the members that `context` may see; `out` receives them with one reference for the caller.
    virtual KResult GetMemberTable(const JSContextEnv& context, IJSMemberList** out) = 0;
    /// A value of the JS core, kept for it.
    virtual void* GetHostPointer() = 0;
    virtual void Reserved() = 0;
    virtual void SetHostPointer(void* value) = 0;
    /// 3 shared by all pages, 2 or 1 of one page, 0 handed out by another object. `out` may be null.
    virtual void GetInstanceMode(std::uint32_t* out) = 0;
    virtual void SetInstanceMode(std::uint32_t mode) = 0;
};

/// What a handler returns when it hands out another extension object: that object, and the token that the JS
/// core's registry gave for it. The wrapper holds one reference to the object.
class IJSSubObject : public IUnknown {
public:
    /// The object, borrowed for as long as the wrapper lives.
    virtual IJSExtentionObject* Object() const = 0;
    virtual std::int64_t Token() const = 0;
};
