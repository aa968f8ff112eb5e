// Other windows than those of a page: one from which files can be dragged, and one called Other. drag_source FILE...
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace {

class Source final : public QWidget {
    void mousePressEvent(QMouseEvent*) override
    {
        auto* drag = new QDrag(this);
        auto* data = new QMimeData;
        QList<QUrl> urls;
        for (const QString& file : QCoreApplication::arguments().mid(1))
            urls << QUrl::fromLocalFile(file);
        data->setUrls(urls);
        drag->setMimeData(data);
        drag->exec(Qt::CopyAction);
    }
};

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    Source source;
    source.setWindowFlags(Qt::X11BypassWindowManagerHint);
    source.setGeometry(0, 900, 60, 60);
    source.show();
    QWidget other;
    other.setWindowTitle(QStringLiteral("Other"));
    other.setGeometry(1000, 800, 100, 60);
    other.show();
    return QApplication::exec();
}
