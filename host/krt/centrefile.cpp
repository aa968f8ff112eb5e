// {"format": 1, "shared": {key: value}, "users": {userId: {key: value}}}, with the values of storedvalue.h.
#include "host/krt/centrefile.h"

#include "host/krt/storedvalue.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSaveFile>
#include <cerrno>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace krt {

namespace {

using nlohmann::json;

Q_LOGGING_CATEGORY(centreLog, "krt.kcc")

constexpr int Format = 1;
constexpr std::chrono::milliseconds PollInterval(2);

/// A process's turn to update the file; others wait. The system ends it with the process. Only one of those who
/// wait is next, and who has just had a turn waits until that one has had its own: so nobody is left out.
class Turn {
public:
    Turn(const QString& path, std::chrono::milliseconds patience)
        : m_fd(open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
        , m_end(std::chrono::steady_clock::now() + patience)
    {
        m_has = m_fd >= 0 && waitFor(Next) && waitFor(Current);
        if (m_fd >= 0)
            lock(Next, F_UNLCK);
    }
    ~Turn()
    {
        if (m_fd >= 0)
            close(m_fd);
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    explicit operator bool() const { return m_has; }

private:
    enum Place : off_t { Next, Current };

    bool lock(Place place, short type) const
    {
        struct flock range = {};
        range.l_type = type;
        range.l_whence = SEEK_SET;
        range.l_start = place;
        range.l_len = 1;
        return fcntl(m_fd, F_OFD_SETLK, &range) == 0;
    }

    bool waitFor(Place place) const
    {
        while (!lock(place, F_WRLCK)) {
            if ((errno != EAGAIN && errno != EACCES && errno != EINTR)
                || std::chrono::steady_clock::now() > m_end)
                return false;
            std::this_thread::sleep_for(PollInterval);
        }
        return true;
    }

    int m_fd;
    std::chrono::steady_clock::time_point m_end;
    bool m_has = false;
};

void readGroup(const json& group, const QString& userId, CentreValues& values)
{
    if (!group.is_object())
        throw std::invalid_argument("values that are no object");
    for (const auto& entry : group.items())
        values.insert({ userId, decodeText(entry.key()) }, decodeValue(entry.value()));
}

CentreValues parse(const QByteArray& text)
{
    const json document = json::parse(text.begin(), text.end());
    if (document.at("format") != Format)
        throw std::invalid_argument("unknown format");
    CentreValues values;
    readGroup(document.at("shared"), {}, values);
    for (const auto& user : document.at("users").items())
        readGroup(user.value(), decodeText(user.key()), values);
    return values;
}

QByteArray print(const CentreValues& values)
{
    json shared = json::object();
    json users = json::object();
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        const auto stored = encodeValue(entry.value());
        Q_ASSERT(stored);
        json& group = entry.key().userId.isEmpty() ? shared : users[encodeText(entry.key().userId)];
        group[encodeText(entry.key().key)] = *stored;
    }
    const json document { { "format", Format }, { "shared", shared }, { "users", users } };
    return QByteArray::fromStdString(document.dump(2)) + '\n';
}

} // namespace

void applyChanges(const CentreChanges& changes, CentreValues& values)
{
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (change.value())
            values.insert(change.key(), *change.value());
        else
            values.remove(change.key());
    }
}

CentreFile::CentreFile(QString path)
    : m_path(std::move(path))
{
}

CentreFile::Found CentreFile::load(CentreValues& values)
{
    QFile file(m_path);
    if (!file.exists()) {
        values.clear();
        return Found::Whole;
    }
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (file.error() != QFileDevice::NoError) {
        qCWarning(centreLog, "%s can not be read: %s", qPrintable(m_path), qPrintable(file.errorString()));
        return Found::Unreadable;
    }
    try {
        values = parse(text);
        return Found::Whole;
    } catch (const std::exception& error) {
        qCWarning(centreLog, "%s is damaged: %s", qPrintable(m_path), error.what());
        return Found::Damaged;
    }
}

bool CentreFile::read(CentreValues& values)
{
    const Found found = load(values);
    if (found != Found::Damaged)
        return found == Found::Whole;
    return update(values, {});
}

bool CentreFile::update(
    CentreValues& values, const CentreChanges& changes, std::chrono::milliseconds patience)
{
    if (m_path.isEmpty())
        return false;
    QDir().mkpath(QFileInfo(m_path).path());
    const Turn turn(m_path + QStringLiteral(".lock"), patience);
    if (!turn) {
        qCWarning(centreLog, "%s can not be locked", qPrintable(m_path));
        return false;
    }
    CentreValues merged = values;
    const Found found = load(merged);
    if (found == Found::Unreadable || (found == Found::Damaged && !setAside()))
        return false;
    applyChanges(changes, merged);
    if (!save(merged))
        return false;
    values = merged;
    return true;
}

bool CentreFile::save(const CentreValues& values)
{
    QSaveFile file(m_path);
    const QByteArray text = print(values);
    const bool written = file.open(QIODevice::WriteOnly)
        && file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
        && file.write(text) == text.size() && file.commit();
    if (!written)
        qCWarning(centreLog, "%s can not be written: %s", qPrintable(m_path), qPrintable(file.errorString()));
    return written;
}

bool CentreFile::setAside()
{
    QString aside = m_path + QStringLiteral(".damaged");
    for (int number = 2; QFileInfo::exists(aside); ++number)
        aside = m_path + QStringLiteral(".damaged.%1").arg(number);
    const bool kept = QFile::rename(m_path, aside);
    qCWarning(centreLog, "the damaged file %s %s", kept ? "is kept as" : "can not be renamed to",
        qPrintable(aside));
    return kept;
}

} // namespace krt
