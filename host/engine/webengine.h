// WebEngine: the browser engine, a second one beside JavaScriptCore. It is a plug-in, loaded when a page is opened in a
// window.
#pragma once

#include "host/engine/page.h"
#include "host/engine/view.h"

namespace engine {

/// The scheme of images of the suite's theme, which pages of all origins can show.
inline constexpr char SkinImageScheme[] = "nova-skin";

/// What an origin may have of NovaExtension. [GUI thread]
struct OriginRights {
    bool any = false; ///< false: it has no NovaExtension
    /// Whether it may use a member ("copy") of a class ("NovaExtension.FileSystem") whose category has this mask.
    std::function<bool(const QString& tag, const QString& member, std::uint32_t mask)> allows;
};

/// What the engine asks of the suite. All are set and live as long as the engine. [GUI thread]
struct WebEngineHost {
    /// The properties of the browser of a view, when it is made.
    std::function<vexlite::BrowserFacts(const QString& viewId)> browser;
    /// Rights by origin: "nova://app", "https://docs.example:8443"; never asked for a document without an origin.
    std::function<OriginRights(const QString& origin)> rights;
    /// The directory that is served as nova://HOST/; empty: there is none.
    std::function<QString(const QString& host)> directory;
    /// The image of an address of SkinImageScheme, as PNG; empty: there is none.
    std::function<QByteArray(const QUrl& url)> skinImage;
    /// What the view of this identifier loads when it is made; empty: nothing.
    std::function<QUrl(const QString& viewId)> firstPage;
    /// A line of a page's console that is not a script's own (see PageHost).
    std::function<void(const QString& line, bool isError)> console;
    /// The document of a view has been opened; none of its scripts has run.
    std::function<void(const QString& viewId)> opened;
    /// A view has loaded its page, or failed to.
    std::function<void(const QString& viewId, bool ok)> loaded;
};

class WebEngine : public ScriptEngine {
public:
    /// The view of a web widget. The page that openPage() has made for this identifier is shown by it, and waits for it.
    virtual std::unique_ptr<View> makeView(const QString& viewId, ViewHost host) = 0;
};

/// The plug-in's one function: makes the engine of this process. Once, after the application has been made, with
/// Qt::AA_ShareOpenGLContexts.
using MakeWebEngine = WebEngine* (*)(WebEngineHost host);
inline constexpr char MakeWebEngineName[] = "NovaMakeWebEngine";

} // namespace engine
