#include "host/suite/plugins/manifest.h"

#include "host/profile/check.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/plugins/pluginlog.h"
#include "host/suite/showntext.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <climits>
#include <dlfcn.h>

namespace suite {

Q_LOGGING_CATEGORY(pluginLog, "suite.plugins")

namespace {

constexpr qint64 MaxManifestBytes = 1 << 20;
constexpr int MaxShownError = 500;

const nlohmann::json& manifestSchema()
{
    static const nlohmann::json schema = [] {
        QFile file(QStringLiteral(":/novaplugins/plugin.schema.json"));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s is missing from the suite", qPrintable(file.fileName()));
        return nlohmann::json::parse(file.readAll().toStdString());
    }();
    return schema;
}

/// The directory of the plugins that come with the stand-in, beside the library with this function.
QString shippedPlugins()
{
    Dl_info library {};
    if (!dladdr(reinterpret_cast<const void*>(&findPlugins), &library))
        return {};
    return QFileInfo(QFile::decodeName(library.dli_fname)).absolutePath() + QStringLiteral("/novaplugins");
}

/// Makes the source absolute, and returns what is wrong that the schema does not know.
QStringList resolvePaths(PluginManifest& manifest)
{
    QStringList errors;
    const auto expectBelow = [&](const char* key, const QString& path) {
        QString found = findBelow(manifest.directory, path);
        if (found.isNull())
            errors << QStringLiteral("%1: must be a path below the plugin's folder").arg(QLatin1String(key));
        return found;
    };
    expectBelow("resources", manifest.resources);
    expectBelow("framework", manifest.framework);
    expectBelow("library", manifest.library);
    const QString source = profile::expandPath(manifest.source);
    if (!source.isEmpty())
        manifest.source = QDir::isAbsolutePath(source) ? source : expectBelow("source", source);
    if (!manifest.source.isEmpty() && !manifest.library.isEmpty() && manifest.sha256.isEmpty())
        errors << QStringLiteral("library: is fetched, so the manifest needs \"sha256\"");
    return errors;
}

QByteArray readManifestText(const QString& path, QStringList& errors)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        errors << QStringLiteral("can not be read");
    QByteArray text = errors.isEmpty() ? file.read(MaxManifestBytes + 1) : QByteArray();
    if (text.size() > MaxManifestBytes)
        errors << QStringLiteral("is larger than %1 bytes").arg(MaxManifestBytes);
    return text;
}

} // namespace

QString findBelow(const QString& directory, const QString& relative)
{
    if (relative.size() > PATH_MAX || relative.contains(QChar::Null) || QDir::isAbsolutePath(relative))
        return {};
    const auto isIn = [](const QString& path, const QString& root) {
        return path == root || path.startsWith(root + QLatin1Char('/'));
    };
    const QString root = QDir::cleanPath(directory);
    QString path = QDir::cleanPath(root + QLatin1Char('/') + relative);
    if (!isIn(path, root))
        return {};
    // What there is of the way must not lead out by a link.
    QString existing = path;
    while (!QFileInfo::exists(existing) && !QFileInfo(existing).isSymLink() && existing != root)
        existing = QFileInfo(existing).path();
    const QString realRoot = QFileInfo(root).canonicalFilePath();
    if (existing != root && !isIn(QFileInfo(existing).canonicalFilePath(), realRoot))
        return {};
    return path;
}

std::optional<PluginManifest> readPluginManifest(const QString& directory, QStringList& errors)
{
    const QByteArray text = readManifestText(directory + QStringLiteral("/plugin.json"), errors);
    if (errors.isEmpty())
        errors = profile::parseChecked(text, manifestSchema(), QStringLiteral("plugin manifest")).errors;
    if (!errors.isEmpty())
        return std::nullopt;

    const QJsonObject json = QJsonDocument::fromJson(text).object();
    const auto read = [&](const char* key, const QString& fallback = {}) {
        return json.value(QLatin1String(key)).toString(fallback);
    };
    PluginManifest manifest;
    manifest.directory = QDir(directory).absolutePath();
    manifest.name = read("name");
    manifest.version = read("version");
    manifest.properties = json.value(QLatin1String("properties")).toObject().toVariantMap();
    for (const char* key : { "name", "version", "title" })
        manifest.properties.insert(QLatin1String(key), read(key));
    manifest.resources = read("resources", QStringLiteral("resources"));
    manifest.framework = read("framework", QStringLiteral("framework"));
    manifest.library = read("library");
    manifest.autoload = json.value(QLatin1String("autoload")).toBool();
    manifest.source = read("source");
    manifest.bytes = json.value(QLatin1String("bytes")).toVariant().toLongLong();
    manifest.sha256 = read("sha256");
    manifest.bytesPerSecond = json.value(QLatin1String("bytesPerSecond")).toVariant().toLongLong();
    if (!json.contains(QLatin1String("bytesPerSecond")))
        manifest.bytesPerSecond = profile::current()->plugins.bytesPerSecond;
    errors = resolvePaths(manifest);
    if (!errors.isEmpty())
        return std::nullopt;
    return manifest;
}

std::vector<PluginManifest> findPlugins(QStringList& errors)
{
    std::vector<PluginManifest> found;
    QSet<QString> names;
    for (const QString& entry : profile::current()->plugins.directories) {
        const QDir directory(
            entry == QLatin1String("${PLUGINS}") ? shippedPlugins() : profile::expandPath(entry));
        for (const QString& folder : directory.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
            const QString path = directory.absoluteFilePath(folder);
            if (!QFileInfo::exists(path + QStringLiteral("/plugin.json")))
                continue; // what has been fetched
            QStringList wrong;
            std::optional<PluginManifest> manifest = readPluginManifest(path, wrong);
            if (manifest && names.contains(manifest->name))
                wrong << QStringLiteral("name: another plugin is called so");
            for (const QString& error : wrong)
                errors << QStringLiteral("plugin %1: %2")
                              .arg(showPath(path), escapeText(error.left(MaxShownError)));
            if (!wrong.isEmpty())
                continue;
            names.insert(manifest->name);
            found.push_back(std::move(*manifest));
        }
    }
    return found;
}

} // namespace suite
