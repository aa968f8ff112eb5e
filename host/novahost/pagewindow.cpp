#include "host/novahost/pagewindow.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QVBoxLayout>

namespace novahost {

namespace {

class EmptyView final : public QRasterWindow {
    void paintEvent(QPaintEvent* event) override { QPainter(this).fillRect(event->rect(), Qt::white); }
};

} // namespace

PageWindow::PageWindow(const QString& title)
    : m_view(new EmptyView)
{
    setWindowTitle(title);
    resize(800, 600);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(QWidget::createWindowContainer(m_view, this));
    show();
}

std::uint32_t PageWindow::viewId() const
{
    return static_cast<std::uint32_t>(m_view->winId());
}

void PageWindow::closeEvent(QCloseEvent* event)
{
    event->accept();
    QCoreApplication::quit();
}

} // namespace novahost
