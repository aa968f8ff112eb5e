// The suite's profile: one JSON file that describes the stand-in suite and enables its services.
//
// A profile is an immutable value; load() and switchOff() replace the current one. A new section needs a
// struct here, a line in profile.cpp, its keys in profile.schema.json and its values in default_profile.json.
#pragma once

#include "host/engine/policy.h"
#include "suite/kaccountsdk.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <vector>

namespace profile {

struct Application {
    QString name;
    QString platform;
};

/// The identity of this installation; strings are empty when unknown.
struct Installation {
    QString version;
    QString guid;
    QString uuid;
    QString hdid;
    QString channel;
};

/// Paths may contain variables; expandPath() makes them absolute.
struct Directories {
    QString officeInstallRoot;
    QString officeData;
    QString officeHome;
    QString velmoraHome;
    QStringList blacklistedDownloads;
    QString pluginDownloads;
};

struct Product {
    QMap<QString, QMap<QString, QString>> strings; ///< section, option
    QMap<QString, bool> features;
    QMap<QString, QMap<QString, QVariant>> configurations; ///< selector in decimal, name; QString or int
};

struct Files {
    QStringList unsafeTypes; ///< MIME types
};

struct Access {
    QStringList granted; ///< paths, see expandPath()
};

enum class DialogMode { Auto, Show, Answer };
enum class DialogKind {
    Any,
    File,
    Files,
    Folder,
    Save,
    Cloud,
    Panel,
    Access,
    Login,
    Upgrade,
    Color,
    Confirm
};

/// The answer to one dialog in place of the user.
struct DialogAnswer {
    DialogKind dialog = DialogKind::Any; ///< the kind that it fits
    bool accept = true;
    QStringList files; ///< paths, see expandPath()
    QVariantMap values;
};

struct Dialogs {
    DialogMode mode = DialogMode::Auto;
    std::vector<DialogAnswer> answers; ///< used in this order
};

enum class AddressMode { Auto, Open, Record };

/// The user's desktop.
struct Desktop {
    AddressMode openAddresses = AddressMode::Auto;
};

enum class CloudTab { Recent, Cloud, Share, Favorite, Company };

/// A file or folder that the cloud tabs of the file dialog list.
struct CloudFile {
    CloudTab tab = CloudTab::Cloud;
    QString path; ///< its parts separated by "/"
    QString groupId;
    QString parentId;
    QString fileId;
    bool folder = false;
};

/// `members` have only tiers and times; isMember is not set.
struct User : kacctoutsdk::KUserInfo {
    std::vector<kacctoutsdk::KMembership> members;
};

/// A membership tier, and the kinds of membership ("nova", "folio", "super") that it counts as.
struct Tier {
    QString name;
    QStringList grants;
};

/// The data of the account service.
struct Account {
    QString current; ///< the id of the user who is signed in at first, or empty
    std::vector<User> users;
    std::vector<kacctoutsdk::KCompanyInfo> companies;
    std::vector<Tier> tiers;
};

/// The cloud process.
struct Cloud {
    QString program;                 ///< see expandPath(); empty for the one beside this program
    qint64 uploadBytesPerSecond = 0; ///< 0 for no limit
    QStringList closedToUploads;     ///< files and directories, see expandPath()
    QStringList openToUploads;       ///< the same within those
};

struct Language {
    QString name;   ///< "en"
    QString region; ///< "US", or empty
};

struct Dpi {
    double scale = 1; ///< 0.5 to 8; 1 is 96 dots per inch
};

/// Where plugins are found, and how fast they are fetched.
struct Plugins {
    QStringList directories;   ///< paths, see expandPath(), or "${PLUGINS}"
    qint64 bytesPerSecond = 0; ///< 0 for no limit
};

/// Windows that pages open.
struct Windows {
    bool autoHide = true; ///< popups hide when they are no longer active
};

/// The visual theme.
struct Skin {
    QString current;         ///< of users who have chosen none
    QStringList directories; ///< folders with skins, see expandPath()
};

/// What the server of the remote configuration decides.
struct RemoteConfig {
    QString source; ///< a file, see expandPath(); empty for what is built in
};

struct Log {
    int maxFileSizeKiB = 0; ///< 1 to 1048576
    int keptFiles = 0;      ///< rotated files kept beside the current one, 0 to 1000
};

/// The browser that shows the pages.
struct Browser {
    QString applicationId;
    QString sessionId;
    bool grouped = true;
    int groupMark1OffsetMs = 0; ///< milliseconds from the start of the browser's creation
    int groupMark2OffsetMs = 0;
};

struct Profile {
    Application application;
    Installation installation;
    Directories directories;
    Product product;
    Files files;
    Access access;
    Dialogs dialogs;
    Desktop desktop;
    std::vector<CloudFile> cloudFiles;
    Account account;
    Cloud cloud;
    QMap<QString, QString> domains; ///< addresses of the suite's services by name
    int intranetType = 0;           ///< 0 to 2, see KDomainManager
    Language language;
    Dpi dpi;
    Plugins plugins;
    Windows windows;
    Skin skin;
    RemoteConfig remoteConfig;
    QMap<QString, QMap<QString, QString>> theme; ///< palette, name of the colour: "#rrggbb"; over every skin
    Log log;
    Browser browser;
    std::vector<engine::PolicyRule> policy; ///< without errors, see engine::Policy
    QMap<QString, bool> services;
};

// All calls [any thread].

/// Makes the keys of `file`, merged into the default profile, the current one. Returns the errors, one line
/// for each wrong key; the current profile stays then.
QString load(const QString& file);
/// The current profile; the default until load() succeeds. Never null, and immutable.
std::shared_ptr<const Profile> current();

/// The names of the services, sorted.
const QStringList& serviceNames();
/// Whether a service is enabled; false for an unknown name.
bool serviceOn(const QString& service);
/// Disables a service until the next load(). False for an unknown name, with a message in `error` unless that
/// is null.
bool switchOff(const QString& service, QString* error);

/// Another display scale, 0.5 to 8, until the next load().
void setScale(double scale);

/// The JSON Schema that a profile is checked against, and the default profile: JSON in UTF-8.
QByteArray schemaText();
QByteArray defaultText();

} // namespace profile
