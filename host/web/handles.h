// Handles: the native objects that a document holds, and their classes.
#pragma once

#include "host/engine/webengine.h"
#include "host/web/wire.h"

#include <map>
#include <unordered_map>

namespace engine::web {

/// A native class as one document may use it.
struct NativeClass {
    int id;
    std::int64_t typeId;
    QString tag;                                                  ///< "NovaExtension.Log"
    std::map<std::int32_t, std::pair<JSAccess, QString>> members; ///< that the document may use, by id
};

/// A native object that a document holds.
struct Handle {
    vexlite::Ref<IJSExtentionObject> object;
    const NativeClass* nativeClass;
    std::int64_t sent = 0; ///< how often the document has got it
};

/// Numbers are never used again in a document. [GUI thread]
class Handles {
public:
    explicit Handles(OriginRights rights)
        : m_rights(std::move(rights))
    {
    }
    ~Handles() { clear(); }
    Handles(const Handles&) = delete;
    Handles& operator=(const Handles&) = delete;

    /// Null when there is no such object.
    const Handle* find(std::int64_t id) const;
    /// Writes an object as a value for the document that `context` names, which must be open. It gets its class, `name`
    /// where that has no other one, with newClasses(). False, with the reason in `status`, when the object can not be bound.
    bool write(WireWriter& writer, IJSExtentionObject* object, const JSContextEnv& context,
        const QString& name, KResult& status);
    /// The same for an object that has been bound. Returns its number.
    std::int64_t write(WireWriter& writer, vexlite::BoundObject bound, const QString& name);
    /// Writes the object of this number. False when the document holds none.
    bool writeAgain(WireWriter& writer, std::int64_t id);
    /// The document has dropped what it had got `sent` times. It may have got the object again meanwhile.
    void release(std::int64_t id, std::int64_t sent);
    /// Releases all.
    void clear();

    /// The classes that the document has not got yet, which it has got then.
    WireBatch takeNewClasses() { return std::exchange(m_newClasses, {}); }

private:
    const NativeClass& classOf(IJSExtentionObject* object, IJSMemberList& members, const QString& tag);
    /// The number of an object; 0: the document does not hold it.
    std::int64_t idOf(IJSExtentionObject* object) const;

    OriginRights m_rights;
    std::vector<std::unique_ptr<NativeClass>> m_classes;
    WireBatch m_newClasses;
    std::unordered_map<std::int64_t, Handle> m_handles;
    std::unordered_map<IJSExtentionObject*, std::int64_t> m_ids;
    std::int64_t m_lastId = 0;
};

} // namespace engine::web
