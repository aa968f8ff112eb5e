// One cloud tab of the file dialog: a flat list of the entries that the profile has for the tab.
#pragma once

#include "host/profile/profile.h"
#include "host/suite/dialogs/cloudwindow.h"

#include <QWidget>
#include <functional>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace suite {

class CloudPage final : public QWidget {
public:
    using Chosen = std::function<void(const CloudChoice&)>;

    CloudPage(profile::CloudTab tab, bool open, const CloudOptions& options, Chosen chosen);

    QPushButton* cancelButton() const { return m_cancel; }

private:
    enum class Purpose { OpenFiles, ChooseFolders, SaveOntoFile, SaveAnyFile };

    /// Where a file would be saved.
    struct Target {
        profile::CloudFile place; ///< path, group and parent of the file
        const profile::CloudFile* existing;
    };

    static Purpose findPurpose(bool open, const CloudOptions& options);
    bool shouldList(const profile::CloudFile& entry, const QString& filters) const;
    QList<profile::CloudFile> selectedEntries() const;
    Target findTarget() const;
    bool canChoose() const;
    void copySelectedName();
    void choose();
    void save();
    void finish(const QList<profile::CloudFile>& entries, CloudChoice choice) const;

    const profile::CloudTab m_tab;
    const Purpose m_purpose;
    const bool m_rootToo;
    const bool m_givesPaths;
    const std::vector<profile::CloudFile> m_entries;
    const Chosen m_chosen;
    QListWidget* m_list;
    QLineEdit* m_name = nullptr; ///< null unless new files may be saved
    QPushButton* m_confirm;
    QPushButton* m_cancel;
};

} // namespace suite
