#include "host/suite/account/accountdialog.h"

#include "host/suite/dialogs/dialoganswers.h"
#include "host/suite/dialogs/pagewindow.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

namespace suite {

namespace {

QString takeAnsweredId(const AccountDialog& dialog)
{
    const std::optional<dialogs::Answer> answer = dialogs::takeAnswer(dialog.kind);
    if (!answer || !answer->accept)
        return {};
    const QVariant given = answer->values.value(dialog.answerKey);
    if (!given.isValid())
        return dialog.preferred;
    const auto found = std::find_if(dialog.choices.begin(), dialog.choices.end(),
        [&](const Choice& choice) { return choice.id == given.toString(); });
    if (found != dialog.choices.end())
        return found->id;
    dialogs::warn(QStringLiteral("\"%1\" is cancelled: there is no %2 \"%3\"; change the answer in "
                                 "dialogs.answers of the profile")
                      .arg(dialog.title, dialog.answerKey, given.toString()));
    return {};
}

QDialog* show(const AccountDialog& dialog, const std::function<void(const QString&)>& chosen)
{
    auto* window = new QDialog(dialog.owner);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowTitle(dialog.title);
    window->setWindowModality(dialog.modal ? Qt::ApplicationModal
            : dialog.owner                 ? Qt::WindowModal
                                           : Qt::NonModal);
    window->setWindowFlag(Qt::WindowStaysOnTopHint, dialog.onTop);

    auto* list = new QListWidget;
    list->setObjectName(QStringLiteral("choices"));
    for (const Choice& choice : dialog.choices) {
        auto* item = new QListWidgetItem(choice.label, list);
        item->setData(Qt::UserRole, choice.id);
        if (choice.id == dialog.preferred)
            list->setCurrentItem(item);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("confirm"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancel"));
    auto* layout = new QVBoxLayout(window);
    layout->addWidget(list);
    layout->addWidget(buttons);

    QObject::connect(buttons, &QDialogButtonBox::accepted, window, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QDialog::reject);
    QObject::connect(list, &QListWidget::itemDoubleClicked, window, &QDialog::accept);
    dialogs::whenEnded(*window, [list, chosen](int result) {
        const QListWidgetItem* item = result == QDialog::Accepted ? list->currentItem() : nullptr;
        chosen(item ? item->data(Qt::UserRole).toString() : QString());
    });
    // It may have no owner that would delete it.
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, window, [window] { delete window; });
    window->show();
    return window;
}

} // namespace

QDialog* choose(const AccountDialog& dialog, std::function<void(const QString&)> chosen)
{
    if (!dialogs::areAnswered())
        return show(dialog, chosen);
    const QString id = takeAnsweredId(dialog);
    QTimer::singleShot(0, qApp, [id, chosen = std::move(chosen)] { chosen(id); });
    return nullptr;
}

} // namespace suite
