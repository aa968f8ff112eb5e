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
        m_classes.push_back({ makeOwnedText(scriptName), creator, {} });
}

void ObjectFactory::UnregisterClass(const QString& scriptName)
{
    std::erase_if(m_classes, [&](const Class& entry) { return entry.name == scriptName; });
}

IJSExtentionObject* ObjectFactory::Create(const QString& scriptName, const JSContextEnv&, IJSONValue* options)
{
    const auto known = std::find_if(
        m_classes.begin(), m_classes.end(), [&](const Class& entry) { return entry.name == scriptName; });
    if (known == m_classes.end() || !known->creator)
        return nullptr;
    IJSCreatable* creatable = nullptr;
    IJSExtentionObject* object = known->creator(&creatable);
    if (object) {
        known->typeId = object->GetTypeId();
        m_names.add(*known->typeId, known->name);
    }
    if (object && creatable)
        creatable->Initialise(options);
    return object;
}

QStringList ObjectFactory::classes() const
{
    QStringList names;
    for (const Class& entry : m_classes)
        names.append(entry.name);
    return names;
}

QString ObjectFactory::nameOf(IJSExtentionObject* object) const
{
    const auto known = std::find_if(m_classes.begin(), m_classes.end(),
        [id = object->GetTypeId()](const Class& entry) { return entry.typeId == id; });
    return known != m_classes.end() ? known->name : QString();
}

} // namespace vexlite
