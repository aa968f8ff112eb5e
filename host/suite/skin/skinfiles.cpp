#include "host/suite/skin/skinfiles.h"

#include "host/profile/check.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/plugins/manifest.h"
#include "host/suite/showntext.h"
#include "suite/kplugin.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

namespace suite {

namespace {

using nlohmann::json;

constexpr int LongestShownName = 100;
constexpr int MostShownErrors = 20;

json readSchema(const QString& name)
{
    QFile file(QStringLiteral(":/novaskin/%1.schema.json").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the schema of %s files is missing", qPrintable(name));
    return json::parse(file.readAll().toStdString());
}

/// The folder of a skin; empty when there is none.
QString findFolder(const QString& name)
{
    static const QRegularExpression form(QStringLiteral("^[a-z0-9][a-z0-9-]{0,63}$"));
    if (!form.match(name).hasMatch())
        return {};
    QStringList places { QStringLiteral(":/novaskin/") + name };
    for (const QString& directory : profile::current()->skin.directories)
        places << profile::expandPath(directory) + QLatin1Char('/') + name;
    // Its plugin may not have been fetched yet.
    KPluginManager* manager = KPluginManager::getInstance();
    if (const KPlugin* plugin = manager ? manager->getPlugin(name) : nullptr)
        places << plugin->localPath();
    for (const QString& place : qAsConst(places)) {
        if (QFileInfo::exists(place + QStringLiteral("/skin.json")))
            return place;
    }
    return {};
}

std::optional<Skin> loadLayers(const QString& name, QStringList& chain, QString& error)
{
    // A page may have chosen the name.
    const QString prefix = QStringLiteral("skin \"%1\": ").arg(escapeText(name.left(LongestShownName)));
    const QString folder = findFolder(name);
    const bool isOwnBase = chain.contains(name);
    chain << name;
    if (folder.isEmpty() || isOwnBase) {
        error = prefix
            + (isOwnBase ? QStringLiteral("is its own base: ") + chain.join(QStringLiteral(", "))
                         : QStringLiteral("there is none of this name"));
        return std::nullopt;
    }
    const auto fail = [&](const QString& file, const QStringList& errors) {
        QStringList lines;
        for (const QString& one : errors.mid(0, MostShownErrors))
            lines << prefix + file + QStringLiteral(": ") + escapeText(one);
        error = lines.join(QLatin1Char('\n'));
        return std::nullopt;
    };
    const QString file = folder + QStringLiteral("/skin.json");
    QStringList errors;
    const json facts = readSkinFile(file, SkinFileKind::Skin, errors);
    if (errors.isEmpty() && facts.at("name").get<std::string>() != name.toStdString())
        errors << QStringLiteral("name: must be \"%1\"").arg(name);
    if (!errors.isEmpty())
        return fail(file, errors);

    Skin skin;
    if (facts.contains("base")) {
        std::optional<Skin> base =
            loadLayers(QString::fromStdString(facts.at("base").get<std::string>()), chain, error);
        if (!base)
            return std::nullopt;
        skin = std::move(*base);
    }
    skin.name = name;
    skin.title = QString::fromStdString(facts.at("title").get<std::string>());
    skin.isDark = facts.at("colorScheme") == "dark";
    const QString themeFile = folder + QStringLiteral("/theme.json");
    errors = skin.theme.load(themeFile);
    if (!errors.isEmpty())
        return fail(themeFile, errors);
    return skin;
}

} // namespace

bool isSkinKnown(const QString& name)
{
    QStringList errors; // the plugin manager has logged them
    return !findFolder(name).isEmpty()
        || std::ranges::count(findPlugins(errors), name, &PluginManifest::name) > 0;
}

json readSkinFile(const QString& path, SkinFileKind kind, QStringList& errors)
{
    static const json schemas[] = { readSchema(QStringLiteral("skin")), readSchema(QStringLiteral("theme")) };
    constexpr qint64 LargestFile = 1 << 20;
    QFile file(path);
    // Only files: a pipe or a device would never end.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        errors << QStringLiteral("can not be read");
        return {};
    }
    const QByteArray text = file.read(LargestFile + 1);
    if (text.size() > LargestFile) {
        errors << QStringLiteral("is larger than 1 MiB");
        return {};
    }
    const bool isTheme = kind == SkinFileKind::Theme;
    profile::Checked checked = profile::parseChecked(text, schemas[static_cast<int>(kind)],
        isTheme ? QStringLiteral("theme file") : QStringLiteral("skin"));
    errors = checked.errors;
    return std::move(checked.document);
}

std::optional<Skin> loadSkin(const QString& name, QString& error)
{
    QStringList chain;
    std::optional<Skin> skin = loadLayers(name, chain, error);
    if (skin) {
        const auto& overrides = profile::current()->theme;
        for (auto group = overrides.begin(); group != overrides.end(); ++group) {
            for (auto color = group->begin(); color != group->end(); ++color)
                skin->theme.setText(group.key(), color.key(), *color);
        }
    }
    return skin;
}

} // namespace suite
