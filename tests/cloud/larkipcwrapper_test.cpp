// The wrapper, with a service that replies when the test says so.
#include "cloud/ipc/larkipcwrapper.h"
#include "tests/support/cloudservice.h"

namespace {

class Wrapper : public testing::Test {
protected:
    Wrapper()
    {
        service.nextId = [this] { return id; };
    }

    /// Sends an envelope whose reply is noted under `name`; `then` runs in the callback.
    QString call(const char* name, std::function<void()> then = {})
    {
        const auto alive = std::make_shared<int>();
        lifetimes.push_back(alive);
        return wrapper->call<LarkIpcResult>(QString::fromUtf16(LarkIpcCall),
            larkIpcArg(QStringLiteral("m"), {}),
            [this, alive, name, then](bool success, const QString& id, const LarkIpcResult& result) {
                log.push_back(std::string(name) + (success ? " ok " : " failed ") + id.toStdString() + ' '
                    + std::to_string(result.state));
                if (then)
                    then();
            });
    }

    void reply(const char* to = "1", bool success = true)
    {
        support::CloudRequest request = service.requests.back();
        request.id = QString::fromLatin1(to);
        EXPECT_TRUE(request.replyState(success, 5, {}));
    }

    /// Which of the callbacks, in the order of the calls, are still kept.
    std::string kept() const
    {
        std::string text;
        for (const auto& alive : lifetimes)
            text += alive.expired() ? '-' : '+';
        return text;
    }

    using Log = std::vector<std::string>;

    support::FakeCloudService service;
    QString id = QStringLiteral("1"); ///< of all requests
    std::unique_ptr<KLarkIpcWrapper> wrapper = std::make_unique<KLarkIpcWrapper>();
    Log log;
    std::vector<std::weak_ptr<int>> lifetimes;
};

TEST_F(Wrapper, SendsTheEnvelopeAndCallsBackOnce)
{
    EXPECT_EQ(call("a"), QStringLiteral("1"));
    EXPECT_EQ(service.requests.back().procedure, QStringLiteral("larkIpcCall"));
    reply("2");
    reply("1 ");
    EXPECT_EQ(log, Log());
    reply();
    reply();
    EXPECT_EQ(log, Log { "a ok 1 5" });
    call("b");
    call("c"); // under the same identifier
    EXPECT_EQ(kept(), "--+");
    reply("1", false);
    reply();
    EXPECT_EQ(log, (Log { "a ok 1 5", "c failed 1 5" }));
    id.clear();
    EXPECT_EQ(call("refused"), QString());
    reply("");
    support::cloudIpc = nullptr;
    EXPECT_EQ(call("no service"), QString());
    EXPECT_EQ(log.size(), 2u);
    EXPECT_EQ(kept(), "-----");
}

TEST_F(Wrapper, SurvivesItsCallbacks)
{
    call("again", [this] { call("inner"); });
    reply();
    reply();
    EXPECT_EQ(log, (Log { "again ok 1 5", "inner ok 1 5" }));

    id = QStringLiteral("2");
    call("pending");
    id = QStringLiteral("1");
    call("destroys", [this] { wrapper.reset(); });
    reply();
    EXPECT_EQ(log.back(), "destroys ok 1 5");
    EXPECT_EQ(kept(), "----");
}

TEST_F(Wrapper, TakesRepliesOfEachOverloadAtOnceOrQueued)
{
    const SyncFolderResult synced;
    const void* address = nullptr;
    const auto keep = [&](bool, const QString&, const SyncFolderResult& result) { address = &result; };
    wrapper->call<SyncFolderResult>(QStringLiteral("syncFolder"), SyncFolderArg(), keep);
    EXPECT_TRUE(service.requests.back().reply(true, synced));
    EXPECT_EQ(std::exchange(address, nullptr), &synced);
    wrapper->call<SyncFolderResult>(QStringLiteral("syncFolder"), SyncFolderArg(), keep);
    const void* untyped = &synced;
    EXPECT_TRUE(service.requests.back().reply(true, untyped, "const void*"));
    EXPECT_EQ(address, &synced);

    call("queued");
    EXPECT_TRUE(service.requests.back().replyState(true, 6, {}, Qt::QueuedConnection));
    EXPECT_EQ(log, Log());
    QCoreApplication::processEvents();
    EXPECT_EQ(log, Log { "queued ok 1 6" });
}

} // namespace
