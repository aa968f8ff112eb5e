#include "host/vexlite/browsers.h"

#include "suite/kjsapiwebwidget.h"
#include "vexlite/webwidgets.h"

#include <QCoreApplication>

namespace vexlite {

std::int64_t Browser::ProcessId() const
{
    return QCoreApplication::applicationPid();
}

std::uint32_t Browser::Window() const
{
    const KJsApiWebWidget* widget = m_facts.window ? nullptr : GetWebWidget(m_facts.browserId);
    return widget ? static_cast<std::uint32_t>(widget->effectiveWinId()) : m_facts.window;
}

IVEXBrowserGroup* Browser::Group() const
{
    return m_groups && m_facts.grouped ? const_cast<Browser*>(this) : nullptr;
}

} // namespace vexlite
