// Promises: those that a document has been given and that the suite still knows.
#pragma once

#include "host/engine/page.h"
#include "vexlite/jscore.h"

namespace engine::web {

class Frame;

/// [GUI thread]
class Promises {
public:
    /// The messages go to the document of `frame`, which owns this.
    explicit Promises(Frame& frame)
        : m_frame(frame)
    {
    }
    /// `member` is the one whose result it is to be, "Network.fetch". False where there is one of this number already.
    bool create(std::int64_t promise, const QString& member);
    void settle(std::int64_t promise, JSPromiseState state, const KJSVariant& value);
    void release(std::int64_t promise);
    bool has(std::int64_t promise) const { return m_states.count(promise); }
    /// Without a word to the document, which has gone.
    void clear() { m_states.clear(); }
    bool anyPending() const;
    void addPending(PendingList& list) const;

private:
    struct State {
        QString member;
        Pending::Clock::time_point since = Pending::Clock::now();
        bool isSettled = false;
        bool isReleased = false;
    };
    Frame& m_frame;
    std::unordered_map<std::int64_t, State> m_states;
};

} // namespace engine::web
