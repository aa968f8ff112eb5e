#include "host/web/framescript.h"

namespace engine::web {

namespace {

QString nextText(WireReader& reader)
{
    return reader.text().toString();
}

void readPlace(WireReader& reader, Outcome& outcome)
{
    outcome.stack = nextText(reader);
    const QString code = nextText(reader);
    outcome.hasCode = !code.isEmpty();
    outcome.code = code.toInt();
    outcome.report = nextText(reader);
}

} // namespace

void FrameScript::finishScript(WireReader& reader, const std::function<void()>& exit)
{
    Outcome outcome;
    const int ticket = nextText(reader).toInt();
    outcome.ok = !reader.text().isEmpty();
    outcome.text = nextText(reader);
    outcome.json = nextText(reader);
    readPlace(reader, outcome);
    if (const auto scriptFailed = host.scriptFailed; scriptFailed && !outcome.ok) {
        scriptFailed(outcome);
        exit();
    } else if (const auto finish = finished) {
        finish(ticket, outcome);
    }
}

QString FrameScript::report(WireReader& reader, const std::function<void()>& exit)
{
    QString fault;
    while (!reader.atEnd()) {
        Outcome outcome;
        switch (reader.unit()) {
        case 'p': {
            const bool isError = !reader.text().isEmpty();
            const QString line = nextText(reader);
            if (const auto console = host.console)
                console(line, isError);
            break;
        }
        case 'x': {
            const int code = nextText(reader).toInt();
            // First: the host may look at what there is.
            if (const auto exitRequested = host.exitRequested)
                exitRequested(code);
            exit();
            break;
        }
        case 'b':
            if (const auto began = host.began)
                began();
            break;
        case 't':
            timers = nextText(reader).toInt();
            break;
        case 'q': {
            const int ticket = nextText(reader).toInt();
            const int exitCode = nextText(reader).toInt();
            if (const auto report = settled)
                report(ticket, exitCode);
            break;
        }
        case 'u':
            outcome.text = nextText(reader);
            readPlace(reader, outcome);
            if (const auto uncaughtError = host.uncaughtError)
                uncaughtError(outcome);
            break;
        case 'f':
            finishScript(reader, exit);
            break;
        case 's': {
            const QString steps = nextText(reader);
            const auto play = host.play;
            fault = play ? play(steps) : QStringLiteral("this page has nothing to play");
            break;
        }
        default:
            return fault;
        }
    }
    return fault;
}

} // namespace engine::web
