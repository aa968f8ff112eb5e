// ObjectFactory: the classes whose objects script reaches through other objects only.
#pragma once

#include "host/vexlite/core.h"

#include <vector>

namespace vexlite {

class ObjectFactory final : public IJSObjectFactory {
public:
    void RegisterClass(const QString& scriptName, Creator creator) override;
    void UnregisterClass(const QString& scriptName) override;
    IJSExtentionObject* Create(
        const QString& scriptName, const JSContextEnv& context, IJSONValue* options) override;

    QStringList classes() const;
    /// Nothing when no such class is known, or its creator makes nothing that can be initialised.
    Ref<IJSExtentionObject> createUninitialised(const QString& scriptName, IJSCreatable** creatable) const;

private:
    struct Class {
        QString name;
        Creator creator;
    };

    std::vector<Class> m_classes; ///< a handful, in the order of their announcement
};

} // namespace vexlite
