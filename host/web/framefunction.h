// FrameFunction: a function of a document that native code keeps.
#pragma once

#include "host/engine/pending.h"
#include "host/vexlite/pagefunction.h"

namespace engine::web {

class Frame;

/// It is never waited for: a call is handed over with the next reply that the document gets, in the order of the calls.
class FrameFunction final : public vexlite::PageFunction {
public:
    /// Counted in `frame`, which forgets it when one of the two goes.
    FrameFunction(Frame& frame, std::int64_t id);

    /// KR_REJECTED for a call whose arguments have no script form, and when more calls wait than a document may have.
    /// `result` stays empty.
    KResult perform(const JSApiArguments& arguments, KJSVariant* result, const QString& event) override;
    std::uintptr_t Identity() const override { return static_cast<std::uintptr_t>(m_id); }
    JSContextEnv Context() const override { return m_context; }

    std::int64_t id() const { return m_id; }
    /// The number of the function, when it is one of `frame`; else 0.
    std::int64_t idIn(const Frame& frame) const { return m_frame == &frame ? m_id : 0; }
    Pending pending() const;
    /// The document has gone.
    void forgetFrame() { m_frame = nullptr; }

private:
    ~FrameFunction() override;

    Frame* m_frame; ///< null once the document has gone
    std::int64_t m_id;
    JSContextEnv m_context;
    QString m_member;
    Pending::Clock::time_point m_since = Pending::Clock::now();
};

} // namespace engine::web
