#include "host/cloudd/service.h"

#include "host/cloudd/procedures.h"

#include <QDir>
#include <QFile>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace cloudd {

namespace {

/// Held until the process ends, however it does. The one before may be about to.
Descriptor lockOf(const QString& directory)
{
    Descriptor lock(::open(QFile::encodeName(directory + QStringLiteral("/lock")).constData(),
        O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    for (int attempt = 0; lock && attempt < 20; ++attempt) {
        if (flock(lock.get(), LOCK_EX | LOCK_NB) == 0)
            return lock;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return Descriptor();
}

QString openCore(Core& core, const QString& directory)
{
    QDir().mkpath(QFileInfo(directory).path());
    const Descriptor place = openFolder(QFile::encodeName(directory));
    if (!place)
        return QStringLiteral("\"%1\": can not be made or opened").arg(directory);
    core.lock = lockOf(directory);
    if (!core.lock)
        return QStringLiteral("\"%1\": another process uses it, or it can not be written to").arg(directory);
    QString error = core.store.open(directory + QStringLiteral("/records.sqlite"));
    if (error.isEmpty())
        error = core.contents.open(directory);
    if (error.isEmpty())
        error = core.places.open(directory);
    if (!error.isEmpty())
        return error;
    // What has just been made survives from now on, too.
    const Descriptor above = openFolder(QFile::encodeName(QFileInfo(directory).path()));
    if (fsync(place.get()) != 0 || !above || fsync(above.get()) != 0)
        return QStringLiteral("\"%1\": can not be written to").arg(directory);
    try {
        core.contents.sweep([&](const QString& sha256) { return core.store.isNamed(sha256); });
        core.transfers.resume();
    } catch (const Refusal&) {
        return QStringLiteral("\"%1\": its records can not be read").arg(directory);
    }
    return {};
}

} // namespace

Service::Service(const Settings& settings, QString& error)
    : m_core(std::make_unique<Core>(settings.uploadBytesPerSecond))
{
    m_core->notify = [this](const QString& userId, const QMap<QString, QString>& actions) {
        Q_EMIT notice(userId, actions);
    };
    connect(&m_core->transfers, &Transfers::notice, this, &Service::notice);
    const auto rest = [this] {
        if (!isBusy())
            Q_EMIT idle();
    };
    connect(&m_core->transfers, &Transfers::idle, this, rest);
    connect(&m_core->copies, &Rounds::idle, this, rest);
    error = openCore(*m_core, QDir::cleanPath(settings.directory));
}

Service::~Service() = default;

bool Service::knows(std::string_view procedure)
{
    return findProcedure(procedure) != nullptr;
}

void Service::handle(
    const std::shared_ptr<Session>& session, std::string_view procedure, const void* argument, Reply reply)
{
    findProcedure(procedure)->run(*m_core, *session, argument, std::move(reply));
}

bool Service::isBusy() const
{
    return m_core->transfers.isBusy() || m_core->copies.size() > 0;
}

} // namespace cloudd
