#include "local/pathcheck.h"

#include "krt/dirs.h"
#include "suite/kpluginconfig.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <climits>
#include <fcntl.h>

namespace jsapi {

namespace {

QString expand(const QString& relative)
{
    static const QRegularExpression leadingSteps(heapString("^(\\.\\./)+"));
    static const QRegularExpression leadingVariable(heapString("^%(.*)%"));

    QString path = relative;
    path.remove(leadingSteps);
    path = QDir::cleanPath(path);
    if (QDir::isAbsolutePath(path))
        return path;
    const QRegularExpressionMatch variable = leadingVariable.match(path);
    if (variable.hasMatch())
        path.replace(0, variable.capturedLength(), qEnvironmentVariable(qPrintable(variable.captured(1))));
    return path;
}

/// An absolute path without empty names, dots and parent steps.
QString clean(const QString& path)
{
    QString cleaned = QDir::cleanPath(path);
    while (cleaned.startsWith(QLatin1String("/../")))
        cleaned.remove(0, 3);
    return cleaned == QLatin1String("/..") ? QString(QLatin1Char('/')) : cleaned;
}

/// Whether a parent step of an absolute path leads elsewhere than it reads: it stands behind a link.
bool stepsBehindLink(const QString& path)
{
    int end = 0;
    for (const QStringRef& name : path.splitRef(QLatin1Char('/'))) {
        end += name.size() + 1;
        if (name != QLatin1String(".."))
            continue;
        const QString read = path.left(end - 1);
        const QByteArray given = QFile::encodeName(read);
        if (given.size() >= PATH_MAX)
            return false;
        const auto led = lookAt(AT_FDCWD, given, true);
        if (!led)
            continue;
        const auto meant = lookAt(AT_FDCWD, QFile::encodeName(clean(read)), true);
        if (!meant || identify(*led) != identify(*meant))
            return true;
    }
    return false;
}

} // namespace

bool isClosedToPages(const QString& path)
{
    return krt::dirs::inBlackDownloadDir(path) || kpluginconfig::inPluginDownloadDir(path);
}

std::optional<WritablePath> WritablePath::check(const QString& given)
{
    // A file name ends at its first NUL: what stands behind it would be checked but not used.
    if (given.isEmpty() || given.contains(QChar::Null))
        return std::nullopt;
    const QString path = QDir::isAbsolutePath(given) ? given : expand(given);
    // A leading colon names a resource of the program to Qt, which calls it absolute.
    if (!path.startsWith(QLatin1Char('/')))
        return std::nullopt;
    WritablePath checked;
    checked.m_path = clean(path);
    QByteArray above = QFile::encodeName(checked.m_path);
    // What file names can not spell, such as half a surrogate pair, would be left out: another path is used
    // then.
    if (QFile::decodeName(above) != checked.m_path)
        return std::nullopt;
    if (isClosedToPages(checked.m_path) || stepsBehindLink(path))
        return std::nullopt;

    const QByteArray spelled = above;
    FileDescriptor directory;
    while (!directory && above != "/") {
        const int slash = above.lastIndexOf('/');
        checked.m_names.insert(checked.m_names.begin(), above.mid(slash + 1));
        above.truncate(std::max(slash, 1));
        directory = FileDescriptor(open(above.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
    if (!directory && spelled == "/")
        directory = FileDescriptor(open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    QByteArray real = directory ? directory.realPath() : QByteArray();
    if (real.isEmpty())
        return std::nullopt;
    for (const QByteArray& name : checked.m_names)
        real += (real == "/" ? "" : "/") + name;
    // The suite can not be asked about a directory whose name is no text.
    const QString leads = QFile::decodeName(real);
    if (real != spelled && (QFile::encodeName(leads) != real || isClosedToPages(leads)))
        return std::nullopt;
    checked.m_above = std::make_shared<const FileDescriptor>(std::move(directory));
    return checked;
}

std::optional<QByteArray> WritablePath::name() const
{
    if (m_names.size() != 1)
        return std::nullopt;
    return m_names.front();
}

std::optional<struct stat> WritablePath::look(bool followLinks) const
{
    const std::optional<QByteArray> name = this->name();
    return name ? lookAt(m_above->number(), *name, followLinks) : std::nullopt;
}

} // namespace jsapi
