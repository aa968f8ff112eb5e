// One cloud tab of the file dialog: a flat list of what the profile has for it.
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
        profile::CloudFile place; ///< with the path of the file, and the group and parent it will have
        const profile::CloudFile* existing;
    };

    static Purpose purposeOf(bool open, const CloudOptions& options);
    bool lists(const profile::CloudFile& entry, const QString& filters) const;
    QList<profile::CloudFile> selected() const;
    Target target() const;
    bool canChoose() const;
    void takeOverName();
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
