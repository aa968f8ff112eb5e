// The skin service of the stand-in: which skin is used, and by whom. The choices of users are stored in skins.json of the data
// directory.
#pragma once

#include "host/suite/skin/skinfiles.h"
#include "suite/kskin.h"

#include <QJsonObject>
#include <QPointer>
#include <memory>

namespace profile {
struct Profile;
}

namespace suite {

/// [GUI thread] for all.
class SkinService {
public:
    static SkinService& instance();

    /// Makes the application's KSkin, unless the profile disables it, and shows the skin of the current user in the suite's
    /// windows. There must be an application.
    void start();
    /// Destroys the application's KSkin.
    void shutDown();

    /// The skin in use, also without start(): that of the current user, or else of the profile.
    const Skin& current();
    /// The user who is signed in, or empty.
    static QString user();
    /// As KSkin's functions of these names do.
    bool setUserUsingSkin(const QString& userId, const QString& name, const QStringList& areas);
    void addCurrentUserSkinHistory(const QString& name);
    /// What a user does who chooses a skin in a menu.
    bool choose(const QString& name);

private:
    SkinService() = default;

    void load();
    /// The skin that the current user's choice and the profile lead to.
    Skin find() const;
    /// Uses the skin that find() returns.
    void follow();
    void use(Skin skin);
    void show() const;
    void change(const QString& userId, const std::function<void(QJsonObject& choice)>& change);

    QPointer<KSkin> m_kskin;
    std::shared_ptr<const profile::Profile> m_profile; ///< for which m_skin has been found
    QString m_directory;                               ///< which m_state is of
    QJsonObject m_state;
    Skin m_skin;
};

} // namespace suite
