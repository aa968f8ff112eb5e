#include "host/cloudd/rounds.h"

#include <algorithm>

namespace cloudd {

namespace {

constexpr size_t MostRunning = 3;
constexpr int RestMs = 10;

} // namespace

Rounds::Rounds()
{
    connect(&m_next, &QTimer::timeout, this, &Rounds::turn);
}

void Rounds::add(std::shared_ptr<Job> job)
{
    m_waiting.push_back(std::move(job));
    fill();
}

void Rounds::remove(const Job* job)
{
    const auto isIt = [&](const std::shared_ptr<Job>& other) { return other.get() == job; };
    const size_t removed = std::erase_if(m_running, isIt) + std::erase_if(m_waiting, isIt);
    fill();
    if (removed && size() == 0)
        Q_EMIT idle();
}

void Rounds::fill()
{
    while (m_running.size() < MostRunning && !m_waiting.empty()) {
        m_running.push_back(std::move(m_waiting.front()));
        m_waiting.pop_front();
    }
    if (m_running.empty()) {
        m_next.stop();
        return;
    }
    const int interval = m_asked >= m_running.size() ? RestMs : 0;
    if (!m_next.isActive() || m_next.interval() != interval)
        m_next.start(interval);
}

void Rounds::turn()
{
    if (m_asked >= m_running.size())
        m_asked = 0;
    const std::shared_ptr<Job> job = m_running[m_asked];
    const Job::Step step = job->step();
    if (step == Job::Step::Later) {
        ++m_asked;
    } else {
        m_asked = 0;
        const auto place = std::find(m_running.begin(), m_running.end(), job);
        if (place != m_running.end())
            std::rotate(place, place + 1, m_running.end());
    }
    if (step == Job::Step::Ended)
        remove(job.get());
    else
        fill();
}

} // namespace cloudd
