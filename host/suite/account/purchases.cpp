// The purchase page of the stand-in, with the membership tiers: a page, or a dialog where no browser engine runs. What is
// bought on it the account service records.
#include "host/suite/account/accountdialog.h"
#include "host/suite/account/accountservice.h"
#include "host/suite/account/purchasepage.h"
#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/dialogs/pagewindow.h"

#include <QDialog>
#include <QPointer>

namespace suite {

namespace {

void closeForAnother();

struct Purchases {
    Purchases()
    {
        QObject::connect(
            &AccountService::instance(), &AccountService::loginInfoChanged, &service, closeForAnother);
    }
    KPurchase service;
    int last = 0;
    QString user; ///< who is buying; empty while nobody is
    QPointer<QDialog> window;
};

Purchases& purchases()
{
    static Purchases state;
    return state;
}

QString currentUser()
{
    const kacctoutsdk::IKAccount* account = AccountService::instance().getAccount({});
    return account ? account->userInfo().userId : QString();
}

void finish(KPurchase::Outcome outcome, const QString& tier)
{
    Purchases& state = purchases();
    if (outcome == KPurchase::Bought && state.user != currentUser())
        outcome = KPurchase::Cancelled;
    const QString bought = outcome == KPurchase::Bought ? tier : QString();
    state.user.clear();
    if (!bought.isEmpty())
        AccountService::instance().changeMembership(bought, true);
    Q_EMIT state.service.finished(state.last, outcome, bought);
}

QDialog* show(const Sale& sale, const JSContextEnv& page)
{
    QWidget* owner = dialogs::windowOf(page);
    if (!dialogs::areAnswered()) {
        if (QDialog* window = PurchasePage::open(sale, owner, finish))
            return window;
    }
    AccountDialog dialog { profile::DialogKind::Purchase, QStringLiteral("Buy a membership"),
        QStringLiteral("tier"), {}, sale.first };
    dialog.owner = owner;
    for (const QString& item : sale.items)
        dialog.choices.push_back({ item, item });
    return choose(dialog,
        [](const QString& tier) { finish(tier.isEmpty() ? KPurchase::Cancelled : KPurchase::Bought, tier); });
}

/// The purchase is of the user who began it.
void closeForAnother()
{
    Purchases& state = purchases();
    if (state.window && state.user != currentUser())
        state.window->reject();
}

} // namespace

} // namespace suite

using namespace suite;

KPurchase* KPurchase::getInstance()
{
    return profile::serviceOn(QStringLiteral("purchase")) ? &purchases().service : nullptr;
}

int KPurchase::open(const JSContextEnv& page, const QString& item, const QString&)
{
    Purchases& state = purchases();
    const kacctoutsdk::IKAccount* account = AccountService::instance().getAccount({});
    if (!account || account->userInfo().userId.isEmpty())
        return NobodySignedIn;
    if (!state.user.isEmpty())
        return AnotherIsOpen;
    const kacctoutsdk::KUserInfo user = account->userInfo();
    state.user = user.userId;
    Sale sale { {}, item, user.nickName };
    for (const profile::Tier& tier : profile::current()->account.tiers)
        sale.items << tier.name;
    if (!sale.items.contains(item))
        sale.first = sale.items.value(0);
    state.window = show(sale, page);
    if (state.window)
        dialogs::rejectWithPage(*state.window, page);
    return ++state.last;
}
