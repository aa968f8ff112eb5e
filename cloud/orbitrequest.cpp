#include "cloud/orbitrequest.h"

#include "cloud/clouddocapicaller.h"
#include "cloud/sdkmessages.h"
#include "suite/kcloudsdk.h"

#include <QJsonDocument>

namespace jsapi {

namespace {

std::optional<QVariant> readData(const std::string& text)
{
    if (text.empty())
        return std::nullopt;
    const QJsonDocument json = QJsonDocument::fromJson(QByteArray::fromStdString(text));
    return json.isNull() ? QVariant(QString::fromStdString(text)) : json.toVariant();
}

} // namespace

Answer<Promise<OrbitReply>> KOrbitRequest::start(
    const JSContextEnv& page, const orbitapi::CommonRequestArg& request, Callback<OrbitReply> callback)
{
    KCloudSdk* sdk = KCloudSdk::getInstance();
    if (!sdk)
        return NoCloudSdk;
    const QString key = QString::fromStdString(request.baseInfo.requestKey);
    const QByteArray bytes = encodeSdkRequest(request);
    auto caller = std::make_unique<KOrbitRequest>(std::move(callback));
    if (bytes.isEmpty()
        || sdk->invoke(key, bytes, caller.get(), heapString("slot_commonRequestFinished")).isEmpty())
        return CallFailed / key;
    connect(&caller->m_timeout, SIGNAL(timeout()), caller.get(), SLOT(giveUp()));
    caller->m_timeout.setSingleShot(true);
    caller->m_timeout.start(request.baseInfo.timeout);
    return promise(page, std::move(caller), PromiseServiceError);
}

void KOrbitRequest::slot_commonRequestFinished(bool, const QString&, const QByteArray& bytes)
{
    m_timeout.stop();
    const std::optional<orbitapi::OrbitApiResult> reply = decodeSdkReply(bytes);
    if (!reply)
        return reject(CommonRequestFailed);
    const OrbitReply value { reply->resultState == 0, reply->resultState, reply->httpStatusCode,
        reply->qNetworkError != 0 ? reply->qNetworkError : reply->kNetworkError, reply->message,
        readData(reply->resultData), reply->result, reply->headerMap, reply->host, reply->api, reply->userId,
        static_cast<double>(reply->replyTimestamp), static_cast<double>(reply->duration) };
    // Script may do anything, even end this request.
    const Callback<OrbitReply> callback = std::move(m_callback);
    resolve(value);
    callback(value);
}

void KOrbitRequest::giveUp()
{
    m_callback = {};
    reject(CommonRequestTimedOut);
}

} // namespace jsapi
