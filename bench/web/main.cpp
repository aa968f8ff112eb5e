#include "bench/web/calls.h"
#include "bench/web/manyviews.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <unistd.h>

namespace {

/// Views are drawn into memory unless somebody wants to see them; root can not have the browser's sandbox.
void setUpEnvironment()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qgetenv("QT_QPA_PLATFORM") == "offscreen" && qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    // All views with the same flags, whether the plug-in is there or not.
    if (qEnvironmentVariableIsEmpty("QTWEBENGINE_CHROMIUM_FLAGS"))
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            "--disable-gpu --disable-background-networking --disable-component-update --disable-sync "
            "--disable-domain-reliability");
    if (geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

} // namespace

int main(int argc, char** argv)
{
    setUpEnvironment();
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    if (argc == 3 && argv[1] == std::string("--views"))
        return bench::openManyViews(argv[2]);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    bench::closePages();
    benchmark::Shutdown();
    return 0;
}
