// FromScript: converts script values to native values.
//
// Accepted: undefined, null, booleans, numbers, strings, 64-bit BigInts, functions, arrays, objects, bytes, and
// wrappers of native objects. Bytes are an ArrayBuffer, a typed array or a DataView, and are copied. Objects, including those of the page's own classes, are plain data: their own
// enumerable properties with string keys, each read once. Holes of an array become undefined; its other
// properties are dropped.
//
// Refused, with a message that names the place: symbols; proxies; built-in objects with internal data (Map,
// Date, Error, Promise and so on, and what inherits from them); bytes of a detached or a shared buffer; cycles; getters that throw; a
// nesting beyond vexlite::maximumDepth; and more data than the limits below.
#pragma once

#include "host/jsc/api.h"
#include "vexlite/jsonvalue.h"

#include <optional>
#include <unordered_set>

namespace engine::jsc {

class PageState;

/// Converts the arguments of one call; the limits are for all of them together. [GUI thread]
class FromScript {
public:
    static constexpr std::size_t maximumValues = 1'000'000;
    static constexpr std::size_t maximumTextBytes = 256u << 20;
    static constexpr std::size_t maximumBytes = 256u << 20;

    explicit FromScript(PageState& page);

    /// False on an error, with `out` undefined and the reason in problem(). Getters of the page may run.
    bool read(JSValueRef value, KJSVariant& out);
    /// The error for the author of the page, for example "a symbol can not be passed (at options.list[3])".
    QString problem() const;

private:
    bool readValue(JSValueRef value, KJSVariant& out, int depth);
    bool readNumber(JSValueRef value, KJSVariant& out);
    bool readBigInt(JSValueRef value, KJSVariant& out);
    bool readString(JSValueRef value, KJSVariant& out);
    bool readObjectValue(JSObjectRef object, KJSVariant& out, int depth);
    bool readBytes(JSObjectRef object, KJSVariant& out);
    bool readArray(JSObjectRef array, KJSVariant& out, int depth);
    bool readProperties(JSObjectRef object, KJSVariant& out, int depth);
    bool isPlainData(JSObjectRef object);
    bool enter(JSObjectRef object, int depth);
    void leave(JSObjectRef object, int depth);
    bool refuse(const QString& problem);
    bool refuseThrown(JSValueRef exception);
    void prependPath(const QString& step);
    bool takeText(std::size_t units);

    PageState& m_page;
    JSContextRef m_ctx;
    std::size_t m_values = 0;
    std::size_t m_textBytes = 0;
    std::size_t m_bytes = 0;
    QString m_problem;
    QString m_path;
    bool m_pathIsCut = false;
    JSObjectRef m_near[8]; ///< the outermost objects being read, to detect cycles; deeper ones are in m_deep
    std::optional<std::unordered_set<JSObjectRef>> m_deep;
};

} // namespace engine::jsc
