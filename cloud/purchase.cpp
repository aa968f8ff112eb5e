#include "cloud/purchase.h"

namespace jsapi {

Answer<Promise<PurchaseReport>> KPurchaseRequest::start(
    const JSContextEnv& page, KPurchase& service, const QString& item, const QString& source)
{
    auto made = std::make_unique<KPurchaseRequest>();
    const QPointer<KPurchaseRequest> request = made.get();
    connect(&service, SIGNAL(finished(int, QString)), request, SLOT(onFinished(int, QString)));
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

void KPurchaseRequest::onFinished(int purchase, const QString& item)
{
    if (purchase == m_purchase)
        resolve({ item.isEmpty() ? PurchaseStatus::Closed : PurchaseStatus::Purchased, item });
}

void KPurchaseRequest::onServiceEnded()
{
    reject(PurchaseServiceEnded);
}

} // namespace jsapi
