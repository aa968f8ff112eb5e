#include "host/vexlite/objectfactory.h"

#include "host/vexlite/ownedtext.h"

#include <algorithm>

namespace vexlite {

void ObjectFactory::RegisterClass(const QString& scriptName, Creator creator)
{
    const auto known = std::find_if(
        m_classes.begin(), m_classes.end(), [&](const Class& entry) { return entry.name == scriptName; });
    if (known != m_classes.end())
        known->creator = creator;
    else
        m_classes.push_back({ makeOwnedText(scriptName), creator });
}

void ObjectFactory::UnregisterClass(const QString& scriptName)
{
    std::erase_if(m_classes, [&](const Class& entry) { return entry.name == scriptName; });
}

IJSExtentionObject* ObjectFactory::Create(const QString& scriptName, const JSContextEnv&, IJSONValue* options)
{
    IJSCreatable* creatable = nullptr;
    Ref<IJSExtentionObject> object = createUninitialised(scriptName, &creatable);
    if (object && creatable)
        creatable->Initialise(options);
    return object.release();
}

QStringList ObjectFactory::classes() const
{
    QStringList names;
    for (const Class& entry : m_classes)
        names.append(entry.name);
    return names;
}

Ref<IJSExtentionObject> ObjectFactory::createUninitialised(
    const QString& scriptName, IJSCreatable** creatable) const
{
    *creatable = nullptr;
    const auto known = std::find_if(
        m_classes.begin(), m_classes.end(), [&](const Class& entry) { return entry.name == scriptName; });
    if (known == m_classes.end() || !known->creator)
        return {};
    return Ref<IJSExtentionObject>::adopt(known->creator(creatable));
}

} // namespace vexlite
