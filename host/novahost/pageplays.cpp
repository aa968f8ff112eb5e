#include "host/novahost/pageplays.h"

namespace novahost {

QString PagePlays::begin(const QString& steps)
{
    QString error;
    std::vector<suite::PlayStep> read = suite::Play::read(steps, error);
    if (!error.isEmpty())
        return error;
    for (suite::PlayStep& step : read)
        step.wait = step.wait.value_or(0);
    std::erase_if(m_plays, [](const auto& play) { return play->hasEnded(); });
    m_plays.push_back(std::make_unique<suite::Play>(std::move(read)));
    m_plays.back()->begin();
    return {};
}

QStringList PagePlays::left() const
{
    QStringList steps;
    for (const auto& play : m_plays)
        steps += play->left();
    return steps;
}

} // namespace novahost
