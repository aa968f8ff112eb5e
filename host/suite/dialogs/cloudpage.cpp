#include "host/suite/dialogs/cloudpage.h"

#include "host/suite/dialogs/modal.h"
#include "host/suite/showntext.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

namespace suite {

namespace {

using profile::CloudFile;

QString extractName(const QString& path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString extractFolder(const QString& path)
{
    return path.left(path.lastIndexOf(QLatin1Char('/')));
}

/// "Text (*.txt *.md);;*.pdf" has three patterns.
QStringList parsePatterns(const QString& filters)
{
    static const QRegularExpression inBrackets(QStringLiteral("\\(([^()]*)\\)\\s*$"));
    QStringList patterns;
    for (const QString& filter : filters.split(QStringLiteral(";;"), Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = inBrackets.match(filter);
        const QString list = match.hasMatch() ? match.captured(1) : filter;
        patterns += list.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    }
    return patterns;
}

/// What to do about an existing file of that name: "overwrite", "rename", or an empty string to cancel.
QString askAboutDuplicate(QWidget* parent, const QString& path)
{
    const QPointer<QMessageBox> box(new QMessageBox(QMessageBox::Question, parent->window()->windowTitle(),
        QStringLiteral("%1 exists already.").arg(suite::showPath(path)), QMessageBox::Cancel, parent));
    box->setTextFormat(Qt::PlainText);
    const QAbstractButton* overwrite = box->addButton(QStringLiteral("Overwrite"), QMessageBox::AcceptRole);
    const QAbstractButton* rename = box->addButton(QStringLiteral("Rename"), QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    box->exec();
    const QAbstractButton* clicked = box ? box->clickedButton() : nullptr;
    QString action = !clicked  ? QString()
        : clicked == overwrite ? QStringLiteral("overwrite")
        : clicked == rename    ? QStringLiteral("rename")
                               : QString();
    delete box;
    return action;
}

} // namespace

CloudPage::CloudPage(profile::CloudTab tab, bool open, const CloudOptions& options, Chosen chosen)
    : m_tab(tab)
    , m_purpose(findPurpose(open, options))
    , m_rootToo(options.on("AllowSelRoot"))
    , m_givesPaths(options.on("returnFilePath"))
    , m_entries(profile::current()->cloudFiles)
    , m_chosen(std::move(chosen))
    , m_list(new QListWidget)
{
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    m_list->setObjectName(QStringLiteral("files"));
    const bool several = options.on("AllowMultiSel")
        && (m_purpose == Purpose::OpenFiles || m_purpose == Purpose::ChooseFolders);
    m_list->setSelectionMode(several ? QListWidget::ExtendedSelection : QListWidget::SingleSelection);
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const CloudFile& entry = m_entries[i];
        if (entry.tab != m_tab || !shouldList(entry, options.text("Filters")))
            continue;
        const auto icon = entry.folder ? QStyle::SP_DirIcon : QStyle::SP_FileIcon;
        auto* item = new QListWidgetItem(style()->standardIcon(icon), entry.path, m_list);
        item->setData(Qt::UserRole, static_cast<int>(i));
    }
    if (m_purpose == Purpose::SaveAnyFile) {
        m_name = new QLineEdit(options.text("InitialName"));
        m_name->setObjectName(QStringLiteral("name"));
        layout->addWidget(m_name);
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    const QString label = options.text("ConfirmButton");
    m_confirm = buttons->addButton(!label.isEmpty() ? label
            : open                                  ? QStringLiteral("Open")
                                                    : QStringLiteral("Save"),
        QDialogButtonBox::AcceptRole);
    m_confirm->setObjectName(QStringLiteral("confirm"));
    m_cancel = buttons->button(QDialogButtonBox::Cancel);
    m_cancel->setObjectName(QStringLiteral("cancel"));
    layout->addWidget(buttons);

    const auto update = [this] { m_confirm->setEnabled(canChoose()); };
    update();
    // Queued: the page and its button may be destroyed while choose() shows a message box.
    connect(m_confirm, &QPushButton::clicked, this, &CloudPage::choose, Qt::QueuedConnection);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &CloudPage::choose, Qt::QueuedConnection);
    connect(m_list, &QListWidget::itemSelectionChanged, this, [this, update] {
        copySelectedName();
        update();
    });
    if (m_name)
        connect(m_name, &QLineEdit::textChanged, this, update);
}

CloudPage::Purpose CloudPage::findPurpose(bool open, const CloudOptions& options)
{
    if (options.on("IsOpenDirDialog"))
        return Purpose::ChooseFolders;
    if (open)
        return Purpose::OpenFiles;
    return options.on("SaveNewCloudFile") ? Purpose::SaveAnyFile : Purpose::SaveOntoFile;
}

bool CloudPage::shouldList(const CloudFile& entry, const QString& filters) const
{
    if (entry.folder)
        return m_purpose == Purpose::ChooseFolders || m_purpose == Purpose::SaveAnyFile;
    const QStringList patterns = parsePatterns(filters);
    return m_purpose != Purpose::ChooseFolders
        && (patterns.isEmpty() || QDir::match(patterns, extractName(entry.path)));
}

QList<CloudFile> CloudPage::selectedEntries() const
{
    QList<CloudFile> entries;
    for (const QListWidgetItem* item : m_list->selectedItems())
        entries << m_entries[static_cast<std::size_t>(item->data(Qt::UserRole).toInt())];
    return entries;
}

/// A new file is put into the selected folder, or the folder of the selected file, or the root.
CloudPage::Target CloudPage::findTarget() const
{
    const CloudFile beside = selectedEntries().value(0);
    CloudFile place = beside;
    if (m_name) {
        place.path =
            (beside.folder ? beside.path : extractFolder(beside.path)) + QLatin1Char('/') + m_name->text();
        place.parentId = beside.folder ? beside.fileId : beside.parentId;
    }
    const auto existing = std::find_if(m_entries.begin(), m_entries.end(),
        [&](const CloudFile& entry) { return entry.tab == m_tab && entry.path == place.path; });
    return { place, existing == m_entries.end() ? nullptr : &*existing };
}

bool CloudPage::canChoose() const
{
    switch (m_purpose) {
    case Purpose::OpenFiles:
    case Purpose::SaveOntoFile:
        break;
    case Purpose::ChooseFolders:
        return m_rootToo || !m_list->selectedItems().isEmpty();
    case Purpose::SaveAnyFile: {
        const Target place = findTarget();
        return !m_name->text().isEmpty() && !m_name->text().contains(QLatin1Char('/'))
            && !(place.existing && place.existing->folder);
    }
    }
    return !m_list->selectedItems().isEmpty();
}

void CloudPage::copySelectedName()
{
    const QList<CloudFile> entries = selectedEntries();
    if (m_name && !entries.isEmpty() && !entries.first().folder)
        m_name->setText(extractName(entries.first().path));
}

void CloudPage::choose()
{
    if (!canChoose())
        return;
    if (m_purpose == Purpose::SaveOntoFile || m_purpose == Purpose::SaveAnyFile)
        return save();
    QList<CloudFile> entries = selectedEntries();
    if (entries.isEmpty())
        entries << CloudFile { m_tab, QStringLiteral("/"), {}, {}, {}, true };
    finish(entries, {});
}

void CloudPage::save()
{
    const Target place = findTarget();
    CloudChoice choice;
    if (place.existing) {
        const QPointer<CloudPage> self(this);
        const QString action = askAboutDuplicate(this, place.place.path);
        if (action.isEmpty() || !self)
            return;
        choice.values.insert(QStringLiteral("DuplicateCloudFileId"), place.existing->fileId);
        choice.values.insert(QStringLiteral("DuplicateAction"), action);
    }
    finish({ place.existing ? *place.existing : place.place }, choice);
}

void CloudPage::finish(const QList<CloudFile>& entries, CloudChoice choice) const
{
    QStringList paths;
    QStringList groups;
    for (const CloudFile& entry : entries) {
        paths << entry.path;
        groups << entry.groupId;
    }
    groups.removeDuplicates();
    groups.removeAll({});
    choice.values.insert(
        QStringLiteral("CloudFilePath"), paths.size() == 1 ? QVariant(paths.first()) : paths);
    choice.values.insert(QStringLiteral("CloudGroupIds"), groups);
    choice.values.insert(QStringLiteral("CloudParentId"), entries.first().parentId);
    if (m_givesPaths)
        choice.files = paths;
    m_chosen(choice);
}

} // namespace suite
