#include "host/cloudd/service.h"

#include "host/cloudd/procedures.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <unistd.h>

namespace cloudd {

namespace {

QString openCore(Core& core, const QString& directory)
{
    const Descriptor folder = openFolder(QFile::encodeName(directory));
    if (!folder)
        return QStringLiteral("\"%1\": can not be made or opened").arg(directory);
    QString error = core.store.open(directory + QStringLiteral("/records.sqlite"));
    if (error.isEmpty())
        error = core.contents.open(directory);
    if (error.isEmpty())
        error = core.places.open(directory);
    if (!error.isEmpty())
        return error;
    // So that new folders survive a power failure.
    const Descriptor above = openFolder(QFile::encodeName(QFileInfo(directory).path()));
    if (fsync(folder.get()) != 0 || !above || fsync(above.get()) != 0)
        return QStringLiteral("\"%1\": can not be written to").arg(directory);
    try {
        core.contents.sweep([&](const QString& sha256) { return core.store.isContentUsed(sha256); });
        core.transfers.resume();
    } catch (const Error&) {
        return QStringLiteral("\"%1\": its records can not be read").arg(directory);
    }
    return {};
}

} // namespace

Service::Service(const Settings& settings, QString& error)
    : m_core(std::make_unique<Core>(settings))
{
    m_core->notify = [this](const QString& userId, const QMap<QString, QString>& actions) {
        Q_EMIT notice(userId, actions);
    };
    connect(&m_core->transfers, &Transfers::notice, this, &Service::notice);
    const auto rest = [this] {
        if (!isBusy())
            Q_EMIT idle();
    };
    connect(&m_core->syncFolders, &SyncFolders::notice, this, &Service::notice);
    connect(&m_core->transfers, &Transfers::idle, this, rest);
    connect(&m_core->syncFolders, &SyncFolders::idle, this, rest);
    connect(&m_core->copies, &JobQueue::idle, this, rest);
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
    const auto isSame = [&](const std::weak_ptr<Session>& known) { return known.lock() == session; };
    if (std::none_of(m_core->sessions.begin(), m_core->sessions.end(), isSame))
        m_core->sessions.push_back(session);
    findProcedure(procedure)->run(*m_core, *session, argument, std::move(reply));
}

bool Service::isBusy() const
{
    return m_core->transfers.isBusy() || m_core->syncFolders.isBusy() || m_core->copies.size() > 0;
}

} // namespace cloudd
