// ClassNames: what script calls the classes of native objects and their members.
#pragma once

#include "host/vexlite/jsmemberlist.h"
#include "host/vexlite/ref.h"
#include "vexlite/jsextension.h"

#include <QString>
#include <unordered_map>

namespace vexlite {

class ClassNames {
public:
    void add(std::int64_t typeId, const QString& name);
    /// The members that a page sees of a class.
    void add(std::int64_t typeId, const IJSMemberList& members);
    /// "NovaExtension.Log"; empty for an unknown class.
    QString nameOf(std::int64_t typeId) const;
    QString memberName(std::int64_t typeId, std::int32_t id) const;
    /// The number of an object that another one has handed out; 0 for one of NovaExtension, and an unknown one.
    std::int64_t instanceOf(IJSExtentionObject* object) const;

private:
    struct Class {
        QString name;
        bool isHandedOut = false;
        std::unordered_map<std::int32_t, QString> members;
    };
    std::unordered_map<std::int64_t, Class> m_classes;
};

} // namespace vexlite
