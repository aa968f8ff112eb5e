// FromScript: script values on their way to native code.
//
// What is taken: undefined, null, booleans, numbers, strings of any content, BigInts of 64 bits, functions,
// arrays, objects, and the wrappers of native objects. Objects, those of the page's own classes included, are
// taken as plain data: their own enumerable properties with string keys, each read once. An array's holes are
// undefined, and what else it has as properties is dropped.
//
// What is refused, with a text that names the place: symbols, proxies, and objects of the language that are
// more than their properties (Map, Date, Error, Promise, typed arrays and so on, and what inherits from
// them); cycles; getters that throw; a nesting beyond vexlite::maximumDepth; and what is too much for one
// call.
#pragma once

#include "host/jsc/api.h"
#include "vexlite/jsonvalue.h"

#include <optional>
#include <unordered_set>

namespace engine::jsc {

class PageState;

/// Converts the arguments of one call; the limits hold for all of them together. [GUI thread]
class FromScript {
public:
    static constexpr std::size_t maximumValues = 1'000'000;
    static constexpr std::size_t maximumTextBytes = 256u << 20;

    explicit FromScript(PageState& page);

    /// False leaves `out` in no particular state, and problem() says why. Getters of the page may run.
    bool read(JSValueRef value, KJSVariant& out);
    /// For a person, for example "a symbol can not be passed (at options.list[3])".
    QString problem() const;

private:
    bool readValue(JSValueRef value, KJSVariant& out, int depth);
    bool readNumber(JSValueRef value, KJSVariant& out);
    bool readBigInt(JSValueRef value, KJSVariant& out);
    bool readString(JSValueRef value, KJSVariant& out);
    bool readObjectValue(JSObjectRef object, KJSVariant& out, int depth);
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
    QString m_problem;
    QString m_path;
    bool m_pathIsCut = false;
    JSObjectRef m_near[8]; ///< the outermost objects that are being read; the others are in m_deep
    std::optional<std::unordered_set<JSObjectRef>> m_deep;
};

} // namespace engine::jsc
