// DeclaredTypes: what types/api.json declares of the parameters of single members, and of events.
//
// Only the members that are asked for are read, since a run mostly calls few: the whole takes longer than a short script.
#pragma once

#include <QHash>
#include <QStringList>
#include <optional>
#include <vector>

namespace novahost {

struct DeclaredType {
    enum class Kind { Any, String, Number, Integer, Boolean, Object, Array, Map, Function, Bytes, Union };

    Kind kind = Kind::Any;
    QString key {};                      ///< of a parameter and of a field: its name
    bool isOptional = true;              ///< of a parameter and of a field
    bool isRest = false;                 ///< of a parameter: all arguments from here on
    QStringList values {};               ///< of an enumeration: those that are allowed, as script writes them
    std::vector<DeclaredType> fields {}; ///< of an object
    std::vector<DeclaredType> inner {};  ///< of an array and a map: their items; of a union: the types

    /// "a string", "an object with `path`"
    QString name() const;
};

class DeclaredTypes {
public:
    /// The parameters of a member ("NovaExtension.FileSystem", "copy"); nothing for an unknown one.
    const std::optional<std::vector<DeclaredType>>& parameters(const QString& object, const QString& member);
    /// The names of an object's events.
    const QStringList& events(const QString& object);

private:
    QHash<QString, QHash<QString, std::optional<std::vector<DeclaredType>>>> m_known;
    QHash<QString, QStringList> m_events;
};

} // namespace novahost
