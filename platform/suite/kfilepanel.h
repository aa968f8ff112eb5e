// The suite's file panel.
#pragma once

#include <QMap>
#include <QString>
#include <QVariantMap>

class QWidget;

class IKFilePanel {
public:
    /// Shows the panel above `owner` (may be null) and returns its result when it has ended; the event loop
    /// runs meanwhile. `section` and its `entries` say what the panel is opened for, `options` are the
    /// caller's wishes, which the panel may ignore. The result is empty when the user cancelled or the owner
    /// has gone. [GUI thread]
    virtual QVariantMap Show(const QString& section, const QMap<QString, QString>& entries,
        const QVariantMap& options, QWidget* owner) = 0;

protected:
    ~IKFilePanel() = default;
};

/// The panel, or null when the suite has none. Owned by the suite. [GUI thread]
IKFilePanel* GetFilePanel();
