#include "suite/ksyncfolderui.h"

#include "host/profile/profile.h"
#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/dialogs/filedialog.h"
#include "host/suite/dialogs/pagewindow.h"
#include "host/suite/dialogs/syncfolderlist.h"

#include <QApplication>
#include <QMessageBox>
#include <QMetaObject>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

namespace {

using Ended = std::function<void(bool accepted, const QVariantMap& values)>;

QString readString(const QVariantMap& options, const char* key)
{
    return options.value(QLatin1String(key)).toString();
}

void answer(KSyncFolderDialog dialog, const Ended& ended)
{
    const bool choosesFolder = dialog == KSyncFolderDialog::FolderPath;
    const auto answer =
        dialogs::takeAnswer(choosesFolder ? profile::DialogKind::Folder : profile::DialogKind::Sync);
    QVariantMap values = answer ? answer->values : QVariantMap();
    if (choosesFolder && answer && !answer->files.isEmpty())
        values.insert(QStringLiteral("localPath"), answer->files.first());
    const bool accepted = answer && answer->accept && (!choosesFolder || !answer->files.isEmpty());
    QTimer::singleShot(0, qApp, [ended, accepted, values] { ended(accepted, values); });
}

QDialog* chooseFolder(QWidget* owner, const QVariantMap& options, const Ended& ended)
{
    auto* window = new suite::FileDialog(owner, readString(options, "title"));
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setFileMode(QFileDialog::Directory);
    window->setOption(QFileDialog::ShowDirsOnly);
    window->openAt(readString(options, "localPath"));
    dialogs::whenEnded(*window, [window, ended](int result) {
        const QStringList chosen = result == QDialog::Accepted ? window->selectedFiles() : QStringList();
        ended(!chosen.isEmpty(), { { QStringLiteral("localPath"), chosen.value(0) } });
    });
    return window;
}

QDialog* makeMessage(
    QWidget* owner, const QString& title, const QString& text, const QStringList& buttons, const Ended& ended)
{
    auto* box = new QMessageBox(QMessageBox::NoIcon, title, text, QMessageBox::NoButton, owner);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    QList<QAbstractButton*> added;
    for (const QString& button : buttons)
        added.append(box->addButton(button, QMessageBox::AcceptRole));
    if (added.isEmpty())
        added.append(box->addButton(QMessageBox::Ok));
    // Without a button for it, Escape and the window's own button would do nothing.
    QPushButton* escape = box->addButton(QMessageBox::Cancel);
    escape->hide();
    box->setEscapeButton(escape);
    const QPointer<QMessageBox> shown(box);
    dialogs::whenEnded(*box, [shown, added, ended](int) {
        const int index = shown ? added.indexOf(shown->clickedButton()) : -1;
        ended(index >= 0, { { QStringLiteral("button"), index } });
    });
    return box;
}

QDialog* makeDialog(KSyncFolderDialog dialog, QWidget* owner, const QVariantMap& options, const Ended& ended)
{
    switch (dialog) {
    case KSyncFolderDialog::FolderList: {
        auto* list = new suite::SyncFolderList(owner);
        dialogs::whenEnded(*list, [ended](int) { ended(true, {}); });
        return list;
    }
    case KSyncFolderDialog::FolderPath:
        return chooseFolder(owner, options, ended);
    case KSyncFolderDialog::CloudSpace:
        return makeMessage(owner, QStringLiteral("Cloud space"),
            QStringLiteral("The stand-in's cloud has as much space as this machine's disk."), {}, ended);
    case KSyncFolderDialog::Message:
        return makeMessage(owner, readString(options, "title"), readString(options, "text"),
            options.value(QStringLiteral("buttons")).toStringList(), ended);
    case KSyncFolderDialog::CompanyPrivilege:
        return makeMessage(owner, QStringLiteral("Company"),
            QStringLiteral("Members of a company may have: %1").arg(readString(options, "privilege")), {},
            ended);
    }
    return nullptr;
}

} // namespace

KSyncFolderUi* KSyncFolderUi::getInstance()
{
    static KSyncFolderUi ui;
    return profile::serviceOn(QStringLiteral("syncFolderUi")) ? &ui : nullptr;
}

bool KSyncFolderUi::show(KSyncFolderDialog dialog, const JSContextEnv& page, const QVariantMap& options,
    QObject* receiver, const QString& endedSlot)
{
    if (!receiver)
        return false;
    const Ended ended = [receiver = QPointer<QObject>(receiver), endedSlot](
                            bool accepted, const QVariantMap& values) {
        if (receiver)
            QMetaObject::invokeMethod(receiver, endedSlot.toLatin1().constData(), Qt::DirectConnection,
                Q_ARG(bool, accepted), Q_ARG(QVariantMap, values));
    };
    if (dialogs::areAnswered()) {
        answer(dialog, ended);
        return true;
    }
    QWidget* owner = dialogs::windowOf(page);
    QDialog* shown = makeDialog(dialog, owner ? owner : QApplication::activeWindow(), options, ended);
    if (!shown)
        return false;
    dialogs::rejectWithPage(*shown, page);
    shown->show();
    return true;
}
