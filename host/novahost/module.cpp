#include "host/novahost/module.h"

#include "host/novahost/inputparser.h"

#include <QRegularExpression>

namespace novahost {

bool isModule(const QString& fileName, const QString& source)
{
    if (fileName.endsWith(QLatin1String(".mjs")))
        return true;
    static const QRegularExpression statement(
        QStringLiteral(
            R"(^\s*(?:import\s*(?:[\w{*"']|\$)|export\s*(?:[{*]|default\b|const\b|let\b|var\b|class\b|async\b|function\b)))"),
        QRegularExpression::MultilineOption);
    // The words may stand in a comment or a string.
    return statement.match(source).hasMatch() && InputParser().isModule(source);
}

} // namespace novahost
