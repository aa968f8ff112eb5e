// The dialog that chooses files or folders, on this machine or in the cloud, whose entries come from the
// profile
// ("cloudFiles").
//
// Object names of its widgets: the tabs "tabs", with the pages "recent", "local", "cloud", "share",
// "favorite" and "company"; a cloud page has the list "files", the line "name" when new files may be saved,
// and the buttons "confirm" and "cancel".
#pragma once

#include "host/profile/profile.h"

#include <QDialog>

class QTabWidget;

namespace suite {

/// The options of one dialog by the keys of IKCloudFileDialog::SetOption.
class CloudOptions {
public:
    void set(const QString& key, const QVariant& value) { m_values.insert(key, value); }
    QString text(const char* key) const { return m_values.value(QLatin1String(key)).toString(); }
    bool on(const char* key) const { return m_values.value(QLatin1String(key)).toBool(); }

private:
    QVariantMap m_values;
};

struct CloudChoice {
    QStringList files;
    QVariantMap values; ///< by the keys of IKCloudFileDialog::Value
};

class CloudFileWindow final : public QDialog {
public:
    /// `open`: chooses existing items; otherwise a place to save to.
    CloudFileWindow(bool open, const CloudOptions& options, QWidget* owner);

    const CloudChoice& choice() const { return m_choice; }

private:
    void addLocalTab(bool open, const CloudOptions& options);
    void addCloudTab(profile::CloudTab tab, bool open, const CloudOptions& options);

    QTabWidget* m_tabs;
    CloudChoice m_choice;
};

} // namespace suite
