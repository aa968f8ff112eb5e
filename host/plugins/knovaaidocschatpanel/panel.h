// The document chat panel: answers questions with sentences from the user's documents.
#pragma once

#include "host/suite/plugins/pluginfactory.h"
#include "suite/kjsapiwebwidget.h"

#include <QPointer>
#include <QVariantMap>

namespace panels {

class DocumentChat;

/// The panel's own page, in a window of its own.
class ChatWidget final : public KJsApiWebWidget {
    Q_OBJECT

public:
    ChatWidget(const QString& viewId, DocumentChat& panel);

    // For the page, by invokeGeneralMethod.
    /// A text. Returns whether it is one.
    Q_INVOKABLE QVariant ask(const QVariant& question);
    /// What the page does, for all pages.
    Q_INVOKABLE QVariant report(const QVariant& what);

private:
    DocumentChat& m_panel;
};

/// The plugin's instance object. Pages send
///
///     { type: "question", text, id? }      and get { type: "answer", text, id?, sentences: [{ text, file }] }
///     { type: "show" }                     and get { type: "shown", isShown }: the panel's window, with the browser engine;
///                                          then { type: "page", did, text }: did "open" or "answer", from the page in it
///     { type: "hide" }                     and get the same when the window has gone
///
/// and for all else { type: "error", msg }, always from the event loop. Every page that has registered gets them.
class DocumentChat final : public QObject {
    Q_OBJECT

public:
    explicit DocumentChat(QObject* parent);
    ~DocumentChat() override;

    Q_INVOKABLE void qaNotify(const QVariantMap& notification);
    void passOn(const QVariantMap& report);

Q_SIGNALS:
    void sig_panelNotify(const QVariantMap& notification);

private:
    QVariantMap answer(const QVariantMap& notification);
    bool showPage();
    /// To the pages, and to the panel's own.
    void send(const QVariantMap& notification);

    QPointer<ChatWidget> m_page;
};

class ChatFactory final : public QObject, public suite::PluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID NovaPluginFactoryId)
    Q_INTERFACES(suite::PluginFactory)

public:
    QObject* makeInstance(QObject* parent) override { return new DocumentChat(parent); }
};

} // namespace panels
