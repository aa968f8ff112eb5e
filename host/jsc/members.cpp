#include "host/jsc/members.h"

#include "host/jsc/fromscript.h"
#include "host/jsc/methods.h"
#include "host/jsc/pagestate.h"
#include "host/jsc/toscript.h"

#include <new>
#include <optional>

namespace engine::jsc {

namespace {

// Of all pages: every call looks up the address of its function.
constinit PointerMap<OpaqueJSValue, NativeMember> memberFunctions;

// The arguments of one call, on the stack up to the usual number.
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
    /// The number of arguments read; after an error that of the wrong one, counted from 1.
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

struct Answer {
    JSValueRef value = nullptr; ///< null when the call throws
    JSValueRef thrown = nullptr;
    bool isEnveloped = false;
};

Answer thrown(JSValueRef error)
{
    return { nullptr, error, false };
}

Answer makeAnswer(PageState& page, const NativeMember& member, const KJSVariant& result)
{
    if (result.isEmpty())
        return { JSValueMakeUndefined(page.ctx()) };
    ToScript convert(page, &member);
    if (member.access == JSAccess::Method) {
        if (const JSValueRef data = convert.envelopedData(result.raw()))
            return { data, nullptr, true };
        if (convert.thrown())
            return thrown(convert.thrown());
    }
    const JSValueRef value = convert.value(result.raw());
    return { value, convert.thrown() };
}

// Inlined since every call runs it, which the compiler does not do by itself.
[[gnu::always_inline]] inline Answer perform(PageState& page, const NativeMember& member, JSObjectRef self,
    const JSValueRef values[], std::size_t count)
{
    const Wrapper* wrapper = page.wrappers().find(self);
    if (!wrapper || wrapper->nativeClass != member.nativeClass) [[unlikely]]
        return thrown(page.prelude().makeTypeError(QStringLiteral("Illegal invocation")));
    if (!page.isLive()) [[unlikely]]
        return thrown(page.prelude().makeError(3, QStringLiteral("the page has been closed")));
    if (!page.engine().canNest()) [[unlikely]]
        return thrown(page.prelude().makeRangeError(QStringLiteral("Maximum call stack size exceeded.")));

    IJSExtentionObject* object = wrapper->object;
    const NativeScope scope(page, &member);
    std::optional<Lock> lock;
    ArgumentList arguments;
    if (count && member.access == JSAccess::Method) {
        if (count > maximumArguments)
            return thrown(page.prelude().makeError(1, QStringLiteral("more than 255 arguments")));
        lock.emplace(page.ctx());
        FromScript convert(page);
        if (!arguments.read(convert, values, count))
            return thrown(page.prelude().makeError(
                1, QStringLiteral("argument %1: %2").arg(arguments.size()).arg(convert.problem())));
    }

    JSApiArguments view = arguments.view();
    KJSVariant result;
    KJSVariant failure;
    page.core().call(object, page.env(), member.id, member.access, view, result, failure);
    if (!failure.isEmpty())
        return thrown(ToScript(page, &member).error(failure));
    return makeAnswer(page, member, result);
}

JSValueRef callMember(JSContextRef ctx, JSObjectRef function, JSObjectRef thisObject, std::size_t count,
    const JSValueRef values[], JSValueRef* exception)
{
    const NativeMember* member = memberFunctions.find(function);
    if (!member) [[unlikely]] {
        const JSValueRef text = makeString(ctx, QStringLiteral("the page has been closed"));
        *exception = JSObjectMakeError(ctx, 1, &text, nullptr);
        return JSValueMakeUndefined(ctx);
    }
    PageState& page = *member->page;
    const Answer answer = perform(page, *member, thisObject, values, count);
    if (!answer.value) {
        noteRefusal(page, member->fullName(), answer.thrown);
        *exception = answer.thrown;
        return JSValueMakeUndefined(ctx);
    }
    if (member->access == JSAccess::PropertyGet && JSValueIsObject(ctx, answer.value)
        && page.wrappers().find(asObject(answer.value))) {
        const Prelude& prelude = page.prelude();
        prelude.call(prelude.keepValue, nullptr, JSValueRef { thisObject }, makeString(ctx, member->name),
            answer.value);
    }
    // Last: destroying an object of the call may have called members.
    page.prelude().signals->isEnveloped = answer.isEnveloped;
    return answer.value;
}

} // namespace

QString NativeMember::fullName() const
{
    return nativeClass->tag + QLatin1Char('.') + name;
}

void noteRefusal(PageState& page, const QString& member, JSValueRef error)
{
    const Prelude& prelude = page.prelude();
    prelude.call(prelude.noteRefusal, nullptr, error, makeString(page.ctx(), member));
}

std::unique_ptr<NativeClass> makeClass(
    PageState& page, const QString& tag, std::int64_t typeId, IJSMemberList& members)
{
    JSContextRef ctx = page.ctx();
    const Prelude& prelude = page.prelude();
    auto made = std::make_unique<NativeClass>();
    made->tag = tag;
    made->typeId = typeId;
    std::vector<MethodSource> methods;
    for (std::int32_t i = 0; i < members.Count(); ++i) {
        const QString name = QString::fromUtf16(members.Name(i));
        const bool isMethod = members.Kind(i) == 0;
        JSObjectRef function = JSObjectMakeFunctionWithCallback(ctx, Text(name), callMember);
        JSValueProtect(ctx, function);
        made->members.push_back(std::make_unique<NativeMember>(NativeMember { &page, made.get(), name,
            members.Id(i), isMethod ? JSAccess::Method : JSAccess::PropertyGet, function }));
        memberFunctions.insert(function, made->members.back().get());
        if (isMethod)
            methods.push_back({ name, function });
    }

    made->prototype = makeMethods(page, tag, methods);
    const JSValueRef factory = made->prototype
        ? prelude.call(prelude.makeClass, nullptr, makeString(ctx, tag), JSValueRef { made->prototype })
        : nullptr;
    made->factory = asObject(factory);
    if (!factory) {
        dropClass(page, *made);
        return nullptr;
    }
    JSValueProtect(ctx, made->prototype);
    JSValueProtect(ctx, made->factory);
    for (const auto& member : made->members) {
        if (member->access == JSAccess::PropertyGet)
            prelude.call(prelude.addGetter, nullptr, made->prototype, makeString(ctx, member->name),
                JSValueRef { member->function });
    }
    return made;
}

void dropClass(PageState& page, const NativeClass& nativeClass)
{
    if (nativeClass.factory) {
        JSValueUnprotect(page.ctx(), nativeClass.prototype);
        JSValueUnprotect(page.ctx(), nativeClass.factory);
    }
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
