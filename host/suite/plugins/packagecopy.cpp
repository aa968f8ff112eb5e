#include "host/suite/plugins/packagecopy.h"

#include "host/profile/directories.h"
#include "host/profile/profile.h"

#include <QDir>
#include <QDirIterator>
#include <algorithm>

namespace suite {

namespace {

constexpr int MaxEntries = 10'000;
constexpr qint64 PieceBytes = 64 << 10;

QString downloads()
{
    return profile::expandPath(profile::current()->directories.pluginDownloads);
}

QString temporaryTemplate(const QString& name)
{
    QDir().mkpath(downloads());
    // Hidden, so that it is no plugin's folder.
    return downloads() + QStringLiteral("/.") + name + QStringLiteral("-XXXXXX");
}

} // namespace

QString PackageCopy::destination(const PluginManifest& manifest)
{
    return downloads() + QLatin1Char('/') + manifest.name + QLatin1Char('-') + manifest.version;
}

PackageCopy::PackageCopy(const PluginManifest& manifest)
    : m_manifest(manifest)
    , m_directory(temporaryTemplate(manifest.name))
{
    if (!m_directory.isValid() || !QDir(m_directory.path()).mkdir(QStringLiteral("new")))
        fail(QStringLiteral("no files can be made in the directory of plugin downloads"));
    else if (listFiles() && m_files.isEmpty())
        check();
}

bool PackageCopy::listFiles()
{
    if (!QFileInfo(m_manifest.source).isDir())
        return fail(QStringLiteral("there is no source %1").arg(m_manifest.source));
    const QDir source(m_manifest.source);
    QDirIterator entries(source.path(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
        QDirIterator::Subdirectories);
    int count = 0;
    while (entries.hasNext()) {
        const QString path = entries.next();
        const QFileInfo info = entries.fileInfo();
        if (info.isSymLink() || !(info.isFile() || info.isDir()))
            return fail(QStringLiteral("%1 is a link, or neither a file nor a directory").arg(path));
        if (info.isFile())
            m_files << source.relativeFilePath(path);
        if (++count > MaxEntries)
            return fail(QStringLiteral("the source has more than %1 files and directories").arg(MaxEntries));
    }
    // In a directory of plugins it would be one by itself, with a library that nobody has checked.
    if (m_files.contains(QStringLiteral("plugin.json")))
        return fail(QStringLiteral("the source has a manifest"));
    std::sort(m_files.begin(), m_files.end(),
        [](const QString& a, const QString& b) { return QFile::encodeName(a) < QFile::encodeName(b); });
    return true;
}

bool PackageCopy::step(qint64 most)
{
    while (m_error.isEmpty()) {
        if (!m_from.isOpen() && m_next == m_files.size())
            return false;
        if (!m_from.isOpen() && !openNext())
            return false;
        if (most <= 0)
            return true;
        const qint64 before = m_received;
        if (!copyPiece(std::min(most, PieceBytes)))
            return false;
        most -= m_received - before;
    }
    return false;
}

bool PackageCopy::openNext()
{
    const QString& file = m_files[m_next++];
    const QString target = m_directory.filePath(QStringLiteral("new/") + file);
    m_from.setFileName(m_manifest.source + QLatin1Char('/') + file);
    m_to.setFileName(target);
    if (!QDir().mkpath(QFileInfo(target).path()) || !m_to.open(QIODevice::WriteOnly)
        || !m_from.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("%1 can not be copied").arg(file));
    m_fileHash.reset();
    return true;
}

bool PackageCopy::copyPiece(qint64 most)
{
    const QByteArray piece = m_from.read(most);
    if (!piece.isEmpty()) {
        m_received += piece.size();
        m_fileHash.addData(piece);
        if (m_received > m_manifest.bytes)
            return fail(QStringLiteral("the source is larger than the manifest says"));
        return m_to.write(piece) == piece.size()
            || fail(QStringLiteral("%1 can not be written").arg(m_to.fileName()));
    }
    if (m_from.error() != QFileDevice::NoError || !m_to.flush())
        return fail(QStringLiteral("%1 can not be copied").arg(m_from.fileName()));
    m_listHash.addData(m_fileHash.result().toHex() + "  ./" + QFile::encodeName(m_files[m_next - 1]) + '\n');
    m_from.close();
    m_to.close();
    return m_next < m_files.size() || check();
}

bool PackageCopy::check()
{
    if (m_received != m_manifest.bytes)
        return fail(QStringLiteral("the source is smaller than the manifest says"));
    if (!m_manifest.sha256.isEmpty() && m_manifest.sha256 != QString::fromLatin1(m_listHash.result().toHex()))
        return fail(QStringLiteral("the source is another one than the manifest says"));
    return true;
}

bool PackageCopy::fail(const QString& error)
{
    m_error = error;
    return false;
}

bool PackageCopy::commit()
{
    QDir directories;
    const QString place = destination(m_manifest);
    const QString old = m_directory.filePath(QStringLiteral("old"));
    const bool isReplaced = directories.rename(place, old);
    if (directories.rename(m_directory.filePath(QStringLiteral("new")), place))
        return true;
    if (isReplaced)
        directories.rename(old, place);
    return fail(QStringLiteral("%1 can not be made").arg(place));
}

} // namespace suite
