// The wrapper, with a service that answers when a test says so.
#include "cloud/ipc/larkipcwrapper.h"
#include "suite/kcoreapplication.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QStringList>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>

namespace {

class FakeService final : public IKCloudIpcService {
public:
    QString invoke(const QString& procedure, const KCloudIpcArg& argument, QObject* receiver,
        const QString& replySlot) override
    {
        sent += procedure + QLatin1Char(' ') + QString::fromLatin1(argument.typeName);
        if (argument.typeName == std::string("LarkIpcArg"))
            envelope = *static_cast<const LarkIpcArg*>(argument.message);
        m_receiver = receiver;
        m_slot = replySlot.toLatin1();
        return nextId;
    }

    /// Calls the slot by its name, as a service does.
    template <typename Result>
    bool reply(const char* typeName, const Result& result, bool success, const QString& id,
        Qt::ConnectionType connection = Qt::DirectConnection) const
    {
        return QMetaObject::invokeMethod(m_receiver, m_slot.constData(), connection, Q_ARG(bool, success),
            Q_ARG(QString, id), QGenericArgument(typeName, &result));
    }

    QString nextId = QStringLiteral("1");
    QStringList sent;
    LarkIpcArg envelope;

private:
    QObject* m_receiver = nullptr;
    QByteArray m_slot;
};

FakeService* offered = nullptr;

} // namespace

IKCloudIpcService* KCoreApplication::cloudIpcService()
{
    return offered;
}

namespace {

class Wrapper : public testing::Test {
protected:
    Wrapper() { offered = &service; }
    ~Wrapper() override { offered = nullptr; }

    /// Sends an envelope whose reply is noted under `name`; `then` runs in the callback.
    QString call(const char* name, std::function<void()> then = {})
    {
        const auto alive = std::make_shared<int>();
        lifetimes.push_back(alive);
        return wrapper->call<LarkIpcResult>(QString::fromUtf16(LarkIpcCall),
            larkIpcArg(QStringLiteral("m"), {}),
            [this, alive, name, then](bool success, const QString& id, const LarkIpcResult& result) {
                log += QStringLiteral("%1 %2 %3 %4")
                           .arg(QLatin1String(name))
                           .arg(success)
                           .arg(id)
                           .arg(result.state);
                if (then)
                    then();
            });
    }

    void reply(const char* id, bool success = true)
    {
        LarkIpcResult result;
        result.state = 5;
        EXPECT_TRUE(service.reply("LarkIpcResult", result, success, QString::fromLatin1(id)));
    }

    /// Which of the callbacks, in the order of the calls, are still kept.
    std::string kept() const
    {
        std::string text;
        for (const auto& alive : lifetimes)
            text += alive.expired() ? '-' : '+';
        return text;
    }

    FakeService service;
    std::unique_ptr<KLarkIpcWrapper> wrapper = std::make_unique<KLarkIpcWrapper>();
    QStringList log;
    std::vector<std::weak_ptr<int>> lifetimes;
};

TEST_F(Wrapper, SendsTheEnvelopeAndCallsBackOnce)
{
    EXPECT_EQ(call("a"), QStringLiteral("1"));
    EXPECT_EQ(service.sent, QStringList(QStringLiteral("larkIpcCall LarkIpcArg")));
    reply("2");
    reply("1 ");
    EXPECT_EQ(log, QStringList());
    reply("1");
    reply("1");
    EXPECT_EQ(log, QStringList(QStringLiteral("a 1 1 5")));
    EXPECT_EQ(kept(), "-");
}

TEST_F(Wrapper, PassesFailuresThrough)
{
    call("a");
    reply("1", false);
    EXPECT_EQ(log, QStringList(QStringLiteral("a 0 1 5")));
}

TEST_F(Wrapper, DropsTheCallbackWhenNothingIsSent)
{
    service.nextId.clear();
    EXPECT_EQ(call("refused"), QString());
    reply("");
    offered = nullptr;
    EXPECT_EQ(call("no service"), QString());
    EXPECT_EQ(log, QStringList());
    EXPECT_EQ(kept(), "--");
}

TEST_F(Wrapper, ReplacesTheCallbackOfAnIdentifierThatComesAgain)
{
    call("a");
    call("b");
    EXPECT_EQ(kept(), "-+");
    reply("1");
    reply("1");
    EXPECT_EQ(log, QStringList(QStringLiteral("b 1 1 5")));
}

TEST_F(Wrapper, DestroysPendingCallbacksUncalled)
{
    call("a");
    wrapper.reset();
    EXPECT_EQ(kept(), "-");
    EXPECT_EQ(log, QStringList());
}

TEST_F(Wrapper, SurvivesItsCallbacks)
{
    call("again", [this] { call("inner"); });
    reply("1");
    reply("1");
    EXPECT_EQ(log, (QStringList { QStringLiteral("again 1 1 5"), QStringLiteral("inner 1 1 5") }));

    // Qt does not carry exceptions: the slot is called directly.
    call("throws", [] { throw std::runtime_error("callback"); });
    EXPECT_THROW(wrapper->onResponse(true, QStringLiteral("1"), LarkIpcResult()), std::runtime_error);
    reply("1");
    wrapper->call<LarkIpcResult>(QString(), LarkIpcArg(), {});
    EXPECT_THROW(wrapper->onResponse(true, QStringLiteral("1"), LarkIpcResult()), std::bad_function_call);

    service.nextId = QStringLiteral("2");
    call("pending");
    service.nextId = QStringLiteral("1");
    call("destroys", [this] { wrapper.reset(); });
    reply("1");
    EXPECT_EQ(log.mid(2), (QStringList { QStringLiteral("throws 1 1 0"), QStringLiteral("destroys 1 1 5") }));
    EXPECT_EQ(kept(), "-----");
}

TEST_F(Wrapper, MayGoWithACallbackThatIsReplaced)
{
    // What ends the wrapper sees first that the other callback has taken the place.
    std::shared_ptr<void> last(nullptr, [this](void*) {
        reply("1");
        wrapper.reset();
    });
    wrapper->call<LarkIpcResult>(
        QString(), LarkIpcArg(), [last = std::move(last)](bool, const QString&, const LarkIpcResult&) {});
    EXPECT_EQ(call("b"), QStringLiteral("1"));
    EXPECT_EQ(log, QStringList(QStringLiteral("b 1 1 5")));
    EXPECT_FALSE(wrapper);
}

TEST_F(Wrapper, TakesRepliesOfEachOverload)
{
    SyncFolderResult synced;
    synced.state = 6;
    const void* address = nullptr;
    const auto keep = [&](bool, const QString&, const SyncFolderResult& result) { address = &result; };
    SyncFolderArg argument;
    wrapper->call<SyncFolderResult>(QStringLiteral("syncFolder"), argument, keep);
    EXPECT_TRUE(service.reply("SyncFolderResult", synced, true, QStringLiteral("1")));
    EXPECT_EQ(address, &synced);
    wrapper->call<SyncFolderResult>(QStringLiteral("syncFolder"), argument, keep);
    address = nullptr;
    const void* untyped = &synced;
    EXPECT_TRUE(service.reply("const void*", untyped, true, QStringLiteral("1")));
    EXPECT_EQ(address, &synced);
    EXPECT_EQ(service.sent.last(), QStringLiteral("syncFolder SyncFolderArg"));
}

TEST_F(Wrapper, TakesQueuedReplies)
{
    int count = 0;
    QCoreApplication application(count, nullptr);
    call("a");
    EXPECT_TRUE(
        service.reply("LarkIpcResult", LarkIpcResult(), true, QStringLiteral("1"), Qt::QueuedConnection));
    EXPECT_EQ(log, QStringList());
    QCoreApplication::processEvents();
    EXPECT_EQ(log, QStringList(QStringLiteral("a 1 1 0")));
}

TEST(MetaObject, HasTheThreeSlots)
{
    QStringList methods;
    const QMetaObject& meta = KLarkIpcWrapper::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods += QString::fromLatin1(meta.method(i).methodSignature());
    EXPECT_EQ(methods,
        (QStringList { QStringLiteral("onResponse(bool,QString,const void*)"),
            QStringLiteral("onResponse(bool,QString,LarkIpcResult)"),
            QStringLiteral("onResponse(bool,QString,SyncFolderResult)") }));
}

TEST(Envelope, HasUtf8TextsAndNoNamespace)
{
    const LarkIpcArg envelope = larkIpcArg(
        QStringLiteral("getTaskState"), { { QStringLiteral("taskId"), QString::fromUtf8("\xc3\xa9") } });
    EXPECT_EQ(envelope.nameSpace, "");
    EXPECT_EQ(envelope.method, "getTaskState");
    EXPECT_EQ(envelope.argMap, (std::map<std::string, std::string> { { "taskId", "\xc3\xa9" } }));
}

} // namespace
