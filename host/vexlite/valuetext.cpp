#include "host/vexlite/valuetext.h"

#include "host/vexlite/conversion.h"
#include "host/vexlite/core.h"
#include "host/vexlite/pagefunction.h"
#include "host/vexlite/registry.h"
#include "host/vexlite/scriptvalues.h"
#include "host/vexlite/trace.h"

#include <charconv>
#include <cmath>

namespace vexlite {

namespace {

constexpr int DeepestRecord = 100;
constexpr int DeepestSummary = 3;
constexpr int MostItems = 5;
constexpr int LongestText = 60;
constexpr int LongestSummary = 160;
constexpr std::int64_t LargestExact = (std::int64_t { 1 } << 53) - 1;

template <typename T> Ref<T> query(const MVARIANT& value, const KIID& iid)
{
    void* found = nullptr;
    value.punkVal->QueryInterface(iid, &found);
    return Ref<T>::adopt(static_cast<T*>(found));
}

bool isInterface(const MVARIANT& value)
{
    return value.vt == MV_UNKNOWN || value.vt == MV_DISPATCH || value.vt == MV_ARRAY;
}

Ref<IJSExtentionObject> nativeOf(const MVARIANT& value)
{
    if (const auto handle = query<IJSSubObject>(value, IID_IJSSubObject))
        return Ref<IJSExtentionObject>::share(handle->Object());
    return query<IJSExtentionObject>(value, IID_IJSExtentionObject);
}

QString classOf(IJSExtentionObject* object)
{
    CallTrace* trace = CallTrace::active();
    return trace ? trace->names().nameOf(object->GetTypeId()) : QString();
}

QByteArray numberText(double number)
{
    char text[32];
    return { text, static_cast<int>(std::to_chars(text, text + sizeof(text), number).ptr - text) };
}

QString stringOf(const MVARIANT& value)
{
    switch (value.vt) {
    case MV_STRING:
        return QString(
            reinterpret_cast<const QChar*>(value.bstrVal), static_cast<int>(_XSysStringLen(value.bstrVal)));
    case MV_LPSTR:
        return QString::fromUtf8(value.pszVal);
    default:
        return value.pwszVal ? QString::fromUtf16(value.pwszVal) : QString();
    }
}

QByteArray marked(const char* key, const QByteArray& json)
{
    return QByteArrayLiteral("{\"$") + key + "\":" + json + '}';
}

} // namespace

QString withoutControls(const QString& text)
{
    const auto isControl = [](QChar unit) {
        return unit < QLatin1Char(' ') || (unit >= QChar(0x7f) && unit < QChar(0xa0));
    };
    if (std::none_of(text.begin(), text.end(), isControl))
        return text;
    QString plain;
    for (const QChar unit : text)
        plain += isControl(unit) ? QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'))
                                 : QString(unit);
    return plain;
}

QByteArray jsonString(const QString& text)
{
    QByteArray out(1, '"');
    QString plain;
    for (int i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        const bool isPair = unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair) {
            plain.append(unit).append(text[++i]);
        } else if (unit == QLatin1Char('"') || unit == QLatin1Char('\\')) {
            plain.append(QLatin1Char('\\')).append(unit);
        } else if (unit < QLatin1Char(' ') || unit.isSurrogate()) {
            plain += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            plain.append(unit);
        }
    }
    return out + plain.toUtf8() + '"';
}

// --- Records -----------------------------------------------------------------------------------------------------

QByteArray RecordWriter::value(const KJSVariant& value, ValueFrom from)
{
    m_from = from;
    write(value.raw(), 0);
    m_limit -= m_out.size();
    return std::exchange(m_out, {});
}

QByteArray RecordWriter::list(const JSApiArguments& values, ValueFrom from)
{
    m_from = from;
    writeOr("arguments", values.size(), [&] {
        return writeItems('[', ']', static_cast<int>(values.size()),
            [&](int i) { return write(values[static_cast<std::size_t>(i)].raw(), 1); });
    });
    m_limit -= m_out.size();
    return std::exchange(m_out, {});
}

bool RecordWriter::append(const QByteArray& text)
{
    if (m_out.size() + text.size() > m_limit)
        return false;
    m_out += text;
    return true;
}

/// Writes a value that may be long, or what it is and how long when there is no room for it.
template <typename Write> bool RecordWriter::writeOr(const char* kind, std::size_t length, Write write)
{
    const int start = m_out.size();
    if (write())
        return true;
    m_out.truncate(start);
    // The outermost value always has its place.
    const QByteArray marker = "{\"$cut\":\"" + QByteArray(kind)
        + "\",\"length\":" + QByteArray::number(static_cast<qulonglong>(length)) + '}';
    if (start == 0) {
        m_out += marker;
        return true;
    }
    return append(marker);
}

template <typename Item> bool RecordWriter::writeItems(char open, char close, int count, Item item)
{
    bool done = append(QByteArray(1, open));
    for (int i = 0; done && i < count; ++i)
        done = (i == 0 || append(QByteArrayLiteral(","))) && item(i);
    return done && append(QByteArray(1, close));
}

bool RecordWriter::write(const MVARIANT& given, int depth)
{
    const MVARIANT* value = dereference(given);
    if (!value)
        return append(marked("undefined", "true"));
    switch (value->vt) {
    case MV_EMPTY:
        return append(marked("undefined", "true"));
    case MV_NULL:
        return append(QByteArrayLiteral("null"));
    case MV_BOOL:
        return append(value->boolVal ? QByteArrayLiteral("true") : QByteArrayLiteral("false"));
    case MV_INT32:
        return append(QByteArray::number(value->lVal));
    case MV_INT64:
        if (m_from == ValueFrom::Library && std::abs(value->llVal) <= LargestExact)
            return append(QByteArray::number(static_cast<qlonglong>(value->llVal)));
        return append(marked("bigint", '"' + QByteArray::number(static_cast<qlonglong>(value->llVal)) + '"'));
    case MV_DOUBLE:
        if (!std::isfinite(value->dblVal) || (value->dblVal == 0 && std::signbit(value->dblVal)))
            return append(marked("number",
                std::isnan(value->dblVal) ? "\"NaN\""
                    : value->dblVal == 0  ? "\"-0\""
                    : value->dblVal > 0   ? "\"Infinity\""
                                          : "\"-Infinity\""));
        return append(numberText(value->dblVal));
    case MV_STRING:
    case MV_LPSTR:
    case MV_LPWSTR: {
        const QString text = stringOf(*value);
        return writeOr("string", static_cast<std::size_t>(text.size()),
            [&] { return text.size() <= m_limit && append(jsonString(text)); });
    }
    default:
        return isInterface(*value) && value->punkVal ? writeObject(*value, depth)
                                                     : append(QByteArrayLiteral("null"));
    }
}

bool RecordWriter::writeObject(const MVARIANT& value, int depth)
{
    const bool isDeep = depth > DeepestRecord;
    if (const auto object = query<IJSONValue>(value, IID_IJSONValue)) {
        const std::int32_t count = object->Count();
        const QString* key = nullptr;
        const KJSVariant* item = nullptr;
        bool isMarked = false;
        for (std::int32_t i = 0; i < count && object->At(i, &key, &item); ++i)
            isMarked |= key->startsWith(QLatin1Char('$'));
        const auto property = [&](int i) {
            return object->At(i, &key, &item) && append(jsonString(*key) + ':')
                && write(item->raw(), depth + 1);
        };
        return writeOr("object", static_cast<std::size_t>(count), [&] {
            return !isDeep && append(isMarked ? QByteArrayLiteral("{\"$plain\":") : QByteArray())
                && writeItems('{', '}', count, property)
                && append(isMarked ? QByteArrayLiteral("}") : QByteArray());
        });
    }
    if (const auto array = query<IJSArray>(value, IID_IJSArray)) {
        return writeOr("array", static_cast<std::size_t>(array->Count()), [&] {
            return !isDeep && writeItems('[', ']', array->Count(), [&](int i) {
                return write(array->At(i)->raw(), depth + 1);
            });
        });
    }
    if (const auto bytes = query<IJSBytes>(value, IID_IJSBytes)) {
        return writeOr("bytes", bytes->Size(), [&] {
            const auto content = QByteArray::fromRawData(reinterpret_cast<const char*>(bytes->Data()),
                static_cast<int>(std::min<std::size_t>(bytes->Size(), static_cast<std::size_t>(m_limit))));
            return bytes->Size() <= static_cast<std::size_t>(m_limit)
                && append(marked("bytes", '"' + content.toBase64() + '"'));
        });
    }
    if (const std::int64_t promise = promiseHandle(value.punkVal))
        return append(marked("promise", QByteArray::number(static_cast<qlonglong>(promise))));
    if (const auto function = query<IJSFunction>(value, IID_IJSFunction)) {
        auto* ours = dynamic_cast<PageFunction*>(function.get());
        return append(
            marked("function", QByteArray::number(static_cast<qlonglong>(ours ? ours->number() : 0))));
    }
    if (const auto native = nativeOf(value)) {
        const QByteArray number = QByteArray::number(static_cast<qlonglong>(numberOf(native.get())));
        return append("{\"$object\":" + number + ",\"class\":" + jsonString(classOf(native.get())) + '}');
    }
    return append(QByteArrayLiteral("null"));
}

// --- For people --------------------------------------------------------------------------------------------------

namespace {

QString summarise(const MVARIANT& given, int depth);

QString summariseText(const QString& text)
{
    const bool isLong = text.size() > LongestText;
    QString quoted = QString::fromUtf8(jsonString(text.left(LongestText)));
    if (isLong)
        quoted.insert(quoted.size() - 1, QChar(0x2026));
    return quoted;
}

template <typename Item>
QString summariseItems(QChar open, QChar close, std::int32_t count, int depth, Item item)
{
    QStringList items;
    if (depth >= DeepestSummary && count)
        return QString(open) + QChar(0x2026) + close;
    for (std::int32_t i = 0; i < std::min(count, MostItems); ++i)
        items.append(item(i));
    if (count > MostItems)
        items.append(QString(QChar(0x2026)));
    return open + items.join(QStringLiteral(", ")) + close;
}

QString summariseKey(const QString& key)
{
    const bool isPlain = !key.isEmpty() && !key[0].isDigit()
        && std::all_of(key.begin(), key.end(),
            [](QChar unit) { return unit.isLetterOrNumber() || unit == QLatin1Char('_'); });
    return isPlain && key.size() <= LongestText ? key : summariseText(key);
}

QString summariseObject(const MVARIANT& value, int depth)
{
    if (const auto object = query<IJSONValue>(value, IID_IJSONValue)) {
        return summariseItems(
            QLatin1Char('{'), QLatin1Char('}'), object->Count(), depth, [&](std::int32_t i) {
                const QString* key = nullptr;
                const KJSVariant* item = nullptr;
                return object->At(i, &key, &item)
                    ? summariseKey(*key) + QLatin1String(": ") + summarise(item->raw(), depth + 1)
                    : QString();
            });
    }
    if (const auto array = query<IJSArray>(value, IID_IJSArray))
        return summariseItems(QLatin1Char('['), QLatin1Char(']'), array->Count(), depth,
            [&](std::int32_t i) { return summarise(array->At(i)->raw(), depth + 1); });
    if (const auto bytes = query<IJSBytes>(value, IID_IJSBytes))
        return QStringLiteral("<%1 bytes>").arg(bytes->Size());
    if (const std::int64_t promise = promiseHandle(value.punkVal))
        return QStringLiteral("promise %1").arg(promise);
    if (const auto function = query<IJSFunction>(value, IID_IJSFunction)) {
        auto* ours = dynamic_cast<PageFunction*>(function.get());
        return QStringLiteral("function %1").arg(ours ? ours->number() : 0);
    }
    if (const auto native = nativeOf(value)) {
        const QString name = classOf(native.get());
        return QStringLiteral("%1#%2")
            .arg(name.mid(name.indexOf(QLatin1Char('.')) + 1))
            .arg(numberOf(native.get()));
    }
    return QStringLiteral("null");
}

QString summarise(const MVARIANT& given, int depth)
{
    const MVARIANT* value = dereference(given);
    if (!value || value->vt == MV_EMPTY)
        return QStringLiteral("undefined");
    switch (value->vt) {
    case MV_NULL:
        return QStringLiteral("null");
    case MV_BOOL:
        return value->boolVal ? QStringLiteral("true") : QStringLiteral("false");
    case MV_INT32:
        return QString::number(value->lVal);
    case MV_INT64:
        return QString::number(static_cast<qlonglong>(value->llVal));
    case MV_DOUBLE:
        return std::isnan(value->dblVal) ? QStringLiteral("NaN")
            : std::isinf(value->dblVal)
            ? (value->dblVal < 0 ? QStringLiteral("-Infinity") : QStringLiteral("Infinity"))
            : QString::fromLatin1(numberText(value->dblVal));
    case MV_STRING:
    case MV_LPSTR:
    case MV_LPWSTR:
        return summariseText(stringOf(*value));
    default:
        return isInterface(*value) && value->punkVal ? summariseObject(*value, depth)
                                                     : QStringLiteral("null");
    }
}

QString shorten(QString text)
{
    if (text.size() > LongestSummary)
        text.replace(LongestSummary - 1, text.size(), QChar(0x2026));
    return text;
}

} // namespace

QString summaryOf(const KJSVariant& value)
{
    return shorten(summarise(value.raw(), 0));
}

QString summaryOf(const JSApiArguments& values)
{
    QStringList items;
    for (const KJSVariant& value : values)
        items.append(summarise(value.raw(), 0));
    return QLatin1Char('(') + shorten(items.join(QStringLiteral(", "))) + QLatin1Char(')');
}

} // namespace vexlite
