// ToolScript: script of the tool's own, in a context apart from all pages.
#pragma once

#include <QString>
#include <memory>

namespace engine::jsc {

/// [GUI thread] Its script is part of the program: where it can not be compiled the process ends.
class ToolScript {
public:
    ToolScript();
    ~ToolScript();
    ToolScript(const ToolScript&) = delete;
    ToolScript& operator=(const ToolScript&) = delete;

    /// Runs a script, whose declarations stay.
    void load(const QString& source);
    /// Loads the parser acorn, as `acorn`, and what finds faults of syntax and readings of names with it (findfault.js,
    /// findread.js).
    void loadParser();
    /// Gives the script a text as a global variable.
    void set(const char* name, const QString& text);
    /// Calls a function with a text and returns what it returns, as JSON; empty where it throws.
    QByteArray call(const char* function, const QString& text);

private:
    struct Context;
    std::unique_ptr<Context> m_context;
};

} // namespace engine::jsc
