// A page without an engine, for calls and events that no script takes part in.
#pragma once

#include "host/vexlite/core.h"

namespace bench {

/// The core of the process with one open page, for as long as this lives.
class NativePage final : private vexlite::ScriptPage {
public:
    NativePage();
    ~NativePage() override;
    NativePage(const NativePage&) = delete;
    NativePage& operator=(const NativePage&) = delete;

    const JSContextEnv& context() const { return m_context; }
    /// Binds an object as a page's script would, by a factory of its own.
    vexlite::BoundObject bind(ExtensionFactory factory);

private:
    bool createPromise(std::int64_t) override { return false; }
    void settlePromise(std::int64_t, JSPromiseState, const KJSVariant&) override { }

    vexlite::Core& m_core;
    JSContextEnv m_context;
};

/// The id under which a member is called. The member must be there.
std::int32_t memberId(const vexlite::BoundObject& object, std::u16string_view name);

} // namespace bench
