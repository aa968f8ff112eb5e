// An object of the library as a page without script has it.
#pragma once

#include "host/vexlite/core.h"

namespace bench {

class LibraryObject {
public:
    /// For as long as this lives it is the only one: the process has one core.
    explicit LibraryObject(const QString& name);
    ~LibraryObject();
    LibraryObject(const LibraryObject&) = delete;
    LibraryObject& operator=(const LibraryObject&) = delete;

    const JSContextEnv& context() const { return m_context; }
    /// The id of a member, which must be there.
    std::int32_t member(std::u16string_view name) const;
    /// Calls it. The program ends when that fails: nothing was measured.
    KJSVariant call(std::int32_t member, JSApiArguments arguments) const;

private:
    class Page final : public vexlite::ScriptPage {
        bool createPromise(std::int64_t) override { return true; }
        void settlePromise(std::int64_t, JSPromiseState, const KJSVariant&) override { }
    };

    Page m_page;
    JSContextEnv m_context;
    vexlite::BoundObject m_object;
};

} // namespace bench
