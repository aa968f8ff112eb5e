// The account object with an account service that comes, goes and is replaced as the suite likes.
#include "suite/kaccountsdk.h"
#include "suite/kcoreapplication.h"
#include "tests/abi/fakecore.h"
#include "vexlite/jsapiutil.h"
#include "vexlite/registrymap.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

extern "C" void GetNovaExtensionJsApiObj(ExtensionFactoryMap* factories);

namespace {

using namespace kacctoutsdk;

class FakeService final : public KAccountSdkProxy, public IKAccount {
public:
    bool login(const QVariantMap& params) override
    {
        asked = params;
        return accepts;
    }
    bool logout(const QVariantMap&) override { return accepts; }
    bool upgradeMember(const QVariantMap& params) override
    {
        asked = params;
        return accepts;
    }
    IKAccount* getAccount(const QString&) override { return this; }
    QStringList accountList() const override { return {}; }
    bool isSwitching() const override { return false; }
    QString generateConfirmId() override { return QStringLiteral("id %1").arg(++ids); }
    KLoginConfirmation confirmLoginSuccess(const QString& id) override
    {
        return states.value(id, KLoginConfirmation::Ended);
    }

    bool isLoggedIn() const override { return !user.isEmpty(); }
    KUserInfo userInfo() const override
    {
        KUserInfo info;
        info.userId = user;
        return info;
    }
    KCompanyInfo companyInfo() const override { return {}; }
    QVector<KMembership> memberships() const override { return {}; }
    QVariantMap rawMemberInfo() const override { return {}; }
    bool isMember(KMemberKind) const override { return false; }
    QString novasid() const override { return {}; }

    void become(const char* userId)
    {
        user = QString::fromLatin1(userId);
        Q_EMIT loginInfoChanged();
    }

    QString user;
    QVariantMap asked;
    QMap<QString, KLoginConfirmation> states;
    bool accepts = true;
    int ids = 0;
};

KAccountSdkProxy* s_service = nullptr;

} // namespace

// A program's own definitions come before the suite's.
namespace vexlite {
IVEXJSCore* GetVEXJSCore()
{
    return FakeCore::current;
}
} // namespace vexlite

KAccountSdkProxy* KCoreApplication::getAccountSDK()
{
    return s_service;
}

namespace {

class Account : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        static int argumentCount = 0;
        static QCoreApplication application(argumentCount, nullptr);
        static FakeCore core;
        s_core = &core;
    }
    void SetUp() override
    {
        useService(std::make_unique<FakeService>());
        // The object is the process's: what earlier tests left is told before this one begins.
        call(u"addLoginListener", 1);
        heard();
    }

    void useService(std::unique_ptr<FakeService> service)
    {
        s_service = service.get();
        m_service = std::move(service);
    }

    /// Calls a member for a page; the failure's text, empty for success.
    static QString call(const char16_t* name, std::int64_t page, const KJSVariant& argument = {})
    {
        ExtensionFactoryMap factories;
        GetNovaExtensionJsApiObj(&factories);
        factories.value(QStringLiteral("Account"))(1, 2);
        IJSExtentionObject* account = s_core->bound.back();
        IJSMemberList* list = nullptr;
        account->GetMemberTable({ 4, page }, &list);
        KJSVariant result, exception;
        JSApiArguments arguments(&argument, 1);
        for (std::int32_t id = 0; id < list->Count(); ++id) {
            if (std::u16string_view(list->Name(id)) == name)
                account->InvokeMethod({ 4, page }, id, arguments, result, 0, exception);
        }
        list->Release();
        account->Release();
        if (exception.isEmpty())
            return {};
        return static_cast<IJSONValue*>(exception.raw().punkVal)->GetString(QStringLiteral("msg"), {});
    }

    /// The same with an object as argument.
    static QString callWith(const char16_t* name, std::int64_t page, const QVariantMap& params)
    {
        KJSVariant object;
        KJSApiUtil::ConvertQVariantToJSVariant(params, object);
        return call(name, page, object);
    }

    /// Starts a login that is to be confirmed.
    static void login(std::int64_t page)
    {
        EXPECT_EQ(callWith(u"login", page,
                      { { QStringLiteral("src"), QStringLiteral("s") },
                          { QStringLiteral("confirmId"), QStringLiteral("c") } }),
            QString());
    }

    /// What listeners were told since the last call, once the event loop has run.
    static std::string heard()
    {
        QCoreApplication::sendPostedEvents();
        return std::exchange(s_core->hub.operations, {})
            .filter(QStringLiteral("dispatch"))
            .join(QStringLiteral("; "))
            .replace(QStringLiteral("dispatch event.account."), QString())
            .toStdString();
    }

    static inline FakeCore* s_core = nullptr;
    std::unique_ptr<FakeService> m_service;
};

TEST_F(Account, IsToldOnceHoweverOftenTheServiceTells)
{
    m_service->become("a");
    m_service->become("a");
    Q_EMIT m_service->currentAccountChanged();
    EXPECT_EQ(heard(), "login -1 1");
}

TEST_F(Account, LeavesBeforeAnotherComesWhenTheServiceTellsOnlyOnce)
{
    m_service->become("a");
    heard();
    m_service->become("b");
    EXPECT_EQ(heard(), "logout -1 1; login -1 1");
}

TEST_F(Account, IsToldWhatHappensWhileAListenerRunsTheEventLoop)
{
    const struct {
        const char* name;
        std::vector<const char*> users; // one after the other, within the listener of a's login
        const char* told;
    } rows[] = {
        { "nothing", {}, "login -1 1" },
        { "a logout", { "" }, "login -1 1; logout -1 1" },
        { "another user after it", { "", "b" }, "login -1 1; logout -1 1; login -1 1" },
        { "the same user after it", { "", "a" }, "login -1 1" },
    };
    for (const auto& row : rows) {
        s_core->hub.listener = [&] {
            for (const char* user : row.users) {
                m_service->become(user);
                QCoreApplication::processEvents();
            }
        };
        m_service->become("a");
        EXPECT_EQ(heard(), row.told) << row.name;
        m_service->become("");
        heard();
    }
}

TEST_F(Account, IsAskedForWhatThePageGaveInTheRightType)
{
    const struct {
        const char* name;
        const char16_t* member;
        const char* option;
        QVariant given;
        QVariant sent; // invalid: left out
    } rows[] = {
        { "a boolean", u"login", "qrcode", true, true },
        { "false", u"login", "bTopWindow", false, false },
        { "a text that is one", u"login", "bShowModal", QStringLiteral("true"), true },
        { "a text that is none", u"login", "qrcode", QStringLiteral("perhaps"), {} },
        { "undefined", u"login", "qrcode", {}, {} },
        { "a window", u"upgradeMember", "parentWidget", 7, 7 },
        { "window 0", u"upgradeMember", "parentWidget", 0, 0 },
        { "a number beyond the type", u"upgradeMember", "parentWidget", 8589934592.0, {} },
        { "no number", u"upgradeMember", "parentWidget", QStringLiteral("main"), {} },
    };
    for (const auto& row : rows) {
        QVariantMap params { { QStringLiteral("src"), QStringLiteral("s") },
            { QStringLiteral("csource"), QStringLiteral("s") } };
        params.insert(QString::fromLatin1(row.option), row.given);
        EXPECT_EQ(callWith(row.member, 9, params), QString()) << row.name;
        EXPECT_EQ(m_service->asked.value(QString::fromLatin1(row.option)), row.sent) << row.name;
    }
}

TEST_F(Account, ConfirmsToThePageThatAskedAndOnce)
{
    login(9);
    m_service->states[QStringLiteral("id 1")] = KLoginConfirmation::Waiting;
    login(12);
    m_service->states[QStringLiteral("id 2")] = KLoginConfirmation::Waiting;
    m_service->become("a");
    EXPECT_EQ(heard(), "login -1 1");
    for (KLoginConfirmation& state : m_service->states)
        state = KLoginConfirmation::Succeeded;
    m_service->become("b");
    EXPECT_EQ(heard(),
        "logout -1 1; login -1 1; dispatch confirmLoginSuccess 9 1; dispatch confirmLoginSuccess 12 1");
    m_service->become("c");
    EXPECT_EQ(heard(), "logout -1 1; login -1 1");
}

TEST_F(Account, ForgetsLoginsThatEndedOrWereRefused)
{
    login(9);
    m_service->accepts = false;
    m_service->states[QStringLiteral("id 2")] = KLoginConfirmation::Waiting;
    login(12);
    for (const char* id : { "id 1", "id 2" })
        m_service->states[QString::fromLatin1(id)] = KLoginConfirmation::Succeeded;
    m_service->become("a");
    EXPECT_EQ(heard(), "login -1 1");
}

TEST_F(Account, GoesAndComesBack)
{
    const auto former = std::exchange(m_service, nullptr);
    s_service = nullptr;
    EXPECT_EQ(call(u"isLoggedIn", 9), QStringLiteral("Accountsdk is not initialized."));
    EXPECT_EQ(call(u"addLoginListener", 9), QString()) << "listening does not need the service";
    former->become("a");
    Q_EMIT former->userInfoChanged();
    EXPECT_EQ(heard(), "") << "a service that has gone is not followed";
    useService(std::make_unique<FakeService>());
    m_service->user = QStringLiteral("b");
    EXPECT_EQ(call(u"isLoggedIn", 9), QString());
    EXPECT_EQ(heard(), "login -1 1") << "another service knows another user";
    m_service->become("");
    EXPECT_EQ(heard(), "logout -1 1");
}

TEST_F(Account, IsFoundAgainWithoutACall)
{
    s_service = nullptr;
    m_service.reset();
    useService(std::make_unique<FakeService>());
    m_service->user = QStringLiteral("b");
    std::string told;
    while (told.empty()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        told = heard();
    }
    EXPECT_EQ(told, "login -1 1");
}

} // namespace
