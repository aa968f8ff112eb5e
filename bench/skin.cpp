// A table of 500 colours of the theme, as "getSkinColorConfig" answers it: when the theme has to be asked and when the values
// are kept, against a settings file with the same colours and a hash of finished texts. All make answers of the same form.
#include "bench/libraryobject.h"
#include "host/profile/profile.h"
#include "host/suite/skin/skinservice.h"
#include "vexlite/jsapiutil.h"

#include <benchmark/benchmark.h>

#include <QColor>
#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTemporaryDir>
#include <QVariantMap>

namespace bench {

namespace {

constexpr int Colors = 500;

/// The names, and the files that have their colours.
struct Palette {
    Palette()
    {
        QVariantMap colors;
        QSettings settings(settingsPath(), QSettings::IniFormat);
        for (int i = 0; i < Colors; ++i) {
            const QString name = QStringLiteral("benchColor%1").arg(i);
            const QString color = QStringLiteral("#%1").arg(i * 30'011 % 0xffffff, 6, 16, QLatin1Char('0'));
            names.append(name);
            colors.insert(name, color);
            settings.setValue(name, color);
        }
        settings.sync();
        QFile profile(directory.filePath(QStringLiteral("profile.json")));
        const QVariantMap theme { { QStringLiteral("CommonPalette"), colors } };
        if (!profile.open(QIODevice::WriteOnly)
            || profile.write(
                   QJsonDocument(QJsonObject { { QStringLiteral("theme"), QJsonValue::fromVariant(theme) } })
                       .toJson())
                <= 0)
            qFatal("The profile can not be written.");
        profile.close();
        if (const QString error = profile::load(profile.fileName()); !error.isEmpty())
            qFatal("%s", qPrintable(error));
    }
    static const Palette& instance()
    {
        static const Palette palette;
        return palette;
    }
    QString settingsPath() const { return directory.filePath(QStringLiteral("colors.ini")); }

    QTemporaryDir directory;
    QStringList names;
};

QString toCss(const QColor& color)
{
    return QStringLiteral("rgba(%1,%2,%3,%4)")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.alphaF());
}

/// The answer of the member, made of what `find` has for each name.
template <typename Find> void answer(Find find)
{
    QVariantMap map;
    for (const QString& name : Palette::instance().names)
        map.insert(name, find(name));
    KJSVariant converted;
    KJSApiUtil::ConvertQVariantToJSVariant(map, converted);
    benchmark::DoNotOptimize(converted);
}

void member(benchmark::State& state, bool isKept)
{
    const Palette& palette = Palette::instance();
    suite::SkinService::instance().start();
    const LibraryObject skin(QStringLiteral("Skin"));
    const std::int32_t id = skin.member(u"getSkinColorConfig");
    KJSVariant options;
    KJSApiUtil::ConvertQVariantToJSVariant(
        QVariantMap { { QStringLiteral("config"), palette.names } }, options);
    QObject* service = QCoreApplication::instance()->findChild<QObject*>(QStringLiteral("novaoffice"));
    const auto read = [&] { benchmark::DoNotOptimize(skin.call(id, JSApiArguments(&options, 1))); };
    read();
    for (auto _ : state) {
        if (!isKept && !QMetaObject::invokeMethod(service, "sigSkinChanged"))
            qFatal("There is no skin service.");
        read();
    }
    suite::SkinService::instance().shutDown();
}
BENCHMARK_CAPTURE(member, cold, false)->Name("skin_cold/member")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(member, kept, true)->Name("skin_kept/member")->Unit(benchmark::kMicrosecond);

void settings(benchmark::State& state, bool isKept)
{
    const Palette& palette = Palette::instance();
    const auto open = [&] {
        return std::make_unique<QSettings>(palette.settingsPath(), QSettings::IniFormat);
    };
    auto file = open();
    for (auto _ : state) {
        if (!isKept)
            file = open();
        answer([&](const QString& name) { return toCss(QColor(file->value(name).toString())); });
    }
}
BENCHMARK_CAPTURE(settings, cold, false)->Name("skin_cold/QSettings")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(settings, kept, true)->Name("skin_kept/QSettings")->Unit(benchmark::kMicrosecond);

void hash(benchmark::State& state)
{
    QHash<QString, QString> colors;
    for (const QString& name : Palette::instance().names)
        colors.insert(name, toCss(QColor(Qt::red)));
    for (auto _ : state)
        answer([&](const QString& name) { return colors.value(name); });
}
BENCHMARK(hash)->Name("skin_kept/QHash")->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace bench
