// A page of the JavaScriptCore engine that finds one object: NovaExtension.Bench.
#pragma once

#include "host/engine/page.h"

namespace bench {

/// The core of the process with one open page, for as long as this lives.
class EnginePage {
public:
    explicit EnginePage(ExtensionFactory factory);
    ~EnginePage();
    EnginePage(const EnginePage&) = delete;
    EnginePage& operator=(const EnginePage&) = delete;

    JSContextEnv context() const { return m_page->context(); }
    /// Runs script to its end. A failing script ends the program: nothing was measured.
    void run(const QString& source);
    /// The object that the page's script finds.
    vexlite::Ref<IJSExtentionObject> object();

private:
    vexlite::Core& m_core;
    std::unique_ptr<engine::ScriptEngine> m_engine;
    std::unique_ptr<engine::Page> m_page;
};

} // namespace bench
