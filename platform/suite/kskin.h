// The suite's skin service: who uses which visual theme.
#pragma once

#include <QObject>
#include <QStringList>

/// The child object "novaoffice" of the application. The library knows it by this name and its class in Qt's meta-object
/// system; its layout is the suite's own, since only the functions below are called, none of them virtual. Owned by the
/// suite, which may end it, make it later, or replace it by another one. [GUI thread] for all; throws nothing.
class KSkin : public QObject {
    Q_OBJECT

public:
    /// Who uses the suite; empty when nobody is signed in.
    QString getUserId() const;
    /// Uses another skin for a user. `areas` are the parts of the suite that use it; all when it is empty. False when there
    /// is no such skin, or it can not be used; then everything stays as it is. Otherwise the theme has changed when this
    /// returns, and sigSkinChanged() has been or will be emitted, unless it was the current skin.
    bool setUserUsingSkin(const QString& userId, const QString& skin, const QStringList& areas);
    /// Puts a skin at the head of those that the current user has used.
    void addCurrentUserSkinHistory(const QString& skin);

Q_SIGNALS:
    /// The theme has other values: another skin is used, or the current one has changed. Connected by name.
    void sigSkinChanged();
};
