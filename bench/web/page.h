// Browser views to measure in: of the library, with Qt WebChannel, and with nothing but prompt().
#pragma once

#include "host/engine/webengine.h"

#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineUrlSchemeHandler>
#include <QWidget>
#include <memory>

namespace bench {

/// A page that is shown by a window of its own, with an empty document. [GUI thread]
class Page {
public:
    virtual ~Page() = default;

    /// Runs `(FUNCTION)(argument)`, a function that may be async, and returns the seconds that it takes by the page's
    /// clock. An error ends the program: nothing was measured.
    double measure(const QString& function, int argument);

protected:
    virtual QWebEnginePage& browserPage() = 0;
};

/// The plug-in with the library's objects and NovaExtension.Bench: what the suite has once. It ends with the program.
class Library {
public:
    Library();
    ~Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    /// A view in a window of the suite. Waits until it has loaded.
    std::unique_ptr<Page> openPage();

private:
    std::unique_ptr<engine::WebEngine> m_engine;
    int m_views = 0;
    QString m_loaded; ///< the view that has loaded last
};

/// Serves the empty document to views without the plug-in, at the same address.
class BareProfile final : public QWebEngineProfile {
public:
    BareProfile();

private:
    class Handler final : public QWebEngineUrlSchemeHandler {
        void requestStarted(QWebEngineUrlRequestJob* job) override;
    };
    Handler m_handler;
};

/// A view in a window, without the plug-in: script of the page finds `prompt`, which returns at once, and `channel`, a
/// ChannelObject, when there is one. Waits until it has loaded.
std::unique_ptr<Page> openBarePage(BareProfile& profile, bool hasChannel);

} // namespace bench
