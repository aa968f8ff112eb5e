#include "host/suite/cloud/cloudservice.h"

#include "cloud/schema/lark_types.h"
#include "cloud/schema/orbitapi_types.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/account/accountservice.h"
#include "host/suite/cloud/cloudlog.h"
#include "host/suite/cloud/cloudsvrproxy.h"
#include "suite/kcoreapplication.h"
#include "suite/kipclogininfo.h"

#include <QCoreApplication>
#include <algorithm>
#include <limits>
#include <vector>

namespace suite {

Q_LOGGING_CATEGORY(cloudLog, "suite.cloud")

namespace {

using cloudwire::FrameCodec;
using cloudwire::Head;
using cloudwire::Kind;
using nova::lark::LarkIpcArg;
using nova::lark::LarkIpcResult;

constexpr std::size_t MaxRequests = 100'000;
constexpr int MaxUsers = 100; ///< as many as the process accepts

const QString Envelope = QStringLiteral("larkIpcCall");
constexpr auto UserReport = "setCurrentUser";

std::unique_ptr<CloudService> s_service;

LarkIpcArg makeEnvelope(const QString& method, const QMap<QString, QString>& arguments)
{
    LarkIpcArg envelope;
    envelope.method = method.toStdString();
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument)
        envelope.argMap[argument.key().toStdString()] = argument.value().toStdString();
    return envelope;
}

QMap<QString, QString> toQMap(const std::map<std::string, std::string>& strings)
{
    QMap<QString, QString> map;
    for (const auto& [key, value] : strings)
        map.insert(QString::fromStdString(key), QString::fromStdString(value));
    return map;
}

QMetaMethod findReplySlot(const QObject& receiver, const QString& name, const char* resultType)
{
    const QByteArray signature = name.toLatin1() + "(bool,QString," + resultType + ')';
    return receiver.metaObject()->method(receiver.metaObject()->indexOfMethod(signature.constData()));
}

} // namespace

CloudService& CloudService::instance()
{
    if (!s_service) {
        s_service.reset(new CloudService);
        qAddPostRoutine(shutDown);
    }
    return *s_service;
}

void CloudService::shutDown()
{
    if (!s_service || s_service->m_ending)
        return;
    s_service->end();
    s_service.reset();
}

CloudService::CloudService()
    : m_process(profile::dataDirectory() + QStringLiteral("/cloud"))
{
    connect(&m_process, &CloudProcess::connected, this, &CloudService::introduce);
    connect(&m_process, &CloudProcess::received, this, &CloudService::read);
    connect(&m_process, &CloudProcess::interrupted, this, &CloudService::dropIntroductions);
    connect(&m_process, &CloudProcess::ended, this, &CloudService::failAll);
    const AccountService& accounts = AccountService::instance();
    connect(&accounts, &AccountService::loginInfoChanged, this, &CloudService::reportUser);
    connect(&accounts, &AccountService::currentAccountChanged, this, &CloudService::reportUser);
    // Among it is the user's company.
    connect(&accounts, &AccountService::userInfoChanged, this, &CloudService::reportUser);
}

void CloudService::end()
{
    m_ending = true;
    m_process.release();
    failAll();
    while (!m_actions.empty())
        runNext();
}

QString CloudService::invoke(
    const QString& procedure, const KCloudIpcArg& argument, QObject* receiver, const QString& replySlot)
{
    if (m_ending || !profile::serviceOn(QStringLiteral("cloudRequests")) || !receiver || !argument.message)
        return {};
    Request request { {}, receiver, {}, nullptr, &CloudService::deliverResult };
    const std::string_view typeName(argument.typeName);
    if (typeName == "LarkIpcArg" && static_cast<const LarkIpcArg*>(argument.message)->method == UserReport)
        return {};
    if (typeName == "KIpcLoginInfo") {
        request.slot = findReplySlot(*receiver, replySlot, "KRpcResponse");
        request.deliver = &CloudService::deliverRpcResponse;
        const auto& info = *static_cast<const KIpcLoginInfo*>(argument.message);
        const LarkIpcArg envelope = makeEnvelope(info.action, info.params);
        return post(Envelope, &envelope, std::move(request));
    }
    const cloudwire::MessageType* type = cloudwire::findArgumentType(procedure.toStdString());
    const cloudwire::MessageType* result = cloudwire::findResultType(procedure.toStdString());
    if (!type || !result || type->name != typeName) {
        qCWarning(cloudLog, "%s: no procedure that takes a %s", qPrintable(procedure), argument.typeName);
        return {};
    }
    request.slot = findReplySlot(*receiver, replySlot, result->name.data());
    return post(procedure, argument.message, std::move(request));
}

QString CloudService::invokeSdk(const QByteArray& bytes, QObject* receiver, const QString& replySlot)
{
    const std::string procedure = "orbitApiCall";
    const cloudwire::MessageType& type = *cloudwire::findArgumentType(procedure);
    const std::shared_ptr<void> message = type.make();
    if (m_ending || !profile::serviceOn(QStringLiteral("cloudRequests")) || !receiver
        || cloudwire::MessageCodec().decode(
            type, { bytes.constData(), static_cast<std::size_t>(bytes.size()) }, message.get()))
        return {};
    return post(QString::fromStdString(procedure), message.get(),
        { {}, receiver, findReplySlot(*receiver, replySlot, "QByteArray"), nullptr,
            &CloudService::deliverSdkReply });
}

QString CloudService::post(const QString& procedure, const void* argument, Request request)
{
    const std::string name = procedure.toStdString();
    if (request.receiver && !request.slot.isValid()) {
        qCWarning(cloudLog, "%s: the receiver has no such slot for the reply", name.c_str());
        return {};
    }
    if (m_requests.size() >= MaxRequests)
        return {};
    ensureProcess();
    const std::int32_t number = nextNumber();
    if (!m_process.send(
            m_codec.encode({ Kind::Call, name, number }, *cloudwire::findArgumentType(name), argument)))
        return {};
    request.id = QStringLiteral("cloud-%1").arg(number);
    request.result = cloudwire::findResultType(name);
    return m_requests.insert_or_assign(number, std::move(request)).first->second.id;
}

std::int32_t CloudService::nextNumber()
{
    do {
        m_number = m_number == std::numeric_limits<std::int32_t>::max() ? 1 : m_number + 1;
    } while (m_requests.count(m_number) > 0);
    return m_number;
}

void CloudService::reportUser()
{
    if (!m_process.isConnected())
        return;
    AccountService& accounts = AccountService::instance();
    const kacctoutsdk::IKAccount* account = accounts.getAccount({});
    const QString current = account ? account->userInfo().userId : QString();
    QStringList signedIn = accounts.accountList();
    if (signedIn.removeOne(current))
        signedIn.prepend(current);
    const LarkIpcArg envelope = makeEnvelope(QLatin1String(UserReport),
        { { QStringLiteral("userId"), current },
            { QStringLiteral("signedIn"), signedIn.mid(0, MaxUsers).join(QLatin1Char('\n')) },
            { QStringLiteral("companyId"), account ? account->companyInfo().companyId : QString() } });
    const std::int32_t number = nextNumber();
    const std::string name = Envelope.toStdString();
    m_requests.insert_or_assign(
        number, Request { {}, nullptr, {}, cloudwire::findResultType(name), &CloudService::onUserReported });
    m_process.sendAtOnce(
        m_codec.encode({ Kind::Call, name, number }, *cloudwire::findArgumentType(name), &envelope));
}

void CloudService::onUserReported(const Request&, bool ok, const void* result)
{
    const auto answer = toQMap(static_cast<const LarkIpcResult*>(result)->resultMap);
    CloudSvrProxy::instance().setLogin(
        ok && answer.value(QStringLiteral("isLogin")) == QLatin1String("true"));
}

void CloudService::deliverResult(const Request& request, bool ok, const void* result)
{
    if (request.receiver)
        request.slot.invoke(request.receiver, Qt::DirectConnection, Q_ARG(bool, ok),
            Q_ARG(QString, request.id), QGenericArgument(request.result->name.data(), result));
}

void CloudService::deliverRpcResponse(const Request& request, bool ok, const void* result)
{
    const auto& envelope = *static_cast<const LarkIpcResult*>(result);
    const KRpcResponse response { envelope.state, QString::fromStdString(envelope.resultString),
        toQMap(envelope.resultMap) };
    if (request.receiver)
        request.slot.invoke(request.receiver, Qt::DirectConnection, Q_ARG(bool, ok),
            Q_ARG(QString, request.id), Q_ARG(KRpcResponse, response));
}

void CloudService::deliverSdkReply(const Request& request, bool ok, const void* result)
{
    const auto& reply = *static_cast<const orbitapi::OrbitApiResult*>(result);
    QByteArray bytes;
    cloudwire::MessageCodec codec;
    if (ok || reply.resultState != 0) {
        const std::string_view encoded = codec.encode(*request.result, result);
        bytes = QByteArray(encoded.data(), static_cast<int>(encoded.size()));
    }
    if (request.receiver)
        request.slot.invoke(request.receiver, Qt::DirectConnection, Q_ARG(bool, ok),
            Q_ARG(QString, request.id), Q_ARG(QByteArray, bytes));
}

void CloudService::ensureProcess()
{
    if (!m_ending)
        m_process.ensure();
}

void CloudService::introduce()
{
    m_reader = {};
    reportUser();
}

/// Each connection begins with a report of its own.
void CloudService::dropIntroductions()
{
    std::erase_if(m_requests,
        [](const auto& request) { return request.second.deliver == &CloudService::onUserReported; });
}

void CloudService::failAll()
{
    std::vector<std::pair<std::int32_t, Request>> failed(m_requests.begin(), m_requests.end());
    m_requests.clear();
    runLater([] { CloudSvrProxy::instance().setLogin(false); });
    std::sort(failed.begin(), failed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (auto& [number, request] : failed)
        failLater(std::move(request));
}

void CloudService::failLater(Request request)
{
    runLater([this, request = std::move(request)] {
        (this->*request.deliver)(request, false, request.result->make().get());
    });
}

void CloudService::read()
{
    for (QByteArray bytes = m_process.read(); !bytes.isEmpty(); bytes = m_process.read()) {
        m_reader.add(bytes);
        while (const auto frame = m_reader.next()) {
            if (!take(*frame))
                return m_process.drop("a frame without a head or with a wrong message");
        }
        if (m_reader.isBroken())
            return m_process.drop("a frame of no length or too long");
    }
}

bool CloudService::take(std::string_view frame)
{
    const std::optional<Head> head = FrameCodec::takeHead(frame);
    if (!head)
        return false;
    if (head->kind == Kind::Notice) {
        takeNotice(*head, frame);
        return true;
    }
    auto entry = m_requests.extract(head->number);
    if (!entry)
        return true;
    Request& request = entry.mapped();
    const std::shared_ptr<void> result = request.result->make();
    if (m_codec.decode(*request.result, frame, result.get())) {
        m_requests.insert(std::move(entry));
        return false;
    }
    if (request.deliver == &CloudService::onUserReported)
        m_process.setReady();
    runLater([this, request = std::move(request), ok = head->kind == Kind::Reply, result] {
        (this->*request.deliver)(request, ok, result.get());
    });
    return true;
}

void CloudService::takeNotice(const Head& head, std::string_view message)
{
    const cloudwire::MessageType* type = cloudwire::findArgumentType(head.procedure);
    const std::shared_ptr<void> notice = type ? type->make() : nullptr;
    if (!notice || m_codec.decode(*type, message, notice.get()))
        return;
    if (type->name == "LarkIpcArg") {
        const auto& envelope = *static_cast<const LarkIpcArg*>(notice.get());
        if (envelope.method == "notifyActionsMap")
            runLater(
                [actions = toQMap(envelope.argMap)] { CloudSvrProxy::instance().notifyActions(actions); });
    } else if (type->name == "NotifyLarkRpcExceptionArg") {
        const auto& complaint = *static_cast<const nova::lark::NotifyLarkRpcExceptionArg*>(notice.get());
        const auto details = toQMap(complaint.extraParam);
        qCWarning(cloudLog, "the cloud process can not use a request: %s, %s",
            qPrintable(details.value(QStringLiteral("procedure"))),
            qPrintable(details.value(QStringLiteral("message"))));
        if (auto entry = m_requests.extract(head.number))
            failLater(std::move(entry.mapped()));
    }
}

void CloudService::runLater(std::function<void()> action)
{
    m_actions.push_back(std::move(action));
    if (m_actions.size() == 1)
        QMetaObject::invokeMethod(this, &CloudService::runNext, Qt::QueuedConnection);
}

/// An action may open a dialog, with an event loop in it: the next action must not wait for that.
void CloudService::runNext()
{
    if (m_actions.empty())
        return;
    const std::function<void()> action = std::move(m_actions.front());
    m_actions.pop_front();
    if (!m_actions.empty())
        QMetaObject::invokeMethod(this, &CloudService::runNext, Qt::QueuedConnection);
    action();
}

} // namespace suite

IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return profile::serviceOn(QStringLiteral("cloudIpc")) ? &suite::CloudService::instance() : nullptr;
}
