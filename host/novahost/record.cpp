#include "host/novahost/record.h"

#include "host/vexlite/core.h"
#include "host/vexlite/valuetext.h"

namespace novahost {

namespace {

constexpr int MostOfValues = 1 << 20; ///< bytes of the values in one record
using vexlite::jsonString;
using vexlite::RecordWriter;
using vexlite::ValueFrom;

QByteArray number(std::int64_t value)
{
    return QByteArray::number(static_cast<qlonglong>(value));
}

QByteArray time(double milliseconds)
{
    return QByteArray::number(milliseconds, 'f', 3);
}

/// What gets the call, or emits.
QByteArray ofObject(const QString& object, std::int64_t instance)
{
    const QByteArray name = ",\"object\":" + jsonString(object);
    return instance ? name + ",\"instance\":" + number(instance) : name;
}

QByteArray outcomeOf(const vexlite::CallOutcome& outcome, RecordWriter& writer)
{
    if (!outcome.exception.isEmpty()) {
        const vexlite::Failure failure = vexlite::failureOf(outcome.exception);
        return ",\"thrown\":{\"code\":" + number(failure.code) + ",\"msg\":" + jsonString(failure.msg) + '}';
    }
    if (const std::int64_t promise = vexlite::promiseHandle(outcome.result))
        return ",\"promise\":" + number(promise);
    return ",\"answer\":" + writer.value(outcome.result, ValueFrom::Library);
}

} // namespace

QByteArray Recorder::begin(const char* type, double at, const JSContextEnv* page, int within) const
{
    QByteArray line = "{\"at\":" + time(at) + ",\"type\":\"" + type + '"';
    if (page && m_pages.numberOf(*page) > 1)
        line += ",\"page\":" + number(m_pages.numberOf(*page));
    return within ? line + ",\"within\":" + number(within) : line;
}

void Recorder::pageOpened(const JSContextEnv& context, const QString& origin)
{
    if (m_pages.add(context) == 1)
        m_file->write("{\"novaRecording\":1,\"library\":\"" NOVAHOST_VERSION "\",\"origin\":"
            + jsonString(origin) + "}\n");
    else
        m_file->write(
            begin("page", m_pages.milliseconds(), &context) + ",\"origin\":" + jsonString(origin) + "}\n");
}

void Recorder::callEnded(const vexlite::CallFacts& call, const vexlite::CallOutcome& outcome)
{
    RecordWriter writer(MostOfValues);
    QByteArray line = begin("call", m_pages.millisecondsAt(call.start), &call.context, call.within)
        + ",\"id\":" + number(call.id) + ofObject(call.object, call.instance)
        + ",\"member\":" + jsonString(call.member);
    line += call.isProperty ? ",\"property\":true,\"arguments\":[]"
                            : ",\"arguments\":" + writer.list(call.arguments, ValueFrom::Page);
    line += outcomeOf(outcome, writer);
    m_file->write(line + ",\"duration\":" + time(millisecondsBetween(call.start, outcome.end)) + "}\n");
}

void Recorder::promiseSettled(const vexlite::SettledPromise& promise)
{
    const char* state = promise.state == JSPromiseState::Resolved ? "resolved" : "rejected";
    m_file->write(begin("settled", m_pages.millisecondsAt(promise.time), &promise.context)
        + ",\"promise\":" + number(promise.id) + ",\"state\":\"" + state
        + "\",\"value\":" + RecordWriter(MostOfValues).value(promise.value, ValueFrom::Library) + "}\n");
}

void Recorder::eventBegan(const vexlite::EventFacts& event)
{
    m_file->write(begin("event", m_pages.millisecondsAt(event.time), &event.context, event.within)
        + ofObject(event.object, event.instance) + ",\"event\":" + jsonString(event.event)
        + ",\"arguments\":" + RecordWriter(MostOfValues).list(event.arguments, ValueFrom::Library) + "}\n");
}

void Recorder::functionBegan(const vexlite::FunctionFacts& function)
{
    m_file->write(
        begin("callback", m_pages.millisecondsAt(function.start), &function.context, function.within)
        + ",\"function\":" + number(function.function) + ",\"arguments\":"
        + RecordWriter(MostOfValues).list(function.arguments, ValueFrom::Library) + "}\n");
}

void Recorder::stepPlayed(const QString& step)
{
    m_file->write(begin("play", m_pages.milliseconds(), nullptr) + ",\"step\":" + jsonString(step) + "}\n");
}

} // namespace novahost
