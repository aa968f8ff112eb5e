// The purchase page of the stand-in: a dialog with the membership tiers. What is bought in it the account service records.
#include "host/suite/account/accountdialog.h"
#include "host/suite/account/accountservice.h"
#include "suite/kpurchase.h"

#include <QDialog>
#include <QPointer>
#include <algorithm>

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

void finish(const QString& tier)
{
    Purchases& state = purchases();
    const QString bought = state.user == currentUser() ? tier : QString();
    state.user.clear();
    if (!bought.isEmpty())
        AccountService::instance().changeMembership(bought, true);
    Q_EMIT state.service.finished(state.last, bought);
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

int KPurchase::open(const JSContextEnv&, const QString& item, const QString&)
{
    Purchases& state = purchases();
    const QString user = currentUser();
    if (user.isEmpty())
        return NobodySignedIn;
    if (!state.user.isEmpty())
        return AnotherIsOpen;
    state.user = user;
    const std::vector<profile::Tier> tiers = profile::current()->account.tiers;
    const bool isKnown = std::ranges::find(tiers, item, &profile::Tier::name) != tiers.end();
    AccountDialog dialog { profile::DialogKind::Purchase, QStringLiteral("Buy a membership"),
        QStringLiteral("tier"), {},
        isKnown             ? item
            : tiers.empty() ? QString()
                            : tiers.front().name };
    for (const profile::Tier& tier : tiers)
        dialog.choices.push_back({ tier.name, tier.name });
    state.window = choose(dialog, finish);
    return ++state.last;
}
