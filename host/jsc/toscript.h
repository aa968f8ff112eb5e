// ToScript: converts native values to script values.
#pragma once

#include "host/jsc/api.h"
#include "host/jsc/members.h"
#include "vexlite/jsonvalue.h"

#include <functional>

namespace engine::jsc {

class PageState;

/// Converts the results of one call. Runs no script of the page and does not depend on anything that the page
/// can replace. Keep the results on the stack, where the collector finds them. [GUI thread]
class ToScript {
public:
    static constexpr std::size_t maximumValues = 16'000'000;
    static constexpr std::size_t maximumBytes = std::size_t { 1 } << 30;

    /// `member` is the called one; classes of objects that it returns are named after it.
    explicit ToScript(PageState& page, const NativeMember* member = nullptr);

    /// Null for a value that can not be converted, such as MV_ERROR; thrown() must be thrown then.
    JSValueRef value(const MVARIANT& value) { return convert(value, 0); }
    /// The data of a result that is exactly {data, success: true}; null, with nothing thrown, for any other
    /// result.
    JSValueRef envelopedData(const MVARIANT& value);
    /// An array of `count` values.
    JSValueRef list(std::size_t count, const std::function<const MVARIANT&(std::size_t)>& at)
    {
        return makeList(count, at, 0);
    }
    /// The Error for the content of an exception slot, or for a rejection. Never null.
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
    JSValueRef bytes(const IJSBytes& source);
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
