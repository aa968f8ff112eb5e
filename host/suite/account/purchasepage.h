// The purchase page in a window of its own, shown by the browser engine.
#pragma once

#include "host/engine/view.h"
#include "suite/kpurchase.h"

#include <QDialog>
#include <QStringList>

namespace suite {

/// What the purchase page offers.
struct Sale {
    QStringList items;
    QString first; ///< the one that is chosen at first
    QString buyer; ///< whom the user sees as the buyer
};

/// Pages of the suite's lie at this host, nova://purchase/. It has no NovaExtension.
inline constexpr char PurchaseHost[] = "purchase";
/// Where they lie.
inline constexpr char PurchaseFiles[] = ":/novapurchase";

/// What the page does there is seen by this window alone: it is bought what the page in it goes to, and no other page has a
/// way to it. Deletes itself. [GUI thread]
class PurchasePage final : public QDialog {
public:
    using Ended = std::function<void(KPurchase::Outcome outcome, const QString& item)>;

    /// Shows the page, in front of `owner` (may be null) until it has ended, and returns at once. `ended` is called once, from
    /// the event loop, unless the application ends first. Null, and not called, while no browser engine runs.
    static PurchasePage* open(Sale sale, QWidget* owner, Ended ended);
    ~PurchasePage() override;

    /// Cancels the purchase.
    void reject() override;

private:
    PurchasePage(Sale sale, QWidget* owner, Ended ended);

    QUrl address() const;
    bool showView();
    bool mayGoTo(const QUrl& url);
    void closeEvent(QCloseEvent* event) override;
    void end(KPurchase::Outcome outcome, const QString& item = {});

    Sale m_sale;
    Ended m_ended; ///< empty when it has ended
    std::unique_ptr<engine::View> m_view;
};

} // namespace suite
