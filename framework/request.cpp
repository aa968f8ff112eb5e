#include "framework/request.h"

Reply KJsRequest::promised(Call& call, std::unique_ptr<KJsRequest> request, const char* withoutPromises)
{
    // Destroyed with the library, and with it the requests that have not finished by then.
    static QObject owner;

    KJSVariant promise;
    if (!request->m_promise.create(call.context(), promise))
        return call.fail(ErrorCode::OperationFailed, withoutPromises);
    request.release()->setParent(&owner);
    return call.answer(std::move(promise));
}

void KJsRequest::finish(const QVariant& value)
{
    m_promise.resolve({ { QString::fromLatin1("data"), value } });
    deleteLater();
}

void KJsRequest::finishRejected(const QString& message)
{
    m_promise.reject(message);
    deleteLater();
}
