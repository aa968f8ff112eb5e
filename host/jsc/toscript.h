// ToScript: native values on their way to script.
#pragma once

#include "host/jsc/api.h"
#include "host/jsc/members.h"
#include "vexlite/jsonvalue.h"

#include <functional>

namespace engine::jsc {

class PageState;

/// Converts the answers of one call. Runs no script of the page, and nothing that the page has replaced
/// changes what it makes. What it makes has to stay on the stack until it is handed on, where the collector
/// looks for it. [GUI thread]
class ToScript {
public:
    static constexpr std::size_t maximumValues = 16'000'000;

    /// `member` is the one that answers; it gives its name to the classes of objects that it hands out.
    explicit ToScript(PageState& page, const NativeMember* member = nullptr);

    /// Null for what has no script form, an MV_ERROR among them; thrown() is to be thrown then.
    JSValueRef value(const MVARIANT& value) { return convert(value, 0); }
    /// The data of an answer that is just {data, success: true}; null with nothing thrown for every other
    /// answer.
    JSValueRef envelopedData(const MVARIANT& value);
    /// An array of `count` values.
    JSValueRef list(std::size_t count, const std::function<const MVARIANT&(std::size_t)>& at)
    {
        return makeList(count, at, 0);
    }
    /// The Error for what a member left in its exception slot, or for a rejection. Never null.
    JSValueRef error(const KJSVariant& failure);
    JSValueRef thrown() const { return m_thrown; }

private:
    template <typename At> JSValueRef makeList(std::size_t count, const At& at, int depth);
    JSValueRef convert(const MVARIANT& value, int depth);
    JSValueRef text(const char16_t* units, std::size_t count);
    JSValueRef int64(std::int64_t value);
    JSValueRef interface(IUnknown* object, int depth);
    JSValueRef object(const IJSONValue& source, int depth);
    JSValueRef wideObject(const IJSONValue& source, int depth);
    JSValueRef array(const IJSArray& source, int depth);
    JSValueRef wrapper(IJSExtentionObject* object);
    JSValueRef fail(const QString& problem);
    bool enter(int depth);

    PageState& m_page;
    JSGlobalContextRef m_ctx;
    const NativeMember* m_member;
    std::size_t m_values = 0;
    JSValueRef m_thrown = nullptr;
};

} // namespace engine::jsc
