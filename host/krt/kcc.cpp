#include "krt/kcc.h"

#include "host/krt/centre.h"
#include "host/krt/centrefile.h"
#include "host/krt/storedvalue.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QObject>
#include <QQueue>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

namespace krt::kcc {

namespace {

constexpr int WriteDelayMs = 200;
constexpr int RetryDelayMs = 5000;
/// At the end there is no later.
constexpr std::chrono::seconds LastPatience(15);

Q_LOGGING_CATEGORY(centreLog, "krt.kcc")

/// The values of one data directory: those last read from the file, with pending changes applied.
class Centre : public QObject {
public:
    Centre();
    ~Centre() override { leaveFile(); }

    /// Switches to the current data directory.
    void useDataDirectory();

    const CentreValues& values() const { return m_values; }
    bool contains(const CentreKey& key) const { return m_values.contains(key); }
    void change(const CentreKey& key, const std::optional<QVariant>& value);
    /// Writes `changes` and all pending ones.
    bool write(const CentreChanges& changes) { return write(changes, std::chrono::seconds(5)); }
    bool writePending() { return m_pending.isEmpty() || write({}); }
    bool writeLast() { return m_pending.isEmpty() || write({}, LastPatience); }
    int pendingChanges() const { return m_pending.size(); }
    void readAgain();

    void complete(Completion completion, bool success, const QString& key, const QVariant& value,
        const QVariantMap& context);
    void runCompletions();

private:
    bool write(const CentreChanges& changes, std::chrono::milliseconds patience);
    void leaveFile();

    CentreFile m_file { {} };
    CentreValues m_values;
    CentreChanges m_pending;
    QTimer m_timer;
    QQueue<std::function<void()>> m_completions;
};

std::unique_ptr<Centre>& slot()
{
    // The data directory is initialised first, so a temporary one is removed after the last write.
    static std::unique_ptr<Centre> centre = (profile::dataDirectory(), nullptr);
    return centre;
}

Centre& centre()
{
    if (!slot()) {
        slot() = std::make_unique<Centre>();
        // Qt objects must not outlive the application. This also writes pending changes if there was no event
        // loop.
        qAddPostRoutine([] { slot().reset(); });
    }
    slot()->useDataDirectory();
    return *slot();
}

Centre::Centre()
{
    m_timer.setSingleShot(true);
    QObject::connect(&m_timer, &QTimer::timeout, this, [this] {
        if (!writePending())
            m_timer.start(RetryDelayMs);
    });
    if (auto* application = QCoreApplication::instance())
        QObject::connect(application, &QCoreApplication::aboutToQuit, this, [] { shutdown(); });
}

void Centre::useDataDirectory()
{
    const QString directory = profile::dataDirectory();
    const QString path = directory.isEmpty() ? QString() : directory + QStringLiteral("/config-centre.json");
    if (path == m_file.path())
        return;
    leaveFile();
    m_values.clear();
    m_file = CentreFile(path);
    m_file.read(m_values);
}

void Centre::leaveFile()
{
    if (!writePending())
        qCWarning(centreLog, "%d changes of %s are lost", m_pending.size(), qPrintable(m_file.path()));
    m_pending.clear();
}

void Centre::change(const CentreKey& key, const std::optional<QVariant>& value)
{
    CentreChanges changes;
    changes.insert(key, value);
    applyChanges(changes, m_values);
    m_pending.insert(key, changes.first());
    if (!QCoreApplication::instance())
        writePending();
    else if (!m_timer.isActive())
        m_timer.start(WriteDelayMs);
}

bool Centre::write(const CentreChanges& changes, std::chrono::milliseconds patience)
{
    CentreChanges all = m_pending;
    for (auto change = changes.begin(); change != changes.end(); ++change)
        all[change.key()] = change.value();
    if (!m_file.update(m_values, all, patience))
        return false;
    m_pending.clear();
    m_timer.stop();
    return true;
}

void Centre::readAgain()
{
    writePending();
    m_file.read(m_values);
    applyChanges(m_pending, m_values);
}

void Centre::complete(Completion completion, bool success, const QString& key, const QVariant& value,
    const QVariantMap& context)
{
    if (!completion)
        return;
    m_completions.enqueue([=] { completion(success, key, value, context); });
    QMetaObject::invokeMethod(
        this, [this] { runCompletions(); }, Qt::QueuedConnection);
}

void Centre::runCompletions()
{
    // Only those that are due now: a completion may start a flush with another one.
    for (int due = m_completions.size(); due > 0 && !m_completions.isEmpty(); --due)
        m_completions.dequeue()();
}

bool serviceOn()
{
    return profile::serviceOn(QStringLiteral("configCentre"));
}

template <typename Options> bool isAcceptable(const QString& key, const Options& options)
{
    return serviceOn() && !key.isEmpty() && options.mode == 0;
}

} // namespace

bool setValue(const QString& key, const QVariant& value, const WriteOptions& options)
{
    if (!isAcceptable(key, options) || !encodeValue(value))
        return false;
    centre().change({ options.userId, key }, value);
    return true;
}

QVariant value(const QString& key, const QVariant& fallback, const ReadOptions& options)
{
    return isAcceptable(key, options) ? centre().values().value({ options.userId, key }, fallback) : fallback;
}

bool remove(const QString& key, const WriteOptions& options)
{
    const CentreKey name { options.userId, key };
    if (!isAcceptable(key, options) || !centre().contains(name))
        return false;
    centre().change(name, std::nullopt);
    return true;
}

QVariant flushRead(const QString& key, const QVariant& fallback, const ReadOptions& options)
{
    if (!isAcceptable(key, options))
        return fallback;
    centre().readAgain();
    return value(key, fallback, options);
}

bool flushWrite(const QString& key, const QVariant& value, Completion completion, const QVariantMap& context,
    const WriteOptions& options)
{
    const bool written = isAcceptable(key, options) && encodeValue(value)
        && centre().write(CentreChanges { { CentreKey { options.userId, key }, value } });
    centre().complete(completion, written, key, value, context);
    return written;
}

bool flushRemove(
    const QString& key, Completion completion, const QVariantMap& context, const WriteOptions& options)
{
    const CentreKey name { options.userId, key };
    bool removed = false;
    if (isAcceptable(key, options)) {
        centre().readAgain();
        removed = centre().contains(name) && centre().write(CentreChanges { { name, std::nullopt } });
    }
    centre().complete(completion, removed, key, {}, context);
    return removed;
}

bool shutdown()
{
    if (!slot())
        return true;
    const bool written = slot()->writeLast();
    slot()->runCompletions();
    return written;
}

int pendingChanges()
{
    return slot() ? slot()->pendingChanges() : 0;
}

} // namespace krt::kcc
