#include "host/suite/dialogs/cloudwindow.h"

#include "host/suite/dialogs/cloudpage.h"
#include "host/suite/dialogs/filedialog.h"

#include <QDir>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

namespace suite {

namespace {

using profile::CloudTab;

struct TabRow {
    CloudTab tab;
    const char* option; ///< shows the tab
    const char* name;
    const char* title;
};

constexpr TabRow Tabs[] = {
    { CloudTab::Recent, "IsShowRecentTab", "recent", "Recent" },
    { CloudTab::Cloud, "IsShowCloudTab", "cloud", "Cloud" },
    { CloudTab::Share, "IsShowShareFolderTab", "share", "Shared folders" },
    { CloudTab::Favorite, "IsShowFavoriteTab", "favorite", "Favorites" },
    { CloudTab::Company, "IsShowCompanyCloudTab", "company", "Company cloud" },
};

QString makeTitle(bool open, const CloudOptions& options)
{
    if (!options.text("Title").isEmpty())
        return options.text("Title");
    if (options.on("IsOpenDirDialog"))
        return QStringLiteral("Choose a folder");
    return open ? QStringLiteral("Open") : QStringLiteral("Save");
}

/// The application that opened the dialog, and its purpose.
QString describeOrigin(const CloudOptions& options)
{
    QStringList parts { options.text("AppName"), options.text("BusinessFrom") };
    if (options.on("IsCloudCmdTag"))
        parts << QStringLiteral("cloud command");
    parts.removeAll({});
    return parts.join(QStringLiteral(", "));
}

QString refuseRoot(const QStringList& files)
{
    const bool root = std::any_of(files.begin(), files.end(),
        [](const QString& file) { return QDir::cleanPath(file) == QDir::rootPath(); });
    return root ? QStringLiteral("Choose a folder in it, not the root itself.") : QString();
}

} // namespace

CloudFileWindow::CloudFileWindow(bool open, const CloudOptions& options, QWidget* owner)
    : QDialog(owner)
    , m_tabs(new QTabWidget)
{
    setWindowTitle(makeTitle(open, options));
    setAccessibleDescription(describeOrigin(options));
    m_tabs->setObjectName(QStringLiteral("tabs"));
    (new QVBoxLayout(this))->addWidget(m_tabs);
    for (const TabRow& row : Tabs) {
        if (!options.on(row.option))
            continue;
        addCloudTab(row.tab, open, options);
        m_tabs->widget(m_tabs->count() - 1)->setObjectName(QLatin1String(row.name));
        m_tabs->setTabText(m_tabs->count() - 1, QLatin1String(row.title));
    }
    // A window without any tab would be useless.
    if (!options.on("IsHideLocalTab") || m_tabs->count() == 0)
        addLocalTab(open, options);
    auto* cloud = m_tabs->findChild<QWidget*>(QStringLiteral("cloud"));
    auto* local = m_tabs->findChild<QWidget*>(QStringLiteral("local"));
    if (cloud && options.on("CloudAsInitialDir"))
        m_tabs->setCurrentWidget(cloud);
    else if (local)
        m_tabs->setCurrentWidget(local);
}

void CloudFileWindow::addLocalTab(bool open, const CloudOptions& options)
{
    auto* files = new FileDialog(nullptr, windowTitle());
    files->setObjectName(QStringLiteral("local"));
    if (options.on("IsOpenDirDialog")) {
        files->setFileMode(QFileDialog::Directory);
        files->setOption(QFileDialog::ShowDirsOnly);
        if (!options.on("AllowSelRoot"))
            files->setValidator(refuseRoot);
    } else if (open) {
        files->setFileMode(
            options.on("AllowMultiSel") ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    } else {
        files->setAcceptMode(QFileDialog::AcceptSave);
        files->setConfirmsOverwrite(options.on("IsConfirmOverwrite"));
    }
    if (!options.text("Filters").isEmpty())
        files->setNameFilter(options.text("Filters"));
    files->openAt(options.text("InitialDir"));
    if (!options.text("InitialName").isEmpty())
        files->selectFile(options.text("InitialName"));
    if (!options.text("ConfirmButton").isEmpty())
        files->setLabelText(QFileDialog::Accept, options.text("ConfirmButton"));
    files->embed([this, files](int result) {
        m_choice = { result == Accepted ? files->selectedFiles() : QStringList(), {} };
        done(result);
    });
    m_tabs->addTab(files, QStringLiteral("This computer"));
}

void CloudFileWindow::addCloudTab(CloudTab tab, bool open, const CloudOptions& options)
{
    auto* page = new CloudPage(tab, open, options, [this](const CloudChoice& choice) {
        m_choice = choice;
        accept();
    });
    connect(page->cancelButton(), &QPushButton::clicked, this, &QDialog::reject);
    m_tabs->addTab(page, {});
}

} // namespace suite
