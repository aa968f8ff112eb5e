#include "host/novahost/tracelines.h"

#include "host/novahost/output.h"
#include "host/vexlite/scriptvalues.h"
#include "host/vexlite/valuetext.h"

namespace novahost {

namespace {

QString duration(double milliseconds)
{
    return milliseconds < 1   ? QStringLiteral("%1 us").arg(milliseconds * 1000, 0, 'f', 0)
        : milliseconds < 1000 ? QStringLiteral("%1 ms").arg(milliseconds, 0, 'f', 1)
                              : QStringLiteral("%1 s").arg(milliseconds / 1000, 0, 'f', 2);
}

QString describeFailure(const KJSVariant& exception)
{
    const vexlite::Failure failure = vexlite::failureOf(exception);
    return QStringLiteral("code %1 %2")
        .arg(failure.code)
        .arg(QString::fromUtf8(vexlite::jsonString(failure.msg)));
}

/// Without the envelope, which every answer has.
QString describeAnswer(const KJSVariant& result)
{
    const IJSONValue* envelope = vexlite::objectOf(result);
    KJSVariant data;
    if (envelope && envelope->Count() == 2 && envelope->GetBoolean(QStringLiteral("success"), false)
        && envelope->Get(QStringLiteral("data"), data) == KR_OK)
        return vexlite::summaryOf(data);
    return vexlite::summaryOf(result);
}

/// Of values at the prompt, too.
enum Color { Name = 36, Dim = 90, Red = 31 };

/// On a terminal that shows colours.
QString paint(Color color, const QString& text)
{
    static const bool isColored = useColors(stderr);
    return isColored
        ? QStringLiteral("\033[%1m%2\033[39m").arg(int(color)).arg(vexlite::withoutControls(text))
        : vexlite::withoutControls(text);
}

/// In the colour of what surrounds it. Whatever pages have made goes through one of the two.
QString plain(const QString& text)
{
    return vexlite::withoutControls(text);
}

QString timeTaken(double milliseconds)
{
    return QLatin1String("  ") + paint(Dim, duration(milliseconds));
}

} // namespace

QString TraceLines::pageOf(const JSContextEnv& context) const
{
    return m_pages.count() > 1 ? QStringLiteral("page %1: ").arg(m_pages.numberOf(context)) : QString();
}

void TraceLines::print(double at, int depth, const QString& text) const
{
    const QString indent(2 * depth, QLatin1Char(' '));
    printLine(
        paint(Dim, QStringLiteral("%1 ms").arg(at, 9, 'f', 1)) + QLatin1String("  ") + indent + text, true);
}

void TraceLines::printOpen()
{
    int depth = 0;
    for (Open& open : m_open) {
        if (!std::exchange(open.isPrinted, true))
            print(open.at, depth, open.text);
        ++depth;
    }
}

void TraceLines::begin(const JSContextEnv& context, vexlite::TraceTime start, const QString& text)
{
    printOpen();
    m_open.push_back({ m_pages.millisecondsAt(start), pageOf(context) + text });
}

void TraceLines::end(const QString& outcome)
{
    if (m_open.empty())
        return;
    const Open open = m_open.back();
    m_open.pop_back();
    const int depth = static_cast<int>(m_open.size());
    if (open.isPrinted)
        print(m_pages.milliseconds(), depth, outcome);
    else
        print(open.at, depth, open.text + QLatin1Char(' ') + outcome);
}

void TraceLines::pageOpened(const JSContextEnv& context, const QString& origin)
{
    const int page = m_pages.add(context);
    if (page > 1)
        print(m_pages.milliseconds(), 0, QStringLiteral("page %1: %2").arg(page).arg(plain(origin)));
}

void TraceLines::callBegan(const vexlite::CallFacts& call)
{
    begin(call.context, call.start,
        paint(Name, nameOf(call.object, call.instance) + QLatin1Char('.') + call.member)
            + (call.isProperty ? QString() : plain(vexlite::summaryOf(call.arguments))));
}

void TraceLines::callEnded(const vexlite::CallFacts& call, const vexlite::CallOutcome& outcome)
{
    const QString time = timeTaken(millisecondsBetween(call.start, outcome.end));
    if (!outcome.exception.isEmpty())
        return end(paint(Red, QLatin1String("failed: ") + describeFailure(outcome.exception)) + time);
    if (const std::int64_t promise = vexlite::promiseHandle(outcome.result))
        m_promises.insert(promise, outcome.end);
    end(QString::fromUtf8("→ ") + plain(describeAnswer(outcome.result)) + time);
}

void TraceLines::promiseSettled(const vexlite::SettledPromise& promise)
{
    printOpen();
    const bool isResolved = promise.state == JSPromiseState::Resolved;
    const QString member = nameOf(promise.object, 0) + QLatin1Char('.') + promise.member;
    QString text = pageOf(promise.context) + QStringLiteral("promise %1 ").arg(promise.id)
        + (promise.object.isEmpty() ? QString()
                                    : QLatin1String("of ") + paint(Name, member) + QLatin1Char(' '))
        + (isResolved ? QLatin1String("resolved: ") + plain(vexlite::summaryOf(promise.value))
                      : paint(Red, QLatin1String("rejected: ") + describeFailure(promise.value)));
    if (const auto made = m_promises.find(promise.id); made != m_promises.end()) {
        text += QLatin1String("  ")
            + paint(Dim,
                QLatin1String("after ") + duration(std::max(0.0, millisecondsBetween(*made, promise.time))));
        m_promises.erase(made);
    }
    print(m_pages.millisecondsAt(promise.time), static_cast<int>(m_open.size()), text);
}

void TraceLines::eventBegan(const vexlite::EventFacts& event)
{
    begin(event.context, event.time,
        QStringLiteral("event %1 of %2%3")
            .arg(paint(Name, event.event), plain(nameOf(event.object, event.instance)),
                plain(vexlite::summaryOf(event.arguments))));
    printOpen();
}

void TraceLines::eventEnded(const vexlite::EventFacts&)
{
    if (!m_open.empty())
        m_open.pop_back();
}

void TraceLines::functionBegan(const vexlite::FunctionFacts& function)
{
    begin(function.context, function.start,
        QStringLiteral("function %1%2 called")
            .arg(function.function)
            .arg(plain(vexlite::summaryOf(function.arguments))));
    printOpen();
}

void TraceLines::functionEnded(const vexlite::FunctionFacts&, vexlite::TraceTime)
{
    if (!m_open.empty())
        m_open.pop_back();
}

void TraceLines::stepPlayed(const QString& step)
{
    printOpen();
    print(m_pages.milliseconds(), static_cast<int>(m_open.size()), QLatin1String("play ") + plain(step));
}

} // namespace novahost
