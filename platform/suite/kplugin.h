// The suite's plugins.
#pragma once

#include <QObject>
#include <QVariant>

/// A plugin of the suite, which owns it and may destroy it at any time, also while it is loaded and from within any call
/// here. Its layout is the suite's own, since only the functions below are called, none of them virtual. [GUI thread] for
/// all; throws nothing.
class KPlugin : public QObject {
    Q_OBJECT

public:
    /// What load() returns. Others than these are passed on as they are.
    enum LoadStatus {
        LoadDone = 0,      ///< the plugin is ready
        LoadFailed = 1,    ///< it can not be loaded, or not in that way
        LoadContinues = 2, ///< in the background: the signals below follow
        LoadCanceled = 3,
        LoadNoPlugin = 4,
    };
    enum State { StateKnown = 0, StateLoading = 1, StateFailed = 2, StateReady = 3 };

    /// Loads the plugin. `option`: 0 if it is not ready, 1 from this machine only, 2 once more if it is ready, 4 without
    /// making its instance object. `mode`: 0 in the background, 1 before the call returns. Returns a LoadStatus.
    int load(unsigned option, unsigned mode);
    /// A property of its description; invalid when there is none of that name.
    QVariant getProp(const QString& name);
    /// The absolute path of a file among its resources, or in its framework, which need not exist; empty for a path that
    /// leads out of them.
    QString resourceFilePath(const QString& relativePath);
    QString frameworkFilePath(const QString& relativePath);
    /// The directory that it lies in on this machine, without a "/" at the end; empty while there is none.
    QString localPath() const;
    /// A State.
    int state() const;

Q_SIGNALS:
    // Connected by name. Emitted from the event loop, never before the load() that returned LoadContinues has; after one of
    // the last three there is none until the next load.
    void sigProgress(qint64 totalBytes, qint64 receivedBytes);
    void sigSucceeded();
    void sigFailed();
    void sigCanceled();
};

/// The suite's plugin manager. Its layout is the suite's own, as KPlugin's. [GUI thread] for all; throws nothing.
class KPluginManager {
public:
    /// Owned by the suite, which may end it or make it later: ask every time. Null when there is none.
    static KPluginManager* getInstance();
    /// Owned by the suite. Null when no plugin has that name.
    KPlugin* getPlugin(const QString& name);
    /// The object that the plugin of that name has made when it was loaded: a panel, for one, whose signals and invokable
    /// methods are its own. Owned by the suite, which may destroy it at any time. Null when there is none.
    QObject* getPluginInstanceObject(const QString& name);
};
