#include "bench/libraryobject.h"

#include "bench/page.h"
#include "framework/entry.h"

namespace bench {

LibraryObject::LibraryObject(const QString& name)
{
    vexlite::Core& core = vexlite::Core::start({});
    ExtensionFactoryMap factories;
    GetNovaExtensionJsApiObj(&factories);
    core.setFactories(factories);
    m_context = core.openPage(&m_page, {});
    m_object = core.bindObject(m_context, name);
}

LibraryObject::~LibraryObject()
{
    m_object = {};
    vexlite::Core::instance()->closePage(m_context);
    vexlite::Core::stop();
}

std::int32_t LibraryObject::member(std::u16string_view name) const
{
    return memberId(m_object, name);
}

KJSVariant LibraryObject::call(std::int32_t member, JSApiArguments arguments) const
{
    KJSVariant result;
    KJSVariant exception;
    if (m_object.object->InvokeMethod(m_context, member, arguments, result, 0, exception) != KR_OK)
        qFatal("The call failed.");
    return result;
}

} // namespace bench
