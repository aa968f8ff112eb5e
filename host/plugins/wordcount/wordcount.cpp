// A plugin with an instance object, which counts the words of a text.
#include "host/suite/plugins/pluginfactory.h"

#include <QTextBoundaryFinder>
#include <QVariantMap>

class WordCount : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// {"text"}: returns {"words", "characters"}.
    Q_INVOKABLE QVariantMap count(const QVariantMap& given)
    {
        const QString text = given.value(QStringLiteral("text")).toString();
        int words = 0;
        QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
        do {
            words += finder.boundaryReasons().testFlag(QTextBoundaryFinder::StartOfItem) ? 1 : 0;
        } while (finder.toNextBoundary() >= 0);
        return { { QStringLiteral("words"), words }, { QStringLiteral("characters"), text.size() } };
    }
};

class WordCountFactory : public QObject, public suite::PluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID NovaPluginFactoryId)
    Q_INTERFACES(suite::PluginFactory)

public:
    QObject* makeInstance(QObject* parent) override { return new WordCount(parent); }
};

#include "wordcount.moc"
