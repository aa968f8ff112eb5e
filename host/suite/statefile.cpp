#include "host/suite/statefile.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QSaveFile>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace suite {

namespace {

Q_LOGGING_CATEGORY(stateLog, "suite.state")

/// Waits until no other process changes the file.
class FileLock {
public:
    explicit FileLock(const QString& path)
        : m_file(open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR))
    {
        if (m_file < 0 || TEMP_FAILURE_RETRY(flock(m_file, LOCK_EX)) != 0)
            qCWarning(stateLog, "%s can not be locked", qPrintable(path));
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock()
    {
        if (m_file >= 0)
            close(m_file);
    }

private:
    int m_file;
};

} // namespace

StateFile::StateFile(QString path)
    : m_path(std::move(path))
{
}

QJsonObject StateFile::read() const
{
    QFile file(m_path);
    // Only files: opening a pipe would never end.
    if (!QFileInfo(m_path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    QJsonObject content = QJsonDocument::fromJson(file.readAll()).object();
    if (content.isEmpty()) {
        qCWarning(stateLog, "%s can not be understood and is set aside", qPrintable(m_path));
        const QString aside = m_path + QStringLiteral(".damaged");
        QFile::remove(aside);
        file.rename(aside);
    }
    return content;
}

bool StateFile::update(const std::function<void(QJsonObject& content)>& change) const
{
    const FileLock lock(m_path + QStringLiteral(".lock"));
    QJsonObject content = read();
    change(content);
    const QByteArray text = QJsonDocument(content).toJson();
    if (QJsonDocument::fromJson(text).object() != content) {
        qCWarning(stateLog, "%s: what is to be written could not be read again", qPrintable(m_path));
        return false;
    }
    QSaveFile file(m_path);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return true;
    qCWarning(stateLog, "%s can not be written: %s", qPrintable(m_path), qPrintable(file.errorString()));
    return false;
}

} // namespace suite
