#include "host/novahost/rerun.h"

#include "host/novahost/output.h"
#include "host/novahost/signals.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDirIterator>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QHash>
#include <QProcess>
#include <QTimer>
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

namespace novahost {

namespace {

constexpr int SettlingMs = 100; ///< an editor changes a file in several steps
constexpr int EndingMs = 3000;  ///< for a run to end before it is killed
constexpr int MaximumFiles = 1000;
constexpr int InterruptedCode = 128 + SIGINT;

/// Files that a module may come from, without hidden ones and packages.
QStringList filesIn(const QString& folder)
{
    QStringList files;
    QDirIterator all(folder, QDir::Files, QDirIterator::Subdirectories);
    while (all.hasNext() && files.size() < MaximumFiles) {
        const QString file = all.next();
        if (!file.contains(QLatin1String("/node_modules/")))
            files.append(file);
    }
    return files;
}

/// Ends with this one, also when that is killed.
class Run final : public QProcess {
    void setupChildProcess() override
    {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != m_parent)
            _exit(InterruptedCode);
    }

    const pid_t m_parent = getpid();
};

class Reruns {
public:
    Reruns(const Options& options, const QStringList& arguments)
        : m_options(options)
    {
        m_run.setProgram(QCoreApplication::applicationFilePath());
        m_run.setArguments(arguments);
        m_run.setProcessChannelMode(QProcess::ForwardedChannels);
        m_run.setInputChannelMode(QProcess::ForwardedInputChannel);
        m_settling.setSingleShot(true);
        m_settling.setInterval(SettlingMs);
        m_patience.setSingleShot(true);
        m_patience.setInterval(EndingMs);
        QObject::connect(&m_files, &QFileSystemWatcher::fileChanged, [this] { m_settling.start(); });
        QObject::connect(&m_files, &QFileSystemWatcher::directoryChanged, [this] { m_settling.start(); });
        QObject::connect(&m_settling, &QTimer::timeout, [this] { restart(); });
        QObject::connect(&m_patience, &QTimer::timeout, [this] { m_run.kill(); });
        QObject::connect(&m_run, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
            [this](int code, QProcess::ExitStatus status) { ended(code, status); });
    }

    ~Reruns()
    {
        m_run.disconnect();
        m_run.terminate();
        if (!m_run.waitForFinished(EndingMs))
            m_run.kill();
        m_run.waitForFinished();
    }

    void start()
    {
        watchFiles();
        m_run.start();
    }

    /// The run gets the signal of a terminal, too, but not one that a process has sent to this one alone.
    void interrupt(bool isForThisProcess)
    {
        if (m_run.state() == QProcess::NotRunning)
            QCoreApplication::exit(InterruptedCode);
        else if (isForThisProcess && m_run.processId() > 0)
            ::kill(static_cast<pid_t>(m_run.processId()), SIGINT);
    }

private:
    /// All anew: files that an editor has replaced are not watched any more.
    void watchFiles()
    {
        m_state = state();
        m_files.addPaths(m_state.keys());
        // A file that is replaced is missed first, and then found in its directory.
        m_files.addPath(QFileInfo(m_options.script).absolutePath());
    }

    /// The watched files that there are, and which state they are in.
    QHash<QString, QPair<QDateTime, qint64>> state() const
    {
        const QFileInfo script(m_options.script);
        QStringList files { script.absoluteFilePath() };
        if (!m_options.profileFile.isEmpty())
            files.append(m_options.profileFile);
        if (m_options.browser)
            files.append(filesIn(script.absolutePath()));
        QHash<QString, QPair<QDateTime, qint64>> found;
        for (const QString& file : qAsConst(files)) {
            if (const QFileInfo info(file); info.exists())
                found.insert(file, { info.lastModified(), info.size() });
        }
        return found;
    }

    void restart()
    {
        // Without the script it waits until it is there again.
        if (m_isRestarting || !QFileInfo::exists(m_options.script) || state() == m_state)
            return;
        printLine(
            QStringLiteral("novahost: a file has changed, running %1 again").arg(m_options.script), true);
        m_isRestarting = m_run.state() != QProcess::NotRunning;
        if (!m_isRestarting)
            return start();
        m_run.terminate();
        m_patience.start();
    }

    void ended(int code, QProcess::ExitStatus status)
    {
        m_patience.stop();
        if (std::exchange(m_isRestarting, false))
            return start();
        if (status == QProcess::NormalExit && code == InterruptedCode)
            return QCoreApplication::exit(code);
        printLine(status == QProcess::NormalExit
                ? QStringLiteral("novahost: ended with exit code %1, waiting for changes").arg(code)
                : QStringLiteral("novahost: crashed, waiting for changes"),
            true);
    }

    const Options& m_options;
    QFileSystemWatcher m_files;
    Run m_run;
    QTimer m_settling;
    QTimer m_patience;
    QHash<QString, QPair<QDateTime, qint64>> m_state; ///< when the last run began
    bool m_isRestarting = false;
};

} // namespace

int rerunScript(const Options& options, const QStringList& arguments)
{
    Signals signals;
    Reruns reruns(options, arguments);
    signals.setInterrupt([&] { reruns.interrupt(signals.isForThisProcess()); });
    QTimer::singleShot(0, [&] { reruns.start(); });
    return signals.exitCode(QCoreApplication::exec());
}

} // namespace novahost
