#include "host/cloudd/jobqueue.h"

#include <algorithm>

namespace cloudd {

namespace {

constexpr size_t MaxRunning = 3;
constexpr int RestMs = 10;

} // namespace

JobQueue::JobQueue()
{
    connect(&m_next, &QTimer::timeout, this, &JobQueue::runNext);
}

void JobQueue::add(std::shared_ptr<Job> job)
{
    m_waiting.push_back(std::move(job));
    startWaiting();
}

void JobQueue::remove(const Job* job)
{
    const auto isIt = [&](const std::shared_ptr<Job>& other) { return other.get() == job; };
    const size_t removed = std::erase_if(m_running, isIt) + std::erase_if(m_waiting, isIt);
    startWaiting();
    if (removed && size() == 0)
        Q_EMIT idle();
}

void JobQueue::startWaiting()
{
    while (m_running.size() < MaxRunning && !m_waiting.empty()) {
        m_running.push_back(std::move(m_waiting.front()));
        m_waiting.pop_front();
    }
    if (m_running.empty()) {
        m_next.stop();
        return;
    }
    const int interval = m_idleCount >= m_running.size() ? RestMs : 0;
    if (!m_next.isActive() || m_next.interval() != interval)
        m_next.start(interval);
}

void JobQueue::runNext()
{
    if (m_idleCount >= m_running.size())
        m_idleCount = 0;
    const std::shared_ptr<Job> job = m_running[m_idleCount];
    const Job::Step step = job->step();
    if (step == Job::Step::Later) {
        ++m_idleCount;
    } else {
        m_idleCount = 0;
        const auto place = std::find(m_running.begin(), m_running.end(), job);
        if (place != m_running.end())
            std::rotate(place, place + 1, m_running.end());
    }
    if (step == Job::Step::Ended)
        remove(job.get());
    else
        startWaiting();
}

} // namespace cloudd
