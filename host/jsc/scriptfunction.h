// ScriptFunction: a function of the page that native code keeps.
#pragma once

#include "host/engine/pending.h"
#include "host/jsc/api.h"
#include "host/vexlite/pagefunction.h"

#include <unordered_set>

namespace engine::jsc {

class PageState;

/// Keeps its script function alive as long as it and the page live.
class ScriptFunction final : public vexlite::PageFunction {
public:
    KResult perform(const JSApiArguments& arguments, KJSVariant* result, const QString& event) override;
    std::uintptr_t Identity() const override { return reinterpret_cast<std::uintptr_t>(m_function); }
    JSContextEnv Context() const override { return m_env; }

    /// The function, when it is one of `page`; else null.
    JSObjectRef functionOf(const PageState& page) const { return m_page == &page ? m_function : nullptr; }

private:
    friend class Functions;
    ScriptFunction(PageState& page, JSObjectRef function);
    ~ScriptFunction() override;

    PageState* m_page; ///< null once the page has closed
    JSObjectRef m_function;
    JSContextEnv m_env;
    QString m_member; ///< that has got it
    Pending::Clock::time_point m_since = Pending::Clock::now();
};

/// The functions of one page that native code keeps. [GUI thread]
class Functions {
public:
    explicit Functions(PageState& page)
        : m_page(page)
    {
    }

    /// A new handle with one reference for the caller.
    ScriptFunction* keep(JSObjectRef function);
    void addPending(PendingList& list) const;
    /// Releases all functions; their handles can not be called afterwards.
    void clear();

private:
    friend class ScriptFunction;
    void forget(ScriptFunction* function);

    PageState& m_page;
    std::unordered_set<ScriptFunction*> m_kept;
};

} // namespace engine::jsc
