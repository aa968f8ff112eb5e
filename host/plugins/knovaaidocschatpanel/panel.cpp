#include "host/plugins/knovaaidocschatpanel/panel.h"

#include "host/plugins/knovaaidocschatpanel/sentences.h"
#include "host/suite/web/webwidget.h"
#include "krt/dirs.h"
#include "suite/klitestyle.h"

#include <QUrl>

namespace panels {

namespace {

constexpr int MaxSentences = 5;
constexpr int MaxQuestion = 10'000;

} // namespace

ChatWidget::ChatWidget(const QString& viewId, DocumentChat& panel)
    : KJsApiWebWidget(viewId)
    , m_panel(panel)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Document chat"));
    resize(KLiteStyle::dpiScaledSize(360, 480));
}

QVariant ChatWidget::ask(const QVariant& question)
{
    const QVariantMap asked { { QStringLiteral("type"), QStringLiteral("question") },
        { QStringLiteral("text"), question }, { QStringLiteral("from"), QStringLiteral("panelPage") } };
    m_panel.qaNotify(asked);
    return question.userType() == QMetaType::QString;
}

QVariant ChatWidget::report(const QVariant& what)
{
    m_panel.passOn(what.toMap());
    return {};
}

DocumentChat::DocumentChat(QObject* parent)
    : QObject(parent)
{
}

DocumentChat::~DocumentChat()
{
    delete m_page;
}

void DocumentChat::qaNotify(const QVariantMap& notification)
{
    QMetaObject::invokeMethod(
        this, [this, notification] { send(answer(notification)); }, Qt::QueuedConnection);
}

void DocumentChat::passOn(const QVariantMap& report)
{
    QMetaObject::invokeMethod(
        this,
        [this, report] {
            Q_EMIT sig_panelNotify({ { QStringLiteral("type"), QStringLiteral("page") },
                { QStringLiteral("did"), report.value(QStringLiteral("did")) },
                { QStringLiteral("text"), report.value(QStringLiteral("text")) } });
        },
        Qt::QueuedConnection);
}

QVariantMap DocumentChat::answer(const QVariantMap& notification)
{
    const QString type = notification.value(QStringLiteral("type")).toString();
    if (type == QLatin1String("show") || type == QLatin1String("hide")) {
        const bool isShown = type == QLatin1String("show") && showPage();
        if (!isShown)
            delete m_page;
        return { { QStringLiteral("type"), QStringLiteral("shown") },
            { QStringLiteral("isShown"), isShown } };
    }
    const QVariant question = notification.value(QStringLiteral("text"));
    const bool isQuestion = type == QLatin1String("question") && question.userType() == QMetaType::QString
        && question.toString().size() <= MaxQuestion;
    if (!isQuestion)
        return { { QStringLiteral("type"), QStringLiteral("error") },
            { QStringLiteral("msg"), QStringLiteral("this panel answers questions with a text") } };
    QVariantList sentences;
    const QString documents = krt::dirs::officeData() + QStringLiteral("/documents");
    for (const Sentence& sentence : findSentences(documents, question.toString(), MaxSentences))
        sentences << QVariantMap { { QStringLiteral("text"), sentence.text },
            { QStringLiteral("file"), sentence.file } };
    QVariantMap answer { { QStringLiteral("type"), QStringLiteral("answer") },
        { QStringLiteral("text"), question }, { QStringLiteral("sentences"), sentences } };
    if (const auto id = notification.find(QStringLiteral("id")); id != notification.end())
        answer.insert(id.key(), id.value());
    return answer;
}

bool DocumentChat::showPage()
{
    if (!m_page) {
        const QString viewId = QStringLiteral("knovaaidocschatpanel");
        if (!suite::choosePage(viewId, QUrl(QStringLiteral("nova://knovaaidocschatpanel/panel.html"))))
            return false;
        m_page = new ChatWidget(viewId, *this);
    }
    m_page->show();
    return true;
}

void DocumentChat::send(const QVariantMap& notification)
{
    if (m_page)
        Q_EMIT m_page->sigWebviewEvent(notification);
    Q_EMIT sig_panelNotify(notification);
}

} // namespace panels
