#include "host/suite/account/purchasepage.h"

#include "host/suite/web/webwidget.h"
#include "suite/klitestyle.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QTimer>
#include <QVBoxLayout>

namespace suite {

PurchasePage* PurchasePage::open(Sale sale, QWidget* owner, Ended ended)
{
    std::unique_ptr<PurchasePage> page(new PurchasePage(std::move(sale), owner, std::move(ended)));
    if (!page->showView()) {
        page->m_ended = {};
        return nullptr;
    }
    page->show();
    return page.release();
}

PurchasePage::PurchasePage(Sale sale, QWidget* owner, Ended ended)
    : QDialog(owner)
    , m_sale(std::move(sale))
    , m_ended(std::move(ended))
{
    setWindowTitle(QStringLiteral("Buy a membership"));
    setWindowModality(owner ? Qt::WindowModal : Qt::NonModal);
    resize(KLiteStyle::dpiScaledSize(420, 560));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    // There must be no view when the browser engine ends.
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] { delete this; });
}

PurchasePage::~PurchasePage()
{
    end(KPurchase::Cancelled);
}

QUrl PurchasePage::address() const
{
    QByteArray query;
    const auto add = [&](const char* key, const QString& value) {
        query += (query.isEmpty() ? "" : "&") + QByteArray(key) + '=' + QUrl::toPercentEncoding(value);
    };
    add("buyer", m_sale.buyer);
    add("first", m_sale.first);
    for (const QString& item : m_sale.items)
        add("item", item);
    QUrl url;
    url.setScheme(QStringLiteral("nova"));
    url.setHost(QLatin1String(PurchaseHost));
    url.setPath(QStringLiteral("/index.html"));
    url.setQuery(QString::fromLatin1(query));
    return url;
}

bool PurchasePage::showView()
{
    engine::ViewHost host;
    host.page = address();
    host.mayGoTo = [this](const QUrl& url) { return mayGoTo(url); };
    host.failed = [this] { end(KPurchase::NotLoaded); };
    host.closeRequested = [this] { close(); };
    m_view = makeView(QStringLiteral("purchase"), std::move(host));
    if (!m_view)
        return false;
    layout()->addWidget(m_view->widget());
    m_view->setScale(KLiteStyle::dpi());
    m_view->takeFocus();
    return true;
}

bool PurchasePage::mayGoTo(const QUrl& url)
{
    if (url.path() == QLatin1String("/index.html"))
        return true;
    const QString item = url.query(QUrl::FullyDecoded);
    if (url.path() == QLatin1String("/bought") && m_sale.items.contains(item))
        end(KPurchase::Bought, item);
    else if (url.path() == QLatin1String("/cancelled"))
        end(KPurchase::Cancelled);
    return false;
}

void PurchasePage::reject()
{
    end(KPurchase::Cancelled);
}

void PurchasePage::closeEvent(QCloseEvent* event)
{
    event->accept();
    end(KPurchase::Closed);
}

void PurchasePage::end(KPurchase::Outcome outcome, const QString& item)
{
    if (!m_ended)
        return;
    QTimer::singleShot(
        0, qApp, [ended = std::exchange(m_ended, {}), outcome, item] { ended(outcome, item); });
    // The browser may wait for the return of mayGoTo().
    deleteLater();
}

} // namespace suite
