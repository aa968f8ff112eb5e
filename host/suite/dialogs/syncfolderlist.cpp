#include "host/suite/dialogs/syncfolderlist.h"

#include "host/suite/account/accountservice.h"
#include "host/suite/cloud/cloudservice.h"

#include <QDialogButtonBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace suite {

SyncFolderList::SyncFolderList(QWidget* owner)
    : QDialog(owner)
    , m_folders(new QListWidget)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Sync folders"));
    m_folders->setObjectName(QStringLiteral("folders"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setObjectName(QStringLiteral("close"));
    m_remove = buttons->addButton(QStringLiteral("Stop syncing"), QDialogButtonBox::ActionRole);
    m_remove->setObjectName(QStringLiteral("remove"));
    m_remove->setEnabled(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_folders);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::accept);
    connect(m_remove, &QPushButton::clicked, this, &SyncFolderList::removeChosen);
    connect(m_folders, &QListWidget::currentRowChanged, this,
        [this](int row) { m_remove->setEnabled(row >= 0); });
    load();
}

void SyncFolderList::request(const std::string& method, const std::string& id, const char* slot)
{
    const kacctoutsdk::IKAccount* account = AccountService::instance().getAccount({});
    nova::lark::LarkIpcArg envelope;
    envelope.method = method;
    envelope.argMap = { { "userId", account ? account->userInfo().userId.toStdString() : std::string() },
        { "id", id } };
    CloudService::instance().invoke(
        QStringLiteral("larkIpcCall"), { "LarkIpcArg", &envelope }, this, QLatin1String(slot));
}

void SyncFolderList::load()
{
    request("sync.listFolders", {}, "onListed");
}

void SyncFolderList::removeChosen()
{
    if (const QListWidgetItem* chosen = m_folders->currentItem())
        request("sync.removeFolder", chosen->data(Qt::UserRole).toString().toStdString(), "onRemoved");
}

void SyncFolderList::onListed(bool, const QString&, const LarkIpcResult& result)
{
    m_folders->clear();
    for (const std::string& json : result.resultList) {
        const QJsonObject folder = QJsonDocument::fromJson(QByteArray::fromStdString(json)).object();
        auto* item = new QListWidgetItem(folder.value(QStringLiteral("localPath")).toString(), m_folders);
        item->setData(Qt::UserRole, folder.value(QStringLiteral("id")).toString());
    }
}

void SyncFolderList::onRemoved(bool, const QString&, const LarkIpcResult&)
{
    load();
}

} // namespace suite
