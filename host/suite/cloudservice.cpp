#include "host/suite/cloudservice.h"

#include "cloud/schema/lark_types.h"
#include "host/cloudwire/socketplace.h"
#include "host/profile/directories.h"
#include "host/profile/profile.h"
#include "host/suite/accountservice.h"
#include "host/suite/cloudsvrproxy.h"
#include "suite/kcoreapplication.h"
#include "suite/kipclogininfo.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QProcess>
#include <algorithm>
#include <csignal>
#include <limits>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace suite {

namespace {

using cloudwire::FrameCodec;
using cloudwire::Head;
using cloudwire::Kind;
using nova::lark::LarkIpcArg;
using nova::lark::LarkIpcResult;

Q_LOGGING_CATEGORY(cloudLog, "suite.cloud")

constexpr std::size_t MostRequests = 100'000;
constexpr qint64 MostUnsentBytes = 64 << 20;
constexpr qint64 ReadBytes = 64 << 10;
constexpr int MostUsers = 100; ///< the process hears of no more

// The process is there within some 100 ms.
constexpr int RetryMs = 20;
constexpr int MostStarts = 3;
constexpr int GiveUpAfterMs = 15'000; ///< without an answer to who is signed in
/// One that dies sooner is not started again before it is needed.
constexpr int LongEnoughMs = 1000;
constexpr int EndMs = 3000;

const QString Envelope = QStringLiteral("larkIpcCall");

std::unique_ptr<CloudService> s_service;

pid_t processBehind(const QLocalSocket& socket)
{
    ucred peer {};
    socklen_t size = sizeof(peer);
    const bool known =
        getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0;
    return known ? peer.pid : 0;
}

/// The program that a process runs; empty when it has ended, though nobody may have waited for it.
QString programOf(qint64 process)
{
    return QFileInfo(QStringLiteral("/proc/%1/exe").arg(process)).symLinkTarget();
}

LarkIpcArg envelopeOf(const QString& method, const QMap<QString, QString>& texts)
{
    LarkIpcArg envelope;
    envelope.method = method.toStdString();
    for (auto text = texts.begin(); text != texts.end(); ++text)
        envelope.argMap[text.key().toStdString()] = text.value().toStdString();
    return envelope;
}

QMap<QString, QString> textsOf(const std::map<std::string, std::string>& texts)
{
    QMap<QString, QString> map;
    for (const auto& [key, value] : texts)
        map.insert(QString::fromStdString(key), QString::fromStdString(value));
    return map;
}

QMetaMethod replySlotOf(const QObject& receiver, const QString& name, const char* resultType)
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
    : m_directory(profile::dataDirectory() + QStringLiteral("/cloud"))
{
    m_retry.setSingleShot(true);
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        giveUp(QStringLiteral("it does not answer; service.log in %1 may say why").arg(m_directory));
    });
    connect(&m_retry, &QTimer::timeout, this, &CloudService::tryToConnect);
    connect(&m_socket, &QLocalSocket::connected, this, &CloudService::onConnected);
    connect(&m_socket, &QLocalSocket::readyRead, this, &CloudService::read);
    // Writing finds it out as well, in the middle of invoke().
    connect(
        &m_socket, &QLocalSocket::disconnected, this, &CloudService::onDisconnected, Qt::QueuedConnection);
    const AccountService& accounts = AccountService::instance();
    connect(&accounts, &AccountService::loginInfoChanged, this, &CloudService::tellUser);
    connect(&accounts, &AccountService::currentAccountChanged, this, &CloudService::tellUser);
}

void CloudService::end()
{
    m_ending = true;
    m_retry.stop();
    m_patience.stop();
    m_socket.disconnect(this);
    if (profile::isDataTemporary()) {
        // Whatever it is doing: it can be killed at any moment.
        if (m_socket.state() == QLocalSocket::ConnectedState)
            m_process = processBehind(m_socket);
        else if (!isProcessRunning())
            m_process = 0;
        if (m_process > 0)
            kill(m_process, SIGKILL);
        for (int waited = 0; m_process > 0 && waited < EndMs && !programOf(m_process).isEmpty(); ++waited)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    failAll();
    while (!m_later.empty())
        runNext();
}

QString CloudService::invoke(
    const QString& procedure, const KCloudIpcArg& argument, QObject* receiver, const QString& replySlot)
{
    if (m_ending || !profile::serviceOn(QStringLiteral("cloudRequests")) || !receiver || !argument.message)
        return {};
    Request request { {}, receiver, {}, nullptr, &CloudService::deliverResult };
    const std::string_view typeName(argument.typeName);
    if (typeName == "KIpcLoginInfo") {
        request.slot = replySlotOf(*receiver, replySlot, "KRpcResponse");
        request.deliver = &CloudService::deliverRpcResponse;
        const auto& info = *static_cast<const KIpcLoginInfo*>(argument.message);
        const LarkIpcArg envelope = envelopeOf(info.action, info.params);
        return post(Envelope, &envelope, std::move(request));
    }
    const cloudwire::MessageType* type = cloudwire::argumentType(procedure.toStdString());
    const cloudwire::MessageType* result = cloudwire::resultType(procedure.toStdString());
    if (!type || !result || type->name != typeName) {
        qCWarning(cloudLog, "%s: no procedure that takes a %s", qPrintable(procedure), argument.typeName);
        return {};
    }
    request.slot = replySlotOf(*receiver, replySlot, result->name.data());
    return post(procedure, argument.message, std::move(request));
}

QString CloudService::post(const QString& procedure, const void* argument, Request request)
{
    const std::string name = procedure.toStdString();
    if (request.receiver && !request.slot.isValid()) {
        qCWarning(cloudLog, "%s: the receiver has no such slot for the reply", name.c_str());
        return {};
    }
    if (m_requests.size() >= MostRequests)
        return {};
    ensureProcess();
    const std::int32_t number = nextNumber();
    if (!send(m_codec.encode({ Kind::Call, name, number }, *cloudwire::argumentType(name), argument)))
        return {};
    request.id = QStringLiteral("cloud-%1").arg(number);
    request.result = cloudwire::resultType(name);
    return m_requests.insert_or_assign(number, std::move(request)).first->second.id;
}

std::int32_t CloudService::nextNumber()
{
    do {
        m_number = m_number == std::numeric_limits<std::int32_t>::max() ? 1 : m_number + 1;
    } while (m_requests.count(m_number) > 0);
    return m_number;
}

bool CloudService::send(const QByteArray& frame)
{
    if (frame.isEmpty() || m_unsent.size() + m_socket.bytesToWrite() + frame.size() > MostUnsentBytes)
        return false;
    if (m_state != State::Connected)
        m_unsent.append(frame);
    else if (m_socket.state() == QLocalSocket::ConnectedState)
        m_socket.write(frame);
    // Otherwise it fails in a moment, with all the others.
    return true;
}

void CloudService::tellUser()
{
    if (m_socket.state() != QLocalSocket::ConnectedState)
        return;
    AccountService& accounts = AccountService::instance();
    const kacctoutsdk::IKAccount* account = accounts.getAccount({});
    const QString current = account ? account->userInfo().userId : QString();
    QStringList signedIn = accounts.accountList();
    if (signedIn.removeOne(current))
        signedIn.prepend(current);
    const LarkIpcArg envelope = envelopeOf(QStringLiteral("setCurrentUser"),
        { { QStringLiteral("userId"), current },
            { QStringLiteral("signedIn"), signedIn.mid(0, MostUsers).join(QLatin1Char('\n')) },
            { QStringLiteral("companyId"), account ? account->companyInfo().companyId : QString() } });
    const std::int32_t number = nextNumber();
    const std::string name = Envelope.toStdString();
    m_requests.insert_or_assign(
        number, Request { {}, nullptr, {}, cloudwire::resultType(name), &CloudService::userTold });
    m_socket.write(m_codec.encode({ Kind::Call, name, number }, *cloudwire::argumentType(name), &envelope));
}

void CloudService::userTold(const Request&, bool ok, const void* result)
{
    const auto texts = textsOf(static_cast<const LarkIpcResult*>(result)->resultMap);
    CloudSvrProxy::instance().tellLogin(
        ok && texts.value(QStringLiteral("isLogin")) == QLatin1String("true"));
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
        textsOf(envelope.resultMap) };
    if (request.receiver)
        request.slot.invoke(request.receiver, Qt::DirectConnection, Q_ARG(bool, ok),
            Q_ARG(QString, request.id), Q_ARG(KRpcResponse, response));
}

bool CloudService::killProcess()
{
    const pid_t process = m_socket.state() == QLocalSocket::ConnectedState ? processBehind(m_socket) : 0;
    return process > 0 && kill(process, SIGKILL) == 0;
}

void CloudService::ensureProcess()
{
    if (m_state != State::Idle || m_ending)
        return;
    m_state = State::Starting;
    m_starts = 0;
    m_patience.start(GiveUpAfterMs);
    m_retry.start(0);
}

bool CloudService::isProcessRunning() const
{
    return m_process > 0 && programOf(m_process) == m_program;
}

bool CloudService::startProcess()
{
    const profile::Cloud settings = profile::current()->cloud;
    QProcess process;
    process.setProgram(settings.program.isEmpty()
            ? QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("novacloudd"))
            : profile::expanded(settings.program));
    process.setArguments({ QStringLiteral("--directory"), m_directory, QStringLiteral("--upload-rate"),
        QString::number(settings.uploadBytesPerSecond) });
    process.setWorkingDirectory(QStringLiteral("/"));
    // It outlives this process, and whoever waits for what this one prints must not wait for it.
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    ++m_starts;
    qint64 id = 0;
    if (!process.startDetached(&id))
        return false;
    m_process = static_cast<pid_t>(id);
    m_program = programOf(m_process);
    return true;
}

void CloudService::tryToConnect()
{
    if (m_state != State::Starting || m_socket.state() == QLocalSocket::ConnectedState)
        return;
    QDir().mkpath(QFileInfo(m_directory).path());
    mkdir(QFile::encodeName(m_directory).constData(), S_IRWXU);
    // Each time: the directory may be another one now.
    const cloudwire::SocketPlace place(m_directory);
    m_socket.connectToServer(place.name());
    if (m_socket.state() == QLocalSocket::ConnectedState)
        return;
    m_socket.abort();
    if (!isProcessRunning()) {
        if (m_starts == MostStarts)
            return giveUp(QStringLiteral("it ends at once; service.log in %1 may say why").arg(m_directory));
        if (!startProcess())
            return giveUp(
                QStringLiteral("novacloudd can not be started; name it in the profile, cloud.program"));
    }
    m_retry.start(RetryMs);
}

void CloudService::giveUp(const QString& reason)
{
    qCWarning(cloudLog, "there is no cloud process: %s", qPrintable(reason));
    m_state = State::Idle;
    m_retry.stop();
    m_patience.stop();
    m_socket.abort();
    m_unsent.clear();
    failAll();
}

void CloudService::onConnected()
{
    m_reader = {};
    m_connected.start();
    tellUser();
}

void CloudService::onDisconnected()
{
    // Meanwhile there may be another connection.
    if (m_socket.state() != QLocalSocket::UnconnectedState || m_state == State::Idle)
        return;
    if (m_state == State::Starting) {
        // It was about to end, and has got nothing but who is signed in.
        std::erase_if(m_requests,
            [](const auto& request) { return request.second.deliver == &CloudService::userTold; });
        m_retry.start(RetryMs);
        return;
    }
    qCWarning(cloudLog, "the cloud process has ended");
    m_state = State::Idle;
    failAll();
    if (m_connected.elapsed() > LongEnoughMs)
        ensureProcess();
}

void CloudService::failAll()
{
    std::vector<std::pair<std::int32_t, Request>> failed(m_requests.begin(), m_requests.end());
    m_requests.clear();
    later([] { CloudSvrProxy::instance().tellLogin(false); });
    std::sort(failed.begin(), failed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (auto& [number, request] : failed) {
        later([this, request = std::move(request)] {
            (this->*request.deliver)(request, false, request.result->make().get());
        });
    }
}

void CloudService::read()
{
    const auto giveBack = [this](const char* reason) {
        qCWarning(cloudLog, "the cloud process is not understood: %s", reason);
        m_socket.abort();
    };
    while (m_socket.bytesAvailable() > 0) {
        m_reader.add(m_socket.read(ReadBytes));
        while (const auto frame = m_reader.next()) {
            if (!take(*frame))
                return giveBack("a frame without a head or with a wrong message");
        }
        if (m_reader.isBroken())
            return giveBack("a frame of no length or too long");
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
    if (m_state == State::Starting && request.deliver == &CloudService::userTold) {
        m_state = State::Connected;
        m_patience.stop();
        m_socket.write(std::exchange(m_unsent, {}));
    }
    later([this, request = std::move(request), ok = head->kind == Kind::Reply, result] {
        (this->*request.deliver)(request, ok, result.get());
    });
    return true;
}

void CloudService::takeNotice(const Head& head, std::string_view message)
{
    const cloudwire::MessageType* type = cloudwire::argumentType(head.procedure);
    const std::shared_ptr<void> notice = type ? type->make() : nullptr;
    if (!notice || m_codec.decode(*type, message, notice.get()))
        return;
    if (type->name == "LarkIpcArg") {
        const auto& envelope = *static_cast<const LarkIpcArg*>(notice.get());
        if (envelope.method == "notifyActionsMap")
            later([actions = textsOf(envelope.argMap)] { CloudSvrProxy::instance().tellActions(actions); });
    } else if (type->name == "NotifyLarkRpcExceptionArg") {
        const auto& complaint = *static_cast<const nova::lark::NotifyLarkRpcExceptionArg*>(notice.get());
        const auto texts = textsOf(complaint.extraParam);
        qCWarning(cloudLog, "the cloud process can not use a request: %s, %s",
            qPrintable(texts.value(QStringLiteral("procedure"))),
            qPrintable(texts.value(QStringLiteral("message"))));
        if (auto entry = m_requests.extract(head.number)) {
            later([this, request = std::move(entry.mapped())] {
                (this->*request.deliver)(request, false, request.result->make().get());
            });
        }
    }
}

void CloudService::later(std::function<void()> action)
{
    m_later.push_back(std::move(action));
    if (m_later.size() == 1)
        QMetaObject::invokeMethod(this, &CloudService::runNext, Qt::QueuedConnection);
}

/// What is called may open a dialog, with an event loop in it: the next one must not wait for that.
void CloudService::runNext()
{
    if (m_later.empty())
        return;
    const std::function<void()> action = std::move(m_later.front());
    m_later.pop_front();
    if (!m_later.empty())
        QMetaObject::invokeMethod(this, &CloudService::runNext, Qt::QueuedConnection);
    action();
}

} // namespace suite

IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return profile::serviceOn(QStringLiteral("cloudIpc")) ? &suite::CloudService::instance() : nullptr;
}
