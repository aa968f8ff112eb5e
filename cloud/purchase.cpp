#include "cloud/purchase.h"

namespace jsapi {

Answer<Promise<PurchaseReport>> KPurchaseRequest::start(
    const JSContextEnv& page, KPurchase& service, const QString& item, const QString& source)
{
    auto made = std::make_unique<KPurchaseRequest>();
    const QPointer<KPurchaseRequest> request = made.get();
    connect(&service, SIGNAL(finished(int, int, QString)), request, SLOT(onFinished(int, int, QString)));
    connect(&service, SIGNAL(destroyed()), request, SLOT(onServiceEnded()));
    // Before the page is opened, from which nobody would hear otherwise.
    auto answer = promise(page, std::move(made));
    if (answer.isRefused())
        return answer;
    const int purchase = service.open(page, item, source);
    if (!request)
        return answer;
    request->m_purchase = purchase;
    if (purchase <= 0)
        request->reject(purchase == KPurchase::NobodySignedIn ? NobodyBuys : PurchaseIsOpen);
    return answer;
}

void KPurchaseRequest::onFinished(int purchase, int outcome, const QString& item)
{
    if (purchase != m_purchase)
        return;
    if (outcome == KPurchase::NotLoaded)
        reject(PurchaseNotLoaded);
    else if (outcome == KPurchase::Bought)
        resolve({ PurchaseStatus::Purchased, item });
    else
        resolve({ outcome == KPurchase::Closed ? PurchaseStatus::Closed : PurchaseStatus::Cancelled, {} });
}

void KPurchaseRequest::onServiceEnded()
{
    reject(PurchaseServiceEnded);
}

} // namespace jsapi
