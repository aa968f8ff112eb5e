#include "local/confirmdialog.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>

namespace jsapi {

namespace {

constexpr std::size_t MaxButtons = 5;

QMessageBox::Icon iconOf(ConfirmType type)
{
    switch (type) {
    case ConfirmType::None:
        break;
    case ConfirmType::Info:
        return QMessageBox::Information;
    case ConfirmType::Question:
        return QMessageBox::Question;
    case ConfirmType::Warning:
        return QMessageBox::Warning;
    case ConfirmType::Error:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

} // namespace

Answer<std::int32_t> askToConfirm(const JSContextEnv& page, const ConfirmOptions& options)
{
    QStringList buttons;
    for (const std::string& button : options.buttons)
        buttons << QString::fromStdString(button);
    if (buttons.isEmpty())
        buttons = QStringList { heapString("OK"), heapString("Cancel") };
    const bool areWrong = std::any_of(buttons.begin(), buttons.end(), [](const QString& button) {
        return button.trimmed().isEmpty() || button.size() > MaxButton || button.contains(QLatin1Char('\n'));
    });
    if (areWrong || options.buttons.size() > MaxButtons || options.defaultButton < 0
        || options.defaultButton >= buttons.size())
        return WrongParameters;

    const DialogTurn turn(page);
    if (!turn)
        return -1;
    // Its owner, and the dialog with it, or its page may go while the dialog is open.
    const QPointer<QMessageBox> box(new QMessageBox(turn.owner()));
    box->setWindowTitle(shorten(QString::fromStdString(options.title), MaxTitle));
    box->setIcon(iconOf(options.type));
    box->setText(shorten(QString::fromStdString(options.text), MaxText, MaxTextLines));
    box->setInformativeText(shorten(QString::fromStdString(options.detail), MaxText, MaxTextLines));
    for (QLabel* label : box->findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);
    std::vector<QAbstractButton*> shown;
    for (QString& button : buttons) {
        button.replace(QLatin1Char('&'), QLatin1String("&&"));
        // Of one role, so that they stay together, in the page's order.
        shown.push_back(box->addButton(button, QMessageBox::YesRole));
    }
    box->setDefaultButton(static_cast<QPushButton*>(shown[static_cast<std::size_t>(options.defaultButton)]));
    // A message box can be cancelled by a button only.
    QPushButton* cancel = box->addButton(QMessageBox::Cancel);
    box->setEscapeButton(cancel);
    cancel->hide();

    runDialog(turn, box);
    const QAbstractButton* clicked = box ? box->clickedButton() : nullptr;
    const auto found = std::find(shown.begin(), shown.end(), clicked);
    const auto index =
        clicked && found != shown.end() ? static_cast<std::int32_t>(found - shown.begin()) : -1;
    delete box;
    return index;
}

} // namespace jsapi
