// Methods that objects of the suite's offer by name.
#pragma once

#include <QMetaMethod>

namespace jsapi {

/// The invokable method or slot of that name with one parameter of a type (QMetaType::Type), which returns another, or
/// anything for UnknownType. Invalid when there is none; signals are none. [GUI thread]
QMetaMethod findInvokable(
    const QObject& object, const QString& name, int parameterType, int returnType = QMetaType::UnknownType);

} // namespace jsapi
