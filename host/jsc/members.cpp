#include "host/jsc/members.h"

#include "host/jsc/fromscript.h"
#include "host/jsc/pagestate.h"
#include "host/jsc/toscript.h"

#include <new>
#include <optional>

namespace engine::jsc {

namespace {

// Of all pages of the process: a function's address is looked up on every call.
constinit PointerMap<OpaqueJSValue, NativeMember> memberFunctions;

// The arguments of one call, on the stack for as many as members usually have.
class ArgumentList {
public:
    ArgumentList() = default;
    ~ArgumentList()
    {
        for (std::size_t i = 0; i < m_count; ++i)
            slot(i)->~KJSVariant();
    }
    ArgumentList(const ArgumentList&) = delete;
    ArgumentList& operator=(const ArgumentList&) = delete;

    bool read(FromScript& convert, const JSValueRef values[], std::size_t count)
    {
        if (count > inlineCount)
            m_more.reset(new Slot[count]);
        while (m_count < count) {
            auto* made = new (&slots()[m_count]) KJSVariant;
            ++m_count;
            if (!convert.read(values[m_count - 1], *made))
                return false;
        }
        return true;
    }
    /// How many were begun: after a failure the number of the argument that failed, counted from 1.
    std::size_t size() const { return m_count; }
    JSApiArguments view() { return { m_count ? slot(0) : nullptr, m_count }; }

private:
    static constexpr std::size_t inlineCount = 8;
    struct alignas(KJSVariant) Slot {
        unsigned char bytes[sizeof(KJSVariant)];
    };
    Slot* slots() { return m_more ? m_more.get() : m_inline; }
    KJSVariant* slot(std::size_t index)
    {
        return std::launder(reinterpret_cast<KJSVariant*>(&slots()[index]));
    }

    Slot m_inline[inlineCount];
    std::unique_ptr<Slot[]> m_more;
    std::size_t m_count = 0;
};

constexpr std::size_t maximumArguments = 255;

JSValueRef callMember(JSContextRef ctx, JSObjectRef function, JSObjectRef thisObject, std::size_t count,
    const JSValueRef values[], JSValueRef* exception)
{
    const NativeMember* member = memberFunctions.find(function);
    if (!member) {
        const JSValueRef text = makeString(ctx, QStringLiteral("the page has been closed"));
        *exception = JSObjectMakeError(ctx, 1, &text, nullptr);
        return JSValueMakeUndefined(ctx);
    }
    PageState& page = *member->page;
    const Wrapper* wrapper = page.wrappers().find(thisObject);
    if (!wrapper || wrapper->nativeClass != member->nativeClass) [[unlikely]] {
        *exception = page.prelude().makeTypeError(QStringLiteral("Illegal invocation"));
        return JSValueMakeUndefined(ctx);
    }
    if (!page.isLive()) [[unlikely]] {
        *exception = page.prelude().makeError(3, QStringLiteral("the page has been closed"));
        return JSValueMakeUndefined(ctx);
    }
    if (!page.engine().canNest()) [[unlikely]] {
        *exception = page.prelude().makeRangeError(QStringLiteral("Maximum call stack size exceeded."));
        return JSValueMakeUndefined(ctx);
    }

    IJSExtentionObject* object = wrapper->object;
    const NativeScope scope(page);
    std::optional<Lock> lock;
    ArgumentList arguments;
    if (count && member->access == JSAccess::Method) {
        if (count > maximumArguments) {
            *exception = page.prelude().makeError(1, QStringLiteral("more than 255 arguments"));
            return JSValueMakeUndefined(ctx);
        }
        lock.emplace(ctx);
        FromScript convert(page);
        if (!arguments.read(convert, values, count)) {
            *exception = page.prelude().makeError(
                1, QStringLiteral("argument %1: %2").arg(arguments.size()).arg(convert.problem()));
            return JSValueMakeUndefined(ctx);
        }
    }

    JSApiArguments view = arguments.view();
    KJSVariant result;
    KJSVariant failure;
    page.core().call(object, page.env(), member->id, member->access, view, result, failure);
    if (failure.isEmpty() && result.isEmpty())
        return JSValueMakeUndefined(ctx);
    ToScript convert(page, member);
    if (!failure.isEmpty()) {
        *exception = convert.error(failure);
        return JSValueMakeUndefined(ctx);
    }
    if (const JSValueRef answer = convert.value(result.raw()))
        return answer;
    *exception = convert.thrown();
    return JSValueMakeUndefined(ctx);
}

} // namespace

std::unique_ptr<NativeClass> makeClass(
    PageState& page, const QString& tag, std::int64_t typeId, IJSMemberList& members)
{
    JSContextRef ctx = page.ctx();
    const Prelude& prelude = page.prelude();
    auto made = std::make_unique<NativeClass>();
    made->tag = tag;
    made->typeId = typeId;
    const JSValueRef pair = prelude.call(prelude.makeClass, nullptr, makeString(ctx, tag));
    if (!pair)
        return nullptr;
    made->prototype = asObject(JSObjectGetPropertyAtIndex(ctx, asObject(pair), 0, nullptr));
    made->factory = asObject(JSObjectGetPropertyAtIndex(ctx, asObject(pair), 1, nullptr));
    JSValueProtect(ctx, made->prototype);
    JSValueProtect(ctx, made->factory);

    for (std::int32_t i = 0; i < members.Count(); ++i) {
        const QString name = QString::fromUtf16(members.Name(i));
        const bool isMethod = members.Kind(i) == 0;
        JSObjectRef function = JSObjectMakeFunctionWithCallback(ctx, Text(name), callMember);
        JSValueProtect(ctx, function);
        made->members.push_back(std::make_unique<NativeMember>(NativeMember { &page, made.get(), name,
            members.Id(i), isMethod ? JSAccess::Method : JSAccess::PropertyGet, function }));
        memberFunctions.insert(function, made->members.back().get());
        prelude.call(isMethod ? prelude.addMethod : prelude.addGetter, nullptr, made->prototype,
            makeString(ctx, name), function);
    }
    return made;
}

void dropClass(PageState& page, const NativeClass& nativeClass)
{
    JSValueUnprotect(page.ctx(), nativeClass.prototype);
    JSValueUnprotect(page.ctx(), nativeClass.factory);
    for (const auto& member : nativeClass.members) {
        memberFunctions.erase(member->function);
        JSValueUnprotect(page.ctx(), member->function);
    }
}

bool isMemberFunction(JSObjectRef function)
{
    return memberFunctions.find(function);
}

} // namespace engine::jsc
