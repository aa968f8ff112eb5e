#include "webui/invokable.h"

namespace jsapi {

QMetaMethod findInvokable(const QObject& object, const QString& name, int parameterType, int returnType)
{
    const QMetaObject* type = object.metaObject();
    for (int i = type->methodCount() - 1; i >= 0; --i) {
        const QMetaMethod method = type->method(i);
        if (QString::fromUtf8(method.name()) == name && method.methodType() != QMetaMethod::Signal
            && method.parameterCount() == 1 && method.parameterType(0) == parameterType
            && (returnType == QMetaType::UnknownType || method.returnType() == returnType))
            return method;
    }
    return {};
}

} // namespace jsapi
