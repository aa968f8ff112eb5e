// The suite's remote configuration: values, groups and switches that its server decides for each user.
#pragma once

#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariant>

/// Facts by their names, from which the service decides: "language": "nb".
using KConfigContext = QMap<QString, QString>;

/// The service. Its layout is the suite's own, since only the functions below are called, none of them virtual. What they
/// return is what the suite has at that moment: none of them waits for the server. [GUI thread] for all; throws nothing.
class KRemoteConfig : public QObject {
    Q_OBJECT

public:
    /// Owned by the suite, which may end it, make it later, or replace it by another one: ask every time. Null when there is
    /// none.
    static KRemoteConfig* instance();

    /// The version of the configuration, and when it came from the server, in milliseconds since 1970 (UTC); empty and 0
    /// when none has come yet.
    QString version() const;
    qint64 updateTime() const;

    /// The names of all values, sorted, and a value: anything that JSON can spell. Invalid when there is none of that name.
    QStringList keys() const;
    QVariant data(const QString& key) const;

    /// A page's context as the service decides with it: its facts, and those that the suite knows better.
    KConfigContext translateContext(const KConfigContext& context) const;
    /// The names of all groups, sorted, and the value that a group has for a context, which is translated first. Invalid
    /// when there is no such group, or it has no value for that context.
    QStringList groups() const;
    QVariant groupMatchValue(const QString& group, const KConfigContext& context) const;

    /// Whether a switch is on for the current user: 1, or 0; -1 when there is no such switch.
    int authSwitch(const QString& name) const;
    /// The user's own choice. False when there is no such switch, when the server leaves users no choice, or when it can not
    /// be stored; then everything stays as it is.
    bool setAuthSwitch(const QString& name, bool on);
    /// A value of a section: the current user's own, or else the server's. Invalid when there is none.
    QVariant configData(const QString& section, const QString& key) const;
    /// Stores a value of the current user's own; an invalid or null one removes it. False when there is no such section, or
    /// it can not be stored; then everything stays as it is.
    bool setConfigData(const QString& section, const QString& key, const QVariant& value);

Q_SIGNALS:
    /// Values, groups or switches may be others now, also because another user is signed in. Connected by name. Emitted from
    /// the event loop, never within a call above.
    void sigConfigChanged();
};
