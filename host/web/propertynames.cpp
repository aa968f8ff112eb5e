#include "host/web/propertynames.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

namespace engine::web {

namespace {

// Getters are run where they are the browser's own, such as those of `document`.
constexpr char Source[] = R"js(((start, steps) => {
    const objectOf = (value) => (value === null || value === undefined ? null : Object(value));
    const own = Object.getOwnPropertyDescriptor;
    const isBrowsers = (get) => /\{\s*\[native code\]\s*\}$/.test(Function.prototype.toString.call(get));
    const step = (value, name) => {
        for (let object = objectOf(value); object !== null; object = Object.getPrototypeOf(object)) {
            const found = own(object, name);
            if (found)
                return found.get && isBrowsers(found.get) ? found.get.call(value) : found.value;
        }
    };
    let value = start;
    try {
        value = steps.reduce(step, start);
    } catch { }
    const names = [];
    for (let object = objectOf(value); object !== null; object = Object.getPrototypeOf(object))
        names.push(...Object.getOwnPropertyNames(object));
    return [...new Set(names)].sort();
}))js";

} // namespace

QString propertyNamesSource(QStringList path)
{
    static const QRegularExpression identifier(QStringLiteral("^[\\p{L}_$][\\p{L}\\p{N}_$]*$"));
    QString start = QStringLiteral("globalThis");
    if (!path.isEmpty() && identifier.match(path.first()).hasMatch()) {
        // What is declared with let, const or class is no property of the global object.
        const QString name = path.first();
        const QString isProperty = QStringLiteral("'%1' in globalThis").arg(name);
        start = QStringLiteral("%1 || typeof %2 === 'undefined' ? globalThis : { '%2': %2 }")
                    .arg(isProperty, name);
    }
    return QLatin1String(Source) + QLatin1Char('(') + start + QStringLiteral(", ")
        + QString::fromUtf8(QJsonDocument(QJsonArray::fromStringList(path)).toJson(QJsonDocument::Compact))
        + QLatin1Char(')');
}

} // namespace engine::web
