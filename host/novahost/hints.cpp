#include "host/novahost/hints.h"

#include "host/novahost/description.h"
#include "host/novahost/nearest.h"
#include "host/novahost/output.h"
#include "host/vexlite/conversion.h"
#include "host/vexlite/core.h"
#include "host/vexlite/scriptvalues.h"
#include "host/vexlite/valuetext.h"

#include <QRegularExpression>
#include <cmath>

namespace novahost {

namespace {

using Kind = DeclaredType::Kind;
using vexlite::dereference;

constexpr int MostHintsOfPage = 1'000;
constexpr int MostPlacesOfHint = 10;
constexpr int MostItems = 100; ///< of an array or a map that are looked at

bool isText(const MVARIANT& value)
{
    return value.vt == MV_STRING || value.vt == MV_LPSTR || value.vt == MV_LPWSTR;
}

template <typename T> bool has(const KJSVariant& value, const KIID& iid)
{
    return static_cast<bool>(vexlite::queryInterface<T>(value, iid));
}

/// What a member returns, with the value in `data`.
bool isAnswer(const KJSVariant& value)
{
    const IJSONValue* object = vexlite::objectOf(value);
    return object && object->Count() == 2 && object->Has(QStringLiteral("data"))
        && object->GetBoolean(QStringLiteral("success"), false);
}

/// "a number"; what it is for the page.
QString describe(const KJSVariant& value)
{
    const MVARIANT& raw = *dereference(value.raw());
    if (raw.vt == MV_BOOL)
        return QStringLiteral("a boolean");
    if (raw.vt == MV_INT64)
        return QStringLiteral("a BigInt");
    if (raw.vt == MV_INT32 || raw.vt == MV_DOUBLE)
        return QStringLiteral("a number");
    if (isText(raw))
        return QStringLiteral("a string");
    if (isAnswer(value))
        return QStringLiteral("an answer");
    if (vexlite::arrayOf(value))
        return QStringLiteral("an array");
    if (has<IJSFunction>(value, IID_IJSFunction))
        return QStringLiteral("a function");
    if (has<IJSBytes>(value, IID_IJSBytes))
        return QStringLiteral("bytes");
    return QStringLiteral("an object");
}

bool isOfKind(const KJSVariant& value, const DeclaredType& type)
{
    const MVARIANT& raw = *dereference(value.raw());
    switch (type.kind) {
    case Kind::Any:
        return true;
    case Kind::String:
        return isText(raw);
    case Kind::Number:
        return raw.vt == MV_INT32 || raw.vt == MV_INT64 || raw.vt == MV_DOUBLE;
    case Kind::Integer:
        return raw.vt == MV_INT32 || raw.vt == MV_INT64
            || (raw.vt == MV_DOUBLE && std::trunc(raw.dblVal) == raw.dblVal);
    case Kind::Boolean:
        return raw.vt == MV_BOOL;
    case Kind::Object:
    case Kind::Map:
        return vexlite::objectOf(value) && !isAnswer(value);
    case Kind::Array:
        return vexlite::arrayOf(value);
    case Kind::Function:
        return has<IJSFunction>(value, IID_IJSFunction);
    case Kind::Bytes: // also an object that has some
        return has<IJSBytes>(value, IID_IJSBytes) || has<IJSExtentionObject>(value, IID_IJSExtentionObject);
    case Kind::Union:
        break;
    }
    return std::any_of(
        type.inner.begin(), type.inner.end(), [&](const DeclaredType& one) { return isOfKind(value, one); });
}

QString quoted(const QString& text)
{
    constexpr int LongestShown = 80;
    return QString::fromUtf8(
        vexlite::jsonString(text.size() > LongestShown ? text.left(LongestShown) + QChar(0x2026) : text));
}

QString didYouMean(const QString& nearest, const QString& mark)
{
    return nearest.isEmpty() ? QString() : QStringLiteral("; did you mean %1%2%1?").arg(mark, nearest);
}

/// Looks for the mistakes in one call.
class Search {
public:
    explicit Search(const vexlite::CallFacts& call)
        : m_member(
            call.object.mid(call.object.indexOf(QLatin1Char('.')) + 1) + QLatin1Char('.') + call.member)
    {
    }
    QStringList found;

    void look(const KJSVariant& value, const DeclaredType& type, const QString& path)
    {
        const MVARIANT* raw = dereference(value.raw());
        if (!raw || raw->vt == MV_EMPTY || raw->vt == MV_NULL)
            return lookAtMissing(type, path, raw && raw->vt == MV_NULL ? "null" : "missing");
        if (!isOfKind(value, type))
            return add(isAnswer(value)
                    ? QStringLiteral("`%1` of %2 is an answer, where %3 is expected: `.data` is forgotten")
                          .arg(path, m_member, type.name())
                    : raw->vt == MV_DOUBLE && type.kind == Kind::Integer
                    ? QStringLiteral("`%1` of %2 is %3, where an integer is expected")
                          .arg(path, m_member, vexlite::summaryOf(value))
                    : QStringLiteral("`%1` of %2 is %3, where %4 is expected")
                          .arg(path, m_member, describe(value), type.name()));
        if (isText(*raw) && isExact(path))
            lookAtText(vexlite::textOf(value), path);
        if (!type.values.isEmpty())
            lookAtChoice(value, type, path);
        if (type.kind == Kind::Object)
            lookAtFields(*vexlite::objectOf(value), type, path);
        if (type.kind == Kind::Array)
            lookAtItems(*vexlite::arrayOf(value), type.inner.front(), path);
        if (type.kind == Kind::Map)
            lookAtEntries(*vexlite::objectOf(value), type.inner.front(), path);
    }

    /// The options of a call, whose own name says nothing to the page.
    void lookAtArgument(const KJSVariant& value, const DeclaredType& parameter)
    {
        const bool hasFields = parameter.kind == Kind::Object && isOfKind(value, parameter);
        look(value, parameter, hasFields ? QString() : parameter.key);
    }

    /// `state`: "missing" or "null"
    void lookAtMissing(const DeclaredType& type, const QString& path, const char* state)
    {
        if (!type.isOptional)
            add(QStringLiteral("`%1` of %2 is %3, where %4 is expected")
                    .arg(path, m_member, QLatin1String(state),
                        type.kind == Kind::Any ? QStringLiteral("a value") : type.name()));
    }

    /// Whether what is listened for is written like one of the object's events, of which pages may add others.
    void lookAtEvent(const KJSVariant& value, const QStringList& events)
    {
        const QString event = vexlite::textOf(value);
        const QString meant = events.contains(event) ? QString() : nearestSpelling(events, event);
        if (!meant.isEmpty())
            add(QStringLiteral("%1 has no event %2%3")
                    .arg(m_member.section(QLatin1Char('.'), 0, -2), quoted(event),
                        didYouMean(quoted(meant), QString())));
    }

    /// A function that the member never calls, an option of another system. `more` may also be what an array or a promise
    /// gives to a function, when the member itself is that: map(FileSystem.exists.bind(FileSystem)).
    void lookAtMore(const JSApiArguments& more, std::size_t known)
    {
        const auto isGiven = [&](std::size_t i) {
            const MVARIANT* raw = dereference(more[i].raw());
            return raw && raw->vt != MV_EMPTY;
        };
        const bool isOfArray = more.size() == 3 && vexlite::arrayOf(more[2]);
        bool isWrong = false;
        for (std::size_t i = known; i < more.size() && !isOfArray; ++i)
            isWrong = isWrong || (known == 0 ? has<IJSFunction>(more[i], IID_IJSFunction) : isGiven(i));
        if (isWrong)
            add(QStringLiteral("%1 takes %2, but gets %3")
                    .arg(m_member,
                        known == 0       ? QStringLiteral("no arguments")
                            : known == 1 ? QStringLiteral("1 argument")
                                         : QStringLiteral("%1 arguments").arg(known))
                    .arg(more.size()));
    }

private:
    void add(const QString& hint) { found.append(hint); }

    /// Whether what is there is used as it is: a path, an address, a name; not text that people read.
    static bool isExact(const QString& path)
    {
        static const QRegularExpression exact(QStringLiteral(
            "(?:(?:^|[.])(?:path|dir|folder|files?|url|src|id|key|name|program|group|section)"
            "|(?:Path|Dir|Folder|Files?|Url|Src|Id|Key|Name|Program|Group|Section))(?:\\[\\d+\\])*$"));
        return exact.match(path).hasMatch();
    }

    static QString join(const QString& path, const QString& key)
    {
        return path.isEmpty() ? key : path + QLatin1Char('.') + key;
    }

    void lookAtText(const QString& text, const QString& path)
    {
        struct Made {
            const char* part;
            const char* reason;
        };
        static constexpr Made Mades[] = {
            { "[object Object]", "an object was made a string" },
            { "[object Promise]", "an `await` is forgotten" },
            { "[native code]", "a function was made a string: its `()` is forgotten" },
        };
        for (const Made& made : Mades) {
            if (text.contains(QLatin1String(made.part)))
                add(QStringLiteral("`%1` of %2 contains \"%3\": %4")
                        .arg(path, m_member, QLatin1String(made.part), QLatin1String(made.reason)));
        }
    }

    void lookAtChoice(const KJSVariant& value, const DeclaredType& type, const QString& path)
    {
        const MVARIANT& raw = *dereference(value.raw());
        const QString text = vexlite::textOf(value);
        const QString written =
            isText(raw) ? QString::fromUtf8(vexlite::jsonString(text)) : vexlite::summaryOf(value);
        if (type.values.contains(written))
            return;
        const QString meant = isText(raw) ? nearest(type.values, written) : QString();
        add(QStringLiteral("`%1` of %2 is %3, which is none of %4%5")
                .arg(path, m_member, isText(raw) ? quoted(text) : written,
                    type.values.join(QStringLiteral(", ")), didYouMean(meant, QString())));
    }

    void lookAtFields(const IJSONValue& object, const DeclaredType& type, const QString& path)
    {
        QStringList unused;
        for (const DeclaredType& field : type.fields) {
            if (!object.Has(field.key))
                unused.append(field.key);
        }
        const QString* key = nullptr;
        const KJSVariant* value = nullptr;
        for (std::int32_t i = 0; object.At(i, &key, &value); ++i) {
            const auto known = std::ranges::find(type.fields, *key, &DeclaredType::key);
            if (known != type.fields.end()) {
                look(*value, *known, join(path, *key));
                continue;
            }
            const QString meant = nearest(unused, *key);
            unused.removeOne(meant);
            add(QStringLiteral("%1 has no option `%2`%3")
                    .arg(
                        m_member, join(path, key->left(LongestKey)), didYouMean(meant, QStringLiteral("`"))));
        }
        for (const DeclaredType& field : type.fields) {
            if (unused.contains(field.key))
                lookAtMissing(field, join(path, field.key), "missing");
        }
    }

    void lookAtItems(const IJSArray& array, const DeclaredType& type, const QString& path)
    {
        for (std::int32_t i = 0; i < std::min(array.Count(), MostItems); ++i)
            look(*array.At(i), type, QStringLiteral("%1[%2]").arg(path).arg(i));
    }

    void lookAtEntries(const IJSONValue& object, const DeclaredType& type, const QString& path)
    {
        const QString* key = nullptr;
        const KJSVariant* value = nullptr;
        for (std::int32_t i = 0; i < MostItems && object.At(i, &key, &value); ++i)
            look(*value, type, join(path, key->left(LongestKey)));
    }

    static constexpr int LongestKey = 80;
    QString m_member;
};

/// Names that pages, libraries and engines read of any object, to see what it is.
bool isProbe(const QString& name)
{
    static const QSet<QString> probes { QStringLiteral("then"), QStringLiteral("toJSON"),
        QStringLiteral("length"), QStringLiteral("nodeType"), QStringLiteral("inspect"),
        QStringLiteral("asymmetricMatch"), QStringLiteral("default"), QStringLiteral("name"),
        QStringLiteral("prototype"), QStringLiteral("displayName"), QStringLiteral("message"),
        QStringLiteral("stack"), QStringLiteral("next"), QStringLiteral("size"), QStringLiteral("tagName") };
    return name.isEmpty() || name[0] == QLatin1Char('_') || name[0] == QLatin1Char('$') || name[0].isDigit()
        || probes.contains(name);
}

} // namespace

QString Hints::give(const JSContextEnv& context, const QString& text)
{
    QString hint = vexlite::withoutControls(text);
    if (m_isStrict)
        return hint;
    Given& given = m_given[context.contextId];
    // To find a place takes time, which a loop of the page's would multiply.
    if (given.marks.size() >= MostHintsOfPage || ++given.places[hint] > MostPlacesOfHint)
        return {};
    const QString place = vexlite::Core::instance()->callingPlace(context);
    // With the file, so that each input of a prompt has its own.
    const QString mark = hint + place.section(QLatin1Char(':'), 0, -3);
    if (!given.marks.contains(mark)) {
        given.marks.insert(mark);
        printLine(QLatin1String("hint: ") + hint
                + (place.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(place)),
            true);
    }
    return {};
}

QString Hints::checkCall(const vexlite::CallFacts& call)
{
    const std::optional<std::vector<DeclaredType>>& known = m_types.parameters(call.object, call.member);
    if (!known)
        return {};
    const std::vector<DeclaredType>& parameters = *known;
    const DeclaredType* rest = parameters.empty() || !parameters.back().isRest ? nullptr : &parameters.back();
    Search search(call);
    for (std::size_t i = 0; i < call.arguments.size(); ++i) {
        if (i < parameters.size() || rest)
            search.lookAtArgument(call.arguments[i], i < parameters.size() ? parameters[i] : *rest);
    }
    for (std::size_t i = call.arguments.size(); i < parameters.size(); ++i)
        search.lookAtMissing(parameters[i], parameters[i].key, "missing");
    if (!rest)
        search.lookAtMore(call.arguments, parameters.size());
    if (call.member == QLatin1String("addEventListener") && call.arguments.size() > 0)
        search.lookAtEvent(call.arguments[0], m_types.events(call.object));
    for (const QString& hint : std::as_const(search.found)) {
        if (QString refusal = give(call.context, hint); !refusal.isNull())
            return refusal;
    }
    return {};
}

QString Hints::checkName(const JSContextEnv& context, const QString& object, const QString& name)
{
    if (isProbe(name))
        return {};
    const Description& description = Description::builtIn();
    const QString owner = object.mid(object.indexOf(QLatin1Char('.')) + 1);
    QStringList names;
    if (object == QLatin1String("NovaExtension")) {
        for (const Json& one : description.objects()) {
            if (!textOf(one["name"]).contains(QLatin1Char('.')))
                names.append(textOf(one["name"]));
        }
    } else if (const Json* known = description.object(object)) {
        for (const Json& member : (*known)["members"])
            names.append(textOf(member["name"]));
    }
    // What exists is hidden from this page. What is like nothing is asked for, to see whether there is it.
    const QString meant = names.contains(name) ? QString() : nearest(names, name);
    if (meant.isEmpty())
        return {};
    constexpr int LongestName = 80;
    return give(
        context, QStringLiteral("%1 has no %2; did you mean %3?").arg(owner, name.left(LongestName), meant));
}

} // namespace novahost
