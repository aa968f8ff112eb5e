#include "local/pageturns.h"

#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <deque>

namespace jsapi {

namespace {

constexpr int BufferBytes = 1 << 20;
/// How long to wait when nobody can do anything.
constexpr int RetryMs = 5;

/// The work of all pages. The first page's first work is done next.
class Turns final : public QObject {
public:
    static Turns& instance()
    {
        static Turns turns;
        return turns;
    }

    void add(const JSContextEnv& page, QObject* worker, std::function<Slice(QByteArray&)> work)
    {
        auto line = std::find_if(
            m_lines.begin(), m_lines.end(), [&](const Line& known) { return known.page == page; });
        if (line == m_lines.end())
            line = m_lines.insert(line, Line { page, {} });
        line->works.push_back({ worker, std::move(work) });
        m_waiting = 0;
        m_next.start(0);
    }

private:
    struct Work {
        QPointer<QObject> worker; ///< null when it has gone
        std::function<Slice(QByteArray&)> slice;
    };
    struct Line {
        JSContextEnv page;
        std::deque<Work> works;
    };

    Turns() { connect(&m_next, &QTimer::timeout, this, &Turns::take); }

    void take()
    {
        m_buffer.resize(BufferBytes);
        Line line = std::move(m_lines.front());
        m_lines.pop_front();
        const Work& work = line.works.front();
        // It may settle a promise, whose function may wait in a dialog: other turns are taken meanwhile.
        const Slice slice = work.worker ? work.slice(m_buffer) : Slice::Ended;
        if (slice == Slice::Ended)
            line.works.pop_front();
        m_waiting = slice == Slice::Waiting ? m_waiting + 1 : 0;
        const int pause = m_waiting > m_lines.size() ? RetryMs : 0;
        if (!line.works.empty())
            m_lines.push_back(std::move(line));
        if (m_lines.empty()) {
            m_next.stop();
            m_buffer.clear();
        } else {
            m_next.start(pause);
        }
    }

    std::deque<Line> m_lines;
    std::size_t m_waiting = 0; ///< so many turns in a row could do nothing
    QByteArray m_buffer;
    QTimer m_next;
};

} // namespace

void takeTurns(const JSContextEnv& page, QObject* worker, std::function<Slice(QByteArray&)> work)
{
    Turns::instance().add(page, worker, std::move(work));
}

} // namespace jsapi
