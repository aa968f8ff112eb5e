#include "host/engine/replsource.h"

#include <QRegularExpression>

namespace engine {

namespace {

QString asAsyncExpression(const QString& expression)
{
    return QStringLiteral("(async () => (") + expression + QStringLiteral("\n))()");
}

// The position of the "=" that ends the names of a declaration, which begins at `from`; -1 when there is
// none.
int initialiserOf(const QString& text, int from)
{
    int depth = 0;
    for (int i = from; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (QStringLiteral("([{").contains(unit))
            ++depth;
        else if (QStringLiteral(")]}").contains(unit))
            --depth;
        else if (unit == QLatin1Char('=') && depth == 0)
            return i;
    }
    return -1;
}

QString withoutLastSemicolon(const QString& source)
{
    QString text = source.trimmed();
    while (text.endsWith(QLatin1Char(';')))
        text = text.chopped(1).trimmed();
    return text;
}

} // namespace

ReplSource planReplSource(const QString& source, const std::function<bool(const QString&)>& compiles)
{
    const QString trimmed = withoutLastSemicolon(source);
    if (source.trimmed().startsWith(QLatin1Char('{'))) {
        const QString expression = QStringLiteral("(") + trimmed + QStringLiteral("\n)");
        if (compiles(expression))
            return { expression, {} };
    }
    if (!source.contains(QLatin1String("await")) || compiles(source))
        return { source, {} };

    static const QRegularExpression declares(QStringLiteral("^(?:const|let|var)\\b"));
    if (const auto match = declares.match(trimmed); match.hasMatch()) {
        const int equals = initialiserOf(trimmed, match.capturedEnd());
        const QString awaited = equals < 0 ? QString() : asAsyncExpression(trimmed.mid(equals + 1));
        if (!awaited.isEmpty() && compiles(awaited))
            return { awaited, trimmed.left(equals + 1) + QLatin1String(ReplSource::awaitedName) };
    }
    const QString expression = asAsyncExpression(trimmed);
    if (compiles(expression))
        return { expression, {} };
    return { QStringLiteral("(async () => {") + source + QStringLiteral("\n})()"), {} };
}

} // namespace engine
