// An object of the suite's that may go at any time.
#pragma once

#include <QPointer>

namespace jsapi {

/// Like a QPointer, but empty as soon as the object's destruction has come to its base class. A QPointer still leads to a
/// widget while destroyed() is emitted, when nothing but the QWidget is left of it. [GUI thread]
template <typename T> class Guarded {
public:
    Guarded() = default;
    explicit Guarded(T* object)
        : m_object(object)
        , m_type(object ? object->metaObject() : nullptr)
    {
    }

    T* get() const
    {
        QObject* object = m_object.data();
        return object && object->metaObject() == m_type ? static_cast<T*>(object) : nullptr;
    }
    T* operator->() const { return get(); }
    T& operator*() const { return *get(); }
    explicit operator bool() const { return get(); }

private:
    QPointer<QObject> m_object;
    const QMetaObject* m_type = nullptr; ///< of the whole object
};

} // namespace jsapi
