// The account object with an account service that comes, goes and is replaced as the suite likes.
#include "tests/support/accounts.h"
#include "tests/support/library.h"
#include "tests/support/rows.h"

namespace {

using kacctoutsdk::KLoginConfirmation;
using support::FakeAccounts;

class Account : public support::LibraryTest {
protected:
    Account()
    {
        support::application();
        for (const char* event : { "account.login", "account.logout", "user.info.changed" })
            listen(page, "Account", (std::string("event.") + event).c_str(),
                std::string(event).substr(std::string(event).rfind(QLatin1Char(46).toLatin1()) + 1));
        listen(page, "Account", "confirmLoginSuccess", "confirmed");
        listen(other, "Account", "confirmLoginSuccess", "confirmed to other");
        heard(); // the object is the process's: what earlier tests left
    }

    /// Starts a login that is to be confirmed.
    static std::string login(support::Page& by)
    {
        return by.call("Account", "login", R"({"src": "s", "confirmId": "c"})");
    }

    std::unique_ptr<FakeAccounts> service = std::make_unique<FakeAccounts>();
    support::Page other { core };
};

TEST_F(Account, SendsWhatHappensWhileAListenerRunsTheEventLoop)
{
    const struct {
        std::vector<const char*> users; // one after the other, within the listener of a's login
        const char* heard;
    } rows[] = {
        { {}, "login" },
        { { "" }, "login; logout" },
        { { "", "b" }, "login; logout; login" },
        { { "", "a" }, "login" },
    };
    for (const auto& row : rows) {
        onEvent = [&] {
            for (const char* user : row.users) {
                service->become(user);
                QCoreApplication::processEvents();
            }
        };
        service->become("a");
        EXPECT_EQ(heard(), row.heard) << row.users.size();
        service->become("");
        heard();
    }
}

TEST_F(Account, IsAskedForWhatThePageGaveOrNotAtAll)
{
    const struct {
        const char* member;
        const char* option;
        const char* given;
        bool isSent;
    } rows[] = {
        { "login", "qrcode", "true", true },
        { "login", "bTopWindow", "false", true },
        { "login", "bShowModal", "\"true\"", false },
        { "upgradeMember", "parentWidget", "0", true },
        { "upgradeMember", "parentWidget", "8589934592.0", false },
        { "upgradeMember", "parentWidget", "\"main\"", false },
    };
    for (const auto& row : rows) {
        service->asked.clear();
        const auto params =
            QByteArray(R"({"src": "s", "csource": "s", ")") + row.option + "\": " + row.given + '}';
        EXPECT_EQ(page.call("Account", row.member, params), row.isSent ? "true" : "1 wrong parameters.")
            << row.option << row.given;
        EXPECT_EQ(support::json(service->asked.value(QLatin1String(row.option))), row.isSent ? row.given : "")
            << row.option << row.given;
    }
}

TEST_F(Account, ConfirmsToThePageThatAskedAndOnce)
{
    login(page);
    service->states[QStringLiteral("id 1")] = KLoginConfirmation::Waiting;
    login(other);
    service->states[QStringLiteral("id 2")] = KLoginConfirmation::Waiting;
    service->become("a");
    EXPECT_EQ(heard(), "login");
    for (KLoginConfirmation& state : service->states)
        state = KLoginConfirmation::Succeeded;
    service->become("b");
    EXPECT_EQ(heard(), "logout; login; confirmed; confirmed to other");
    service->become("c");
    EXPECT_EQ(heard(), "logout; login");
}

TEST_F(Account, ForgetsLoginsThatEndedOrWereRefused)
{
    login(page);
    service->accepts = false;
    service->states[QStringLiteral("id 2")] = KLoginConfirmation::Waiting;
    EXPECT_EQ(login(other), "false");
    for (const char* id : { "id 1", "id 2" })
        service->states[QString::fromLatin1(id)] = KLoginConfirmation::Succeeded;
    service->become("a");
    EXPECT_EQ(heard(), "login");
}

TEST_F(Account, GoesAndComesBack)
{
    const auto former = std::exchange(service, nullptr);
    support::accounts = nullptr;
    EXPECT_EQ(page.call("Account", "isLoggedIn"), "3 Accountsdk is not initialized.");
    listen(other, "Account", "event.account.login", "login of other");
    former->become("a");
    Q_EMIT former->userInfoChanged();
    EXPECT_EQ(heard(), "") << "a service that has gone is not followed";
    service = std::make_unique<FakeAccounts>("b");
    EXPECT_EQ(page.call("Account", "isLoggedIn"), "true");
    EXPECT_EQ(heard(), "login; login of other") << "another service knows another user";
    service->become("");
    EXPECT_EQ(heard(), "logout");
}

} // namespace
