#include "local/settingsfile.h"

#include "local/treechanges.h"

#include <QCache>
#include <QFile>
#include <QLockFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <algorithm>

namespace jsapi {

namespace {

constexpr int MaxBytes = 16 << 20;
/// How long to wait while others store something. It takes them a moment.
constexpr int LockMs = 1000;
/// A lock has some short lines.
constexpr int MaxLockBytes = 4096;

/// In a file: enough for 10,000 maps in each other, or for objects of 30,000 characters.
constexpr int MaxZeros = 30'000;

/// A path for a copy, which no other has or had: QSettings knows contents by their paths.
QString makeCopyPath()
{
    static const QTemporaryDir copies;
    static int number = 0;
    return copies.filePath(QString::number(++number));
}

/// Whether a lock can be had at a path: nothing is there, or a lock, which may be left over. QLockFile opens
/// whatever is there, and takes any old file for one that is left over and removes it.
bool mayLock(const QString& path)
{
    const std::optional<WritablePath> lock = WritablePath::check(path);
    const auto facts = lock ? lock->look() : std::nullopt;
    if (!facts || !S_ISREG(facts->st_mode))
        return lock && !facts;
    const auto content = readAll(openRegularFile(path), MaxLockBytes);
    // A number of a process, a program and a machine; nothing yet in a new one.
    bool isNumber = false;
    if (content)
        content->left(content->indexOf('\n')).toLongLong(&isNumber);
    return content && (content->isEmpty() || (isNumber && content->count('\n') >= 3));
}

/// Whether text may be given to QSettings. Values that are lists or maps in each other take some of the stack for
/// each level, which has three zero bytes at least. Those are escapes, of which only the form that QSettings writes
/// is taken: longer ones can be zeros as well.
bool mayParse(const QByteArray& text)
{
    static const QRegularExpression escape(
        heapString("\\\\(?:x([0-9a-fA-F]+)|([0-9]+)|.)"), QRegularExpression::DotMatchesEverythingOption);
    if (text.contains('\0'))
        return false;
    int zeros = 0;
    for (auto found = escape.globalMatch(QString::fromLatin1(text)); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const bool isHex = match.capturedLength(1) > 0;
        const QStringRef digits = match.capturedRef(isHex ? 1 : 2);
        if (digits.size() > (isHex ? 4 : 1))
            return false;
        zeros += !digits.isEmpty() && digits.toInt(nullptr, 16) == 0 ? 1 : 0;
    }
    return zeros <= MaxZeros;
}

/// The lines in an order of their own, without those that are empty.
QList<QByteArray> sortLines(const QByteArray& text)
{
    QList<QByteArray> lines;
    for (const QByteArray& line : text.split('\n')) {
        if (!line.trimmed().isEmpty())
            lines.append(line.trimmed());
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

} // namespace

/// What a settings file holds, on a copy of it.
struct KSettingsFile::Content {
    explicit Content(const QByteArray& bytes)
        : copy(makeCopyPath())
    {
        QFile file(copy);
        isValid = mayParse(bytes) && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        file.close();
        if (!isValid)
            return;
        values = std::make_unique<QSettings>(copy, QSettings::IniFormat);
        values->allKeys(); // reads all of it
        isValid = values->status() == QSettings::NoError;
        text = bytes;
    }
    ~Content()
    {
        values.reset();
        QFile::remove(copy);
    }
    Content(const Content&) = delete;
    Content& operator=(const Content&) = delete;

    /// Whether nothing is lost when QSettings writes the text. Comments are, keys that are there twice, and what
    /// it spells otherwise, such as names in files of other programs.
    bool mayRewrite() const
    {
        Content written { QByteArray() };
        for (const QString& key : values->allKeys())
            written.values->setValue(key, values->value(key));
        const auto rewritten = written.read();
        return rewritten && sortLines(*rewritten) == sortLines(text);
    }

    /// The text with a further value; nothing when it can not be stored.
    std::optional<QByteArray> store(const QString& key, const QVariant& value)
    {
        values->setValue(key, value);
        auto stored = read();
        if (!stored || !mayParse(*stored))
            return std::nullopt;
        text = *stored;
        return stored;
    }

    std::optional<QByteArray> read()
    {
        values->sync();
        if (values->status() != QSettings::NoError)
            return std::nullopt;
        return readAll(openRegularFile(copy), MaxBytes);
    }

    QString copy;
    QByteArray text;
    std::unique_ptr<QSettings> values;
    bool isValid;
};

std::shared_ptr<KSettingsFile> KSettingsFile::open(const WritablePath& given)
{
    std::optional<WritablePath> path = given;
    const auto facts = given.look();
    if (facts && S_ISLNK(facts->st_mode))
        path = WritablePath::check(QFile::decodeName(openRegularFile(given.string()).realPath()));
    if (!path)
        return nullptr;

    // Those that were open last stay, so that values keep their types; Qt's own does the same.
    static std::map<QString, std::weak_ptr<KSettingsFile>> open;
    static QCache<QString, std::shared_ptr<KSettingsFile>> recent(30);
    std::weak_ptr<KSettingsFile>& known = open[path->string()];
    std::shared_ptr<KSettingsFile> file = known.lock();
    if (!file)
        file = std::make_shared<KSettingsFile>(*path);
    if (!file->refresh())
        return nullptr;
    known = file;
    recent.insert(path->string(), new std::shared_ptr<KSettingsFile>(file));
    std::erase_if(open, [](const auto& entry) { return entry.second.expired(); });
    return file;
}

KSettingsFile::KSettingsFile(const WritablePath& path)
    : m_path(path)
{
}

KSettingsFile::~KSettingsFile() = default;

bool KSettingsFile::isKnown(const std::optional<struct stat>& facts) const
{
    const auto isSame = [](const timespec& one, const timespec& other) {
        return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
    };
    if (!m_content || facts.has_value() != m_read.has_value())
        return false;
    return !facts
        || (identify(*facts) == identify(*m_read) && facts->st_size == m_read->st_size
            && isSame(facts->st_mtim, m_read->st_mtim) && isSame(facts->st_ctim, m_read->st_ctim));
}

bool KSettingsFile::refresh()
{
    const auto facts = m_path.look();
    if (isKnown(facts))
        return true;
    QByteArray bytes;
    if (facts) {
        const FileDescriptor file =
            S_ISREG(facts->st_mode) ? openRegularFile(m_path.string()) : FileDescriptor();
        const auto content = file ? readAll(file, MaxBytes) : std::nullopt;
        if (!content)
            return false;
        bytes = *content;
    }
    auto content = std::make_unique<Content>(bytes);
    if (!content->isValid)
        return false;
    m_content = std::move(content);
    m_mayRewrite.reset();
    m_read = facts;
    return true;
}

QVariant KSettingsFile::value(const QString& key, const QVariant& fallback) const
{
    return m_content->values->value(key, fallback);
}

bool KSettingsFile::setValue(const QString& key, const QVariant& value)
{
    // Its directory may have gone, or come, since.
    std::optional<WritablePath> path = WritablePath::check(m_path.string());
    if (path && path->names().size() > 1) {
        const QString directory = m_path.string().left(m_path.string().lastIndexOf(QLatin1Char('/')));
        const auto above = WritablePath::check(directory);
        path = above && makeDirectory(*above) ? WritablePath::check(m_path.string()) : std::nullopt;
    }
    if (!path || !path->name() || !mayLock(path->string() + QLatin1String(".lock")))
        return false;
    m_path = *path;
    QLockFile lock(QFile::decodeName(m_path.above().path() + '/' + *m_path.name()) + QLatin1String(".lock"));
    if (!lock.tryLock(LockMs) || !refresh())
        return false;
    if (!m_mayRewrite)
        m_mayRewrite = m_content->mayRewrite();
    const std::optional<QByteArray> bytes = *m_mayRewrite ? m_content->store(key, value) : std::nullopt;
    if (!bytes || !writeFile(*bytes, m_path)) {
        m_content.reset(); // which may have the value
        return false;
    }
    m_read = m_path.look();
    return true;
}

} // namespace jsapi
