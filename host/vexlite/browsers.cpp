#include "host/vexlite/browsers.h"

#include <QCoreApplication>

namespace vexlite {

std::int64_t Browser::ProcessId() const
{
    return QCoreApplication::applicationPid();
}

IVEXBrowserGroup* Browser::Group() const
{
    return m_groups && m_facts.grouped ? const_cast<Browser*>(this) : nullptr;
}

} // namespace vexlite
