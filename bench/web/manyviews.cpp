// Views made one after the other in a process of their own, and the memory that they take.
#include "bench/web/manyviews.h"

#include "bench/web/page.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QThread>
#include <cstdio>
#include <vector>

namespace bench {

namespace {

constexpr int Views = 50;
constexpr char Touch[] = "() => { for (const name of Object.keys(NovaExtension)) NovaExtension[name]; }";
constexpr int FewViews = 10; ///< what is there once has been made by then

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The proportional set size of a process and all that it has started. A page counts for as much as its share.
qint64 treeKiB(const QString& process)
{
    static const QRegularExpression pss(
        QStringLiteral("^Pss:\\s+(\\d+)"), QRegularExpression::MultilineOption);
    const QString directory = QStringLiteral("/proc/") + process;
    qint64 sum = pss.match(QString::fromLatin1(contentOf(directory + QStringLiteral("/smaps_rollup"))))
                     .captured(1)
                     .toLongLong();
    for (const QString& thread :
        QDir(directory + QStringLiteral("/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QByteArray children =
            contentOf(directory + QStringLiteral("/task/") + thread + QStringLiteral("/children"));
        for (const QByteArray& child : children.simplified().split(' ')) {
            if (!child.isEmpty())
                sum += treeKiB(QString::fromLatin1(child));
        }
    }
    return sum;
}

/// When nothing has been going on for a while.
qint64 settledKiB()
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 2'000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    return treeKiB(QString::number(QCoreApplication::applicationPid()));
}

void manyViews(benchmark::State& state, const char* kind)
{
    for (auto _ : state) {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QCoreApplication::applicationFilePath(),
            { QStringLiteral("--views"), QString::fromLatin1(kind) });
        process.waitForFinished(-1);
        double first = 0;
        double last = 0;
        double memory = 0;
        if (std::sscanf(process.readAllStandardOutput().constData(), "%lf %lf %lf", &first, &last, &memory)
            != 3) {
            state.SkipWithError("the process has failed");
            return;
        }
        state.SetIterationTime(first / 1000);
        state.counters["last_ms"] = last;
        state.counters["view_KiB"] = memory;
    }
}
BENCHMARK_CAPTURE(manyViews, bare, "bare")
    ->Name("web_views/bare")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3);
BENCHMARK_CAPTURE(manyViews, library, "library")
    ->Name("web_views/library")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3);
BENCHMARK_CAPTURE(manyViews, touched, "touched")
    ->Name("web_views/touched")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3);

} // namespace

int openManyViews(const char* kind)
{
    const bool isBare = kind == std::string("bare");
    const bool isTouched = kind == std::string("touched");
    std::unique_ptr<Library> library(isBare ? nullptr : new Library);
    std::unique_ptr<BareProfile> profile(isBare ? new BareProfile : nullptr);
    std::vector<std::unique_ptr<Page>> pages;
    double first = 0;
    double last = 0;
    qint64 few = 0;
    for (int i = 0; i < Views; ++i) {
        if (i == FewViews)
            few = settledKiB();
        QElapsedTimer timer;
        timer.start();
        pages.push_back(isBare ? openBarePage(*profile, false) : library->openPage());
        last = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        first = i == 0 ? last : first;
        // Every page runs some script: without any it would have no script engine either.
        pages.back()->measure(QString::fromLatin1(isTouched ? Touch : "() => {}"), 0);
    }
    const double memory = static_cast<double>(settledKiB() - few) / (Views - FewViews);
    std::printf("%f %f %f\n", first, last, memory);
    std::fflush(stdout);
    pages.clear();
    return 0;
}

} // namespace bench
