// The dialog that lists the user's sync folders, and removes those that the user no longer wants.
#pragma once

#include "cloud/schema/lark_types.h"

#include <QDialog>

class QListWidget;
class QPushButton;

namespace suite {

using nova::lark::LarkIpcResult;

/// Deletes itself when it has ended. It has the list "folders" and the buttons "remove" and "close".
class SyncFolderList final : public QDialog {
    Q_OBJECT

public:
    explicit SyncFolderList(QWidget* owner);

private:
    void load();
    void removeChosen();
    void request(const std::string& method, const std::string& id, const char* slot);
    Q_SLOT void onListed(bool ok, const QString& requestId, const LarkIpcResult& result);
    Q_SLOT void onRemoved(bool ok, const QString& requestId, const LarkIpcResult& result);

    QListWidget* m_folders;
    QPushButton* m_remove;
};

} // namespace suite
