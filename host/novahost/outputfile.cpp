#include "host/novahost/outputfile.h"

#include "host/novahost/output.h"

#include <QFile>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace novahost {

namespace {

constexpr int LargestBuffer = 256 * 1024;

QString lastError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

/// Whether a file is empty or begins so.
bool hasOnly(int file, const QByteArray& beginning)
{
    QByteArray found(beginning.size(), '\0');
    const ssize_t size = pread(file, found.data(), static_cast<std::size_t>(found.size()), 0);
    return size == 0 || found == beginning;
}

} // namespace

std::unique_ptr<OutputFile> OutputFile::open(
    const QString& option, const QString& path, const QByteArray& beginning, QString& error)
{
    const QString name = option + QLatin1Char(' ') + path;
    // A pipe would be waited for without O_NONBLOCK.
    const int file = ::open(QFile::encodeName(path).constData(),
        O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) {
        error = name
            + (errno == ELOOP ? QStringLiteral(": is a symbolic link, which is not followed")
                              : QLatin1String(": ") + lastError());
        return nullptr;
    }
    std::unique_ptr<OutputFile> made(new OutputFile(name, file));
    struct stat facts { };
    if (fstat(file, &facts) != 0 || !S_ISREG(facts.st_mode))
        error = name + QLatin1String(": is no plain file");
    else if (flock(file, LOCK_EX | LOCK_NB) != 0)
        error = name + QLatin1String(": is being written already");
    else if (!hasOnly(file, beginning))
        error = name + QLatin1String(": has other content, which is not overwritten");
    else if (ftruncate(file, 0) != 0)
        error = name + QLatin1String(": ") + lastError();
    return error.isEmpty() ? std::move(made) : nullptr;
}

OutputFile::OutputFile(QString name, int file)
    : m_name(std::move(name))
    , m_file(file)
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { flush(); });
}

OutputFile::~OutputFile()
{
    flush();
    close(m_file);
}

void OutputFile::write(const QByteArray& text)
{
    if (m_failed)
        return;
    m_left += text;
    if (m_left.size() > LargestBuffer)
        flush();
    else if (!m_timer.isActive())
        m_timer.start(0);
}

void OutputFile::flush()
{
    const QByteArray text = std::exchange(m_left, {});
    for (int done = 0; !m_failed && done < text.size();) {
        const ssize_t written =
            ::write(m_file, text.constData() + done, static_cast<std::size_t>(text.size() - done));
        if (written > 0) {
            done += static_cast<int>(written);
        } else if (written == 0 || errno != EINTR) {
            m_failed = true;
            fail(Failure, QStringLiteral("%1: %2; the file is not complete").arg(m_name, lastError()));
        }
    }
}

bool OutputFile::finish()
{
    flush();
    return !m_failed;
}

} // namespace novahost
