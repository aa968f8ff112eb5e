#include "host/jsc/fromscript.h"

#include "host/jsc/pagestate.h"
#include "host/vexlite/scriptvalues.h"

#include <cmath>
#include <limits>

namespace engine::jsc {

namespace {

constexpr int maximumPath = 200;
constexpr int maximumPathKey = 40;
constexpr int nearCount = 8;

bool isIdentifier(const QString& key)
{
    if (key.isEmpty() || key[0].isDigit())
        return false;
    for (const QChar unit : key) {
        if (!unit.isLetterOrNumber() && unit != QLatin1Char('_') && unit != QLatin1Char('$'))
            return false;
    }
    return true;
}

QString formatStep(const QString& key)
{
    if (key.size() > maximumPathKey)
        return QStringLiteral("[\"%1...\"]").arg(key.left(maximumPathKey));
    return isIdentifier(key) ? QLatin1Char('.') + key : QStringLiteral("[\"%1\"]").arg(key);
}

QString withArticle(const QString& kind)
{
    // All that begin with U are spoken with a consonant: a Uint8Array.
    const bool vowel = QStringLiteral("AEIO").contains(kind.isEmpty() ? QChar() : kind[0]);
    return (vowel ? QStringLiteral("an ") : QStringLiteral("a ")) + kind;
}

/// Copies a Uint8Array. The page's own array is not touched by the API, which would keep its buffer from being transferred.
bool fillFrom(PageState& page, JSValueRef bytes, QByteArray& copy, JSValueRef* exception)
{
    char* memory = copy.data();
    JSObjectRef target = JSObjectMakeTypedArrayWithBytesNoCopy(
        page.ctx(), kJSTypedArrayTypeUint8Array, memory, static_cast<std::size_t>(copy.size()),
        [](void*, void* owner) { delete static_cast<QByteArray*>(owner); }, new QByteArray(copy), exception);
    return target
        && page.prelude().call(page.prelude().copyBytes, exception, bytes, static_cast<JSValueRef>(target));
}

} // namespace

FromScript::FromScript(PageState& page)
    : m_page(page)
    , m_ctx(page.ctx())
{
}

bool FromScript::read(JSValueRef value, KJSVariant& out)
{
    m_path.clear();
    m_pathIsCut = false;
    return readValue(value, out, 0);
}

QString FromScript::problem() const
{
    if (m_path.isEmpty())
        return m_problem;
    return QStringLiteral("%1 (at %2%3)")
        .arg(m_problem, m_path.startsWith(QLatin1Char('.')) ? m_path.mid(1) : m_path,
            m_pathIsCut ? QStringLiteral("...") : QString());
}

bool FromScript::refuse(const QString& problem)
{
    m_problem = problem;
    return false;
}

bool FromScript::refuseThrown(JSValueRef exception)
{
    const ErrorFacts facts = exception ? m_page.prelude().describe(exception, {}) : ErrorFacts {};
    return refuse(QStringLiteral("reading it threw: ") + facts.text);
}

// An error is returned from the innermost value outwards, so the path grows at the front and is cut at the
// end.
void FromScript::prependPath(const QString& step)
{
    m_path.prepend(step);
    if (m_path.size() > maximumPath) {
        m_path.truncate(maximumPath);
        m_pathIsCut = true;
    }
}

bool FromScript::takeText(std::size_t units)
{
    m_textBytes += units * sizeof(char16_t);
    return m_textBytes <= maximumTextBytes || refuse(QStringLiteral("more than 256 MB of text in one call"));
}

bool FromScript::readValue(JSValueRef value, KJSVariant& out, int depth)
{
    if (++m_values > maximumValues)
        return refuse(QStringLiteral("more than 1000000 values in one call"));
    switch (JSValueGetType(m_ctx, value)) {
    case kJSTypeUndefined:
        out = {};
        return true;
    case kJSTypeNull:
        out = KJSVariant::null();
        return true;
    case kJSTypeBoolean:
        out = KJSVariant::fromBool(JSValueToBoolean(m_ctx, value));
        return true;
    case kJSTypeNumber:
        return readNumber(value, out);
    case kJSTypeString:
        return readString(value, out);
    case kJSTypeSymbol:
        return refuse(QStringLiteral("a symbol can not be passed"));
    case kJSTypeBigInt:
        return readBigInt(value, out);
    case kJSTypeObject:
        return readObjectValue(asObject(value), out, depth);
    }
    return refuse(QStringLiteral("a value of an unknown kind can not be passed"));
}

bool FromScript::readNumber(JSValueRef value, KJSVariant& out)
{
    const double number = JSValueToNumber(m_ctx, value, nullptr);
    const bool isInt32 = number >= std::numeric_limits<std::int32_t>::min()
        && number <= std::numeric_limits<std::int32_t>::max() && std::trunc(number) == number
        && !(number == 0 && std::signbit(number));
    out = isInt32 ? KJSVariant::fromInt32(static_cast<std::int32_t>(number)) : KJSVariant::fromDouble(number);
    return true;
}

bool FromScript::readBigInt(JSValueRef value, KJSVariant& out)
{
    using Limits = std::numeric_limits<std::int64_t>;
    if (JSValueCompareInt64(m_ctx, value, Limits::max(), nullptr) == kJSRelationConditionGreaterThan
        || JSValueCompareInt64(m_ctx, value, Limits::min(), nullptr) == kJSRelationConditionLessThan)
        return refuse(QStringLiteral("a BigInt of more than 64 bits can not be passed"));
    out = KJSVariant::fromInt64(JSValueToInt64(m_ctx, value, nullptr));
    return true;
}

bool FromScript::readString(JSValueRef value, KJSVariant& out)
{
    JSValueRef exception = nullptr;
    const Text text = Text::adopt(JSValueToStringCopy(m_ctx, value, &exception));
    if (!text)
        return refuseThrown(exception);
    if (!takeText(text.size()))
        return false;
    out = KJSVariant::fromString({ text.units(), text.size() });
    return out.type() != MV_ERROR || refuse(QStringLiteral("no memory for a text"));
}

bool FromScript::readObjectValue(JSObjectRef object, KJSVariant& out, int depth)
{
    if (const Wrapper* wrapper = m_page.wrappers().find(object)) {
        wrapper->object->AddRef();
        out = KJSVariant::fromUnknown(wrapper->object);
        return true;
    }
    if (JSObjectGetProxyTarget(object))
        return refuse(QStringLiteral("a proxy can not be passed"));
    if (JSObjectIsFunction(m_ctx, object)) {
        out = KJSVariant::fromUnknown(m_page.functions().keep(object));
        return true;
    }
    if (!enter(object, depth))
        return false;
    const bool done =
        JSValueIsArray(m_ctx, object) ? readArray(object, out, depth) : readProperties(object, out, depth);
    leave(object, depth);
    return done;
}

bool FromScript::readBytes(JSObjectRef object, KJSVariant& out)
{
    const Prelude& prelude = m_page.prelude();
    JSValueRef exception = nullptr;
    const JSValueRef bytes = prelude.call(prelude.bytesOf, &exception, static_cast<JSValueRef>(object));
    if (!bytes)
        return refuseThrown(exception);
    if (!JSValueIsObject(m_ctx, bytes))
        return refuse(stringOf(m_ctx, bytes) + QStringLiteral(" can not be passed"));
    const std::size_t size = JSObjectGetTypedArrayByteLength(m_ctx, asObject(bytes), nullptr);
    m_bytes += size;
    if (m_bytes > maximumBytes)
        return refuse(QStringLiteral("more than 256 MB of bytes in one call"));
    try {
        QByteArray copy(static_cast<int>(size), Qt::Uninitialized);
        if (size && !fillFrom(m_page, bytes, copy, &exception))
            return refuseThrown(exception);
        out = vexlite::makeBytes(copy);
        return true;
    } catch (const std::bad_alloc&) {
        return refuse(QStringLiteral("no memory for bytes"));
    }
}

bool FromScript::enter(JSObjectRef object, int depth)
{
    if (depth >= vexlite::maximumDepth)
        return refuse(QStringLiteral("nested deeper than 1000"));
    if (m_page.engine().stackIsShort())
        return refuse(QStringLiteral("nested too deep for the stack that is left"));
    for (int i = 0; i < std::min(depth, nearCount); ++i) {
        if (m_near[i] == object)
            return refuse(QStringLiteral("a cycle can not be passed"));
    }
    if (depth < nearCount)
        m_near[depth] = object;
    else if (!(m_deep ? *m_deep : m_deep.emplace()).insert(object).second)
        return refuse(QStringLiteral("a cycle can not be passed"));
    return true;
}

void FromScript::leave(JSObjectRef object, int depth)
{
    if (depth >= nearCount)
        m_deep->erase(object);
}

bool FromScript::readArray(JSObjectRef array, KJSVariant& out, int depth)
{
    static const Text lengthName("length");
    JSValueRef exception = nullptr;
    const double length =
        JSValueToNumber(m_ctx, JSObjectGetProperty(m_ctx, array, lengthName, nullptr), nullptr);
    if (!(length <= static_cast<double>(maximumValues - m_values)))
        return refuse(QStringLiteral("more than 1000000 values in one call"));
    vexlite::Ref<IJSArray> list = vexlite::makeScriptArray();
    for (unsigned i = 0; i < static_cast<unsigned>(length); ++i) {
        const JSValueRef element = JSObjectGetPropertyAtIndex(m_ctx, array, i, &exception);
        KJSVariant item;
        if (exception ? !refuseThrown(exception) : !readValue(element, item, depth + 1)) {
            prependPath(QStringLiteral("[%1]").arg(i));
            return false;
        }
        list->Append(item);
    }
    out = KJSVariant::fromUnknown(list.release(), MV_ARRAY);
    return true;
}

bool FromScript::readProperties(JSObjectRef object, KJSVariant& out, int depth)
{
    JSValueRef exception = nullptr;
    const JSValueRef names =
        m_page.prelude().call(m_page.prelude().keys, &exception, static_cast<JSValueRef>(object));
    if (!names)
        return refuseThrown(exception);
    if (m_page.prelude().signals->keyCount == Signals::isView)
        return readBytes(object, out);
    const auto count = static_cast<unsigned>(m_page.prelude().signals->keyCount);
    if (!isPlainData(object))
        return JSValueGetTypedArrayType(m_ctx, object, nullptr) == kJSTypedArrayTypeArrayBuffer
            && readBytes(object, out);
    if (count > maximumValues - m_values)
        return refuse(QStringLiteral("more than 1000000 values in one call"));
    std::vector<vexlite::ScriptPair> pairs;
    pairs.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        const JSValueRef name = JSObjectGetPropertyAtIndex(m_ctx, asObject(names), i, nullptr);
        const QString key = m_page.keyNames().textOf(m_ctx, name);
        const JSValueRef value = JSObjectGetPropertyForKey(m_ctx, object, name, &exception);
        KJSVariant& item = pairs.emplace_back(key, KJSVariant()).second;
        if (!takeText(static_cast<std::size_t>(key.size()))
            || (exception ? !refuseThrown(exception) : !readValue(value, item, depth + 1))) {
            prependPath(formatStep(key));
            return false;
        }
    }
    out = KJSVariant::fromUnknown(vexlite::makeScriptObject(std::move(pairs)).release());
    return true;
}

// Walks the prototypes without running script of the page.
bool FromScript::isPlainData(JSObjectRef object)
{
    const Prelude& prelude = m_page.prelude();
    JSObjectRef one = object;
    for (int i = 0; i < vexlite::maximumDepth; ++i) {
        const JSValueRef next = JSObjectGetPrototype(m_ctx, one);
        if (next == prelude.objectPrototype || !JSValueIsObject(m_ctx, next))
            return true;
        one = asObject(next);
        if (JSObjectGetProxyTarget(one))
            return refuse(QStringLiteral("an object with a proxy as its prototype can not be passed"));
        if (const QString* kind = prelude.languageKind(one))
            return refuse(withArticle(*kind) + QStringLiteral(" can not be passed"));
    }
    return refuse(QStringLiteral("an object with too many prototypes can not be passed"));
}

} // namespace engine::jsc
