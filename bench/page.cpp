#include "bench/page.h"

namespace bench {

NativePage::NativePage()
    : m_core(vexlite::Core::start({}))
    , m_context(m_core.openPage(this, {}))
{
}

NativePage::~NativePage()
{
    vexlite::Core::stop();
}

vexlite::BoundObject NativePage::bind(ExtensionFactory factory)
{
    const QString name = QStringLiteral("Bench");
    m_core.setFactories({ { name, factory } });
    vexlite::BoundObject bound = m_core.bindObject(m_context, name);
    if (!bound.object || !bound.members)
        qFatal("The object can not be bound.");
    return bound;
}

std::int32_t memberId(const vexlite::BoundObject& object, std::u16string_view name)
{
    for (std::int32_t index = 0; index < object.members->Count(); ++index) {
        if (object.members->Name(index) == name)
            return object.members->Id(index);
    }
    qFatal("The object has no such member.");
}

} // namespace bench
