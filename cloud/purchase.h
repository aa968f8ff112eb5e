// KPurchaseRequest: what Payment.open returns a promise of.
#pragma once

#include "framework/request.h"
#include "suite/kpurchase.h"

#include <QPointer>

namespace jsapi {

enum class PurchaseStatus { Purchased, Cancelled, Closed };
template <>
inline constexpr std::array<Choice<PurchaseStatus>, 3> ChoicesOf<PurchaseStatus> {
    { { PurchaseStatus::Purchased, "purchased" }, { PurchaseStatus::Cancelled, "cancelled" },
        { PurchaseStatus::Closed, "closed" } }
};

struct PurchaseReport {
    PurchaseStatus status;
    QString item;
    static constexpr auto fields()
    {
        return std::tuple(
            property("status", &PurchaseReport::status,
                "`closed` where the user closed the window, `cancelled` where nothing was bought for another reason, as when "
                "the user has signed out"),
            property("item", &PurchaseReport::item, "what was bought; empty if nothing was"));
    }
};

inline constexpr Failure NoPurchaseService { ErrorCode::OperationFailed, "Purchase service error." };
inline constexpr Failure NobodyBuys = Failure { ErrorCode::OperationFailed, "User not login" }.rejected();
inline constexpr Failure PurchaseIsOpen =
    Failure { ErrorCode::OperationFailed, "Another purchase is open." }.rejected();
inline constexpr Failure PurchaseNotLoaded =
    Failure { ErrorCode::OperationFailed, "The purchase page can not be loaded." }.rejected();
inline constexpr Failure PurchaseServiceEnded = NoPurchaseService.rejected();

class KPurchaseRequest final : public KJsRequestFor<PurchaseReport> {
    Q_OBJECT

public:
    /// Opens the purchase page.
    static Answer<Promise<PurchaseReport>> start(
        const JSContextEnv& page, KPurchase& service, const QString& item, const QString& source);

private:
    int m_purchase = 0;

public Q_SLOTS:
    // For the service.
    void onFinished(int purchase, int outcome, const QString& item);
    void onServiceEnded();
};

} // namespace jsapi
