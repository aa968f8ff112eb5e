// A widget of the suite's that may go at any time.
#pragma once

#include <QPointer>

namespace jsapi {

/// Like a QPointer, but empty as soon as the widget's destruction has come to its base class. A QPointer still leads to a
/// widget while destroyed() is emitted, when nothing but the QWidget is left of it. [GUI thread]
template <typename T> class Guarded {
public:
    Guarded() = default;
    explicit Guarded(T* widget)
        : m_widget(widget)
        , m_type(widget ? widget->metaObject() : nullptr)
    {
    }

    T* get() const
    {
        QObject* widget = m_widget.data();
        return widget && widget->metaObject() == m_type ? static_cast<T*>(widget) : nullptr;
    }
    T* operator->() const { return get(); }
    T& operator*() const { return *get(); }
    explicit operator bool() const { return get(); }

private:
    QPointer<QObject> m_widget;
    const QMetaObject* m_type = nullptr; ///< of the whole widget
};

} // namespace jsapi
