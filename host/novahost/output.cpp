#include "host/novahost/output.h"

#include "host/novahost/advice.h"

#include <cstdio>

namespace novahost {

void printLine(const QString& line, bool toErrors)
{
    FILE* stream = toErrors ? stderr : stdout;
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

void printError(const engine::Outcome& error)
{
    QString text = error.text;
    if (!error.stack.isEmpty())
        text += QLatin1Char('\n') + error.stack;
    if (error.hasCode)
        text += QString::fromLatin1("\ncode: %1").arg(error.code);
    const QString advice = adviceOn(error);
    if (!advice.isEmpty())
        text += QLatin1Char('\n') + advice;
    printLine(text, true);
}

void printLiveCounts(const char* when)
{
    const vexlite::LiveCounts counts = vexlite::Core::instance()->liveCounts();
    std::fprintf(stderr,
        "{\"when\":\"%s\",\"pages\":%d,\"objects\":%d,\"listeners\":%d,\"promises\":%d,\"functions\":%d}\n",
        when, counts.pages, counts.objects, counts.listeners, counts.promises, counts.functions);
}

int fail(int exitCode, const QString& error)
{
    printLine(QLatin1String("novahost: ") + error, true);
    return exitCode;
}

} // namespace novahost
