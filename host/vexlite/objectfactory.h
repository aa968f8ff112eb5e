// ObjectFactory: the classes whose objects script gets from other objects only.
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

private:
    struct Class {
        QString name;
        Creator creator;
    };

    std::vector<Class> m_classes; ///< in the order of their registration
};

} // namespace vexlite
