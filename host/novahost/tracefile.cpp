#include "host/novahost/tracefile.h"

#include "host/vexlite/core.h"
#include "host/vexlite/valuetext.h"

#include <QCoreApplication>

namespace novahost {

namespace {

constexpr int MostOfEvent = 8'192; ///< bytes for what an event shows of values
using vexlite::RecordWriter;
using vexlite::ValueFrom;

QByteArray microseconds(double milliseconds)
{
    return QByteArray::number(milliseconds * 1000, 'f', 1);
}

QByteArray identify(std::int64_t promise)
{
    return ",\"id\":\"0x" + QByteArray::number(static_cast<qlonglong>(promise), 16) + '"';
}

} // namespace

TraceFile::TraceFile(std::unique_ptr<OutputFile> file)
    : m_file(std::move(file))
{
    m_file->write("[");
    add("M", "__metadata", QStringLiteral("process_name"), 0, 0, ",\"args\":{\"name\":\"novahost\"}");
    add("M", "__metadata", QStringLiteral("thread_name"), 0, 0, ",\"args\":{\"name\":\"suite\"}");
}

bool TraceFile::finish()
{
    m_isFinished = true;
    m_file->write("\n]\n");
    return m_file->finish();
}

void TraceFile::add(const char* phase, const char* category, const QString& name, int page,
    double milliseconds, const QByteArray& rest)
{
    if (m_isFinished)
        return;
    QByteArray line = std::exchange(m_isEmpty, false) ? "\n" : ",\n";
    line += "{\"ph\":\"" + QByteArray(phase) + "\",\"cat\":\"" + category + "\",\"name\":"
        + vexlite::jsonString(name) + ",\"pid\":" + QByteArray::number(QCoreApplication::applicationPid())
        + ",\"tid\":" + QByteArray::number(page + 1) + ",\"ts\":" + microseconds(milliseconds) + rest + '}';
    m_file->write(line);
}

void TraceFile::pageOpened(const JSContextEnv& context, const QString& origin)
{
    const int page = m_pages.add(context);
    add("M", "__metadata", QStringLiteral("thread_name"), page, 0,
        ",\"args\":{\"name\":" + vexlite::jsonString(QStringLiteral("page %1 %2").arg(page).arg(origin))
            + '}');
}

void TraceFile::callEnded(const vexlite::CallFacts& call, const vexlite::CallOutcome& outcome)
{
    const int page = m_pages.numberOf(call.context);
    const QString name = nameOf(call.object, call.instance) + QLatin1Char('.') + call.member;
    RecordWriter writer(MostOfEvent);
    QByteArray values = ",\"args\":{\"arguments\":" + writer.list(call.arguments, ValueFrom::Page);
    values += outcome.exception.isEmpty()
        ? ",\"answer\":" + writer.value(outcome.result, ValueFrom::Library)
        : ",\"thrown\":" + writer.value(outcome.exception, ValueFrom::Library);
    add("X", "call", name, page, m_pages.millisecondsAt(call.start),
        ",\"dur\":" + microseconds(millisecondsBetween(call.start, outcome.end)) + values + '}');
    if (const std::int64_t promise = vexlite::promiseHandle(outcome.result))
        add("b", "promise", nameOf(call.object, 0) + QLatin1Char('.') + call.member, page,
            m_pages.millisecondsAt(call.start), identify(promise));
}

void TraceFile::promiseSettled(const vexlite::SettledPromise& promise)
{
    if (promise.object.isEmpty())
        return;
    const char* state = promise.state == JSPromiseState::Resolved ? "resolved" : "rejected";
    add("e", "promise", nameOf(promise.object, 0) + QLatin1Char('.') + promise.member,
        m_pages.numberOf(promise.context), m_pages.millisecondsAt(promise.time),
        identify(promise.id) + ",\"args\":{\"" + state
            + "\":" + RecordWriter(MostOfEvent).value(promise.value, ValueFrom::Library) + '}');
}

void TraceFile::eventEnded(const vexlite::EventFacts& event)
{
    const double start = m_pages.millisecondsAt(event.time);
    add("X", "event", nameOf(event.object, event.instance) + QLatin1Char(' ') + event.event,
        m_pages.numberOf(event.context), start,
        ",\"dur\":" + microseconds(m_pages.milliseconds() - start) + ",\"args\":{\"arguments\":"
            + RecordWriter(MostOfEvent).list(event.arguments, ValueFrom::Library) + '}');
}

void TraceFile::functionEnded(const vexlite::FunctionFacts& function, vexlite::TraceTime end)
{
    add("X", "callback", QStringLiteral("function %1").arg(function.function),
        m_pages.numberOf(function.context), m_pages.millisecondsAt(function.start),
        ",\"dur\":" + microseconds(millisecondsBetween(function.start, end)) + ",\"args\":{\"arguments\":"
            + RecordWriter(MostOfEvent).list(function.arguments, ValueFrom::Library) + '}');
}

void TraceFile::stepPlayed(const QString& step)
{
    add("i", "play", QLatin1String("play ") + step, 0, m_pages.milliseconds(), ",\"s\":\"p\"");
}

} // namespace novahost
