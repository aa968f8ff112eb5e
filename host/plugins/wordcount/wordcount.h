// A plugin with an instance object, which counts the words of a text.
#pragma once

#include "host/suite/plugins/pluginfactory.h"

#include <QVariantMap>

class WordCount : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// {"text"}: returns {"words", "characters"}.
    Q_INVOKABLE QVariantMap count(const QVariantMap& given);
};

class WordCountFactory : public QObject, public suite::PluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID NovaPluginFactoryId)
    Q_INTERFACES(suite::PluginFactory)

public:
    QObject* makeInstance(QObject* parent) override { return new WordCount(parent); }
};
