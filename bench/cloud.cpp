// Requests to the cloud process and back, against the same bytes sent through a bare local socket and back;
// and many requests at once.
#include "bench/cloud.h"
#include "host/cloudwire/frames.h"
#include "host/suite/cloud/cloudservice.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace bench {

namespace {

nova::lark::LarkIpcArg request()
{
    nova::lark::LarkIpcArg envelope;
    envelope.method = "getRoamingMode";
    envelope.argMap = { { "userId", "user-1" } };
    return envelope;
}

/// Sends so many requests and waits for all replies.
void ask(Replies& replies, int count)
{
    static const nova::lark::LarkIpcArg envelope = request();
    static const QString procedure = QStringLiteral("larkIpcCall"), slot = QStringLiteral("onReply");
    replies.arrived = 0;
    for (int i = 0; i < count; ++i) {
        if (suite::CloudService::instance()
                .invoke(procedure, { "LarkIpcArg", &envelope }, &replies, slot)
                .isEmpty())
            qFatal("The cloud service takes no request.");
    }
    while (replies.arrived < count)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    if (replies.failed > 0)
        qFatal("The cloud process does not answer.");
}

void roundTrip(benchmark::State& state)
{
    Replies replies;
    ask(replies, 1);
    for (auto _ : state)
        ask(replies, 1);
}

void echo(benchmark::State& state)
{
    const QTemporaryDir place;
    const QString name = place.filePath(QStringLiteral("echo"));
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/bench_echo"), { name });
    QLocalSocket socket;
    QElapsedTimer patience;
    patience.start();
    while (socket.state() != QLocalSocket::ConnectedState) {
        if (patience.hasExpired(10000))
            qFatal("bench_echo does not listen.");
        socket.connectToServer(name);
    }
    const nova::lark::LarkIpcArg envelope = request();
    const QByteArray bytes = cloudwire::FrameCodec().encode(
        { cloudwire::Kind::Call, "larkIpcCall", 1 }, *cloudwire::findArgumentType("larkIpcCall"), &envelope);
    for (auto _ : state) {
        socket.write(bytes);
        while (socket.bytesAvailable() < bytes.size())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        socket.readAll();
    }
    socket.disconnectFromServer();
    process.waitForFinished();
}

void inFlight(benchmark::State& state)
{
    Replies replies;
    ask(replies, 1);
    for (auto _ : state)
        ask(replies, static_cast<int>(state.range(0)));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(roundTrip)->Name("round_trip/invoke")->UseRealTime();
BENCHMARK(echo)->Name("round_trip/QLocalSocket")->UseRealTime();
BENCHMARK(inFlight)->Name("in_flight")->Arg(100)->Arg(10000)->UseRealTime();

} // namespace

} // namespace bench
