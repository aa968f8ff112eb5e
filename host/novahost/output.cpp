#include "host/novahost/output.h"

#include "host/novahost/advice.h"

#include <QAbstractEventDispatcher>
#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace novahost {

namespace {

constexpr std::size_t BufferSize = std::size_t { 64 } << 10;
/// What is printed so soon after the last writing waits for the end of the turn.
constexpr std::chrono::milliseconds Soon(20);

bool isTerminal(FILE* stream)
{
    return isatty(fileno(stream));
}

/// Has standard output written in large pieces. False where it is to be written line by line.
bool bufferOutput()
{
    QAbstractEventDispatcher* events = QAbstractEventDispatcher::instance();
    if (!events || isTerminal(stdout))
        return false;
    std::setvbuf(stdout, nullptr, _IOFBF, BufferSize);
    QObject::connect(events, &QAbstractEventDispatcher::aboutToBlock, [] { std::fflush(stdout); });
    return true;
}

} // namespace

void printLine(const QString& line, bool toErrors)
{
    static const bool isBuffered = bufferOutput();
    FILE* stream = toErrors ? stderr : stdout;
    const QByteArray bytes = line.toUtf8() + '\n';
    if (toErrors)
        std::fflush(stdout);
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    using Clock = std::chrono::steady_clock;
    static Clock::time_point written;
    const Clock::time_point now = Clock::now();
    if (!toErrors && isBuffered && now - written < Soon)
        return;
    std::fflush(stream);
    written = now;
}

bool useColors(FILE* stream)
{
    // As Node reads them: FORCE_COLOR wins, and is off when it is 0.
    if (qEnvironmentVariableIsSet("FORCE_COLOR"))
        return qgetenv("FORCE_COLOR") != "0";
    return isTerminal(stream) && qEnvironmentVariableIsEmpty("NO_COLOR") && qgetenv("TERM") != "dumb";
}

void printError(const engine::Outcome& error)
{
    QString text = error.report;
    if (text.isEmpty()) {
        text = error.text;
        if (!error.stack.isEmpty())
            text += QLatin1Char('\n') + error.stack;
        if (error.hasCode)
            text += QString::fromLatin1("\ncode: %1").arg(error.code);
    }
    const QString advice = adviceOn(error);
    if (!advice.isEmpty())
        text += QLatin1Char('\n') + advice;
    printLine(text, true);
}

void printLiveCounts(const char* when)
{
    const vexlite::LiveCounts counts = vexlite::Core::instance()->liveCounts();
    std::fflush(stdout);
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
