// ObjectFactory: the classes whose objects script gets from other objects only.
#pragma once

#include "host/vexlite/classnames.h"
#include "host/vexlite/core.h"

#include <optional>
#include <vector>

namespace vexlite {

class ObjectFactory final : public IJSObjectFactory {
public:
    /// Adds the classes of the objects that it makes to `names`, which must live as long.
    explicit ObjectFactory(ClassNames& names)
        : m_names(names)
    {
    }
    void RegisterClass(const QString& scriptName, Creator creator) override;
    void UnregisterClass(const QString& scriptName) override;
    IJSExtentionObject* Create(
        const QString& scriptName, const JSContextEnv& context, IJSONValue* options) override;

    QStringList classes() const;
    /// The script name of the class of an object that was made here; empty for another one.
    QString nameOf(IJSExtentionObject* object) const;

private:
    struct Class {
        QString name;
        Creator creator;
        std::optional<std::int64_t> typeId; ///< of its objects, since the first was made
    };

    ClassNames& m_names;
    std::vector<Class> m_classes; ///< in the order of their registration
};

} // namespace vexlite
