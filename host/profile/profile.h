// The suite's profile: one JSON file that says what the stand-in suite is, and which of its services are
// there.
//
// A profile is an immutable value; load() and switchOff() replace the current one. Adding a section takes a
// struct here, its line in profile.cpp, its keys in profile.schema.json and its values in
// default_profile.json.
#pragma once

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

/// The identity of this installation; texts, empty when unknown.
struct Installation {
    QString version;
    QString guid;
    QString uuid;
    QString hdid;
    QString channel;
};

/// Paths as the profile has them; expanded() makes them absolute.
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
    QStringList granted; ///< paths as the profile has them
};

enum class DialogMode { Auto, Show, Answer };
enum class DialogKind { Any, File, Files, Folder, Save, Cloud, Panel, Access, Login, Upgrade };

/// What is done with one dialog in the user's place.
struct DialogAnswer {
    DialogKind dialog = DialogKind::Any; ///< which one it fits
    bool accept = true;
    QStringList files; ///< paths as the profile has them
    QVariantMap values;
};

struct Dialogs {
    DialogMode mode = DialogMode::Auto;
    std::vector<DialogAnswer> answers; ///< in the order of their use
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

/// Of the memberships only the tiers and when they end.
struct User : kacctoutsdk::KUserInfo {
    std::vector<kacctoutsdk::KMembership> members;
};

/// A membership tier, and which of "nova", "folio" and "super" its members are.
struct Tier {
    QString name;
    QStringList grants;
};

/// What the account service knows.
struct Account {
    QString current; ///< the user who is signed in at first, or empty
    std::vector<User> users;
    std::vector<kacctoutsdk::KCompanyInfo> companies;
    std::vector<Tier> tiers;
};

/// The cloud process.
struct Cloud {
    QString program;                 ///< a path as the profile has it; empty for the one beside this program
    qint64 uploadBytesPerSecond = 0; ///< 0 for no limit
};

struct Language {
    QString name;   ///< "en"
    QString region; ///< "US", or empty
};

struct Dpi {
    double scale = 1; ///< 0.5 to 8; 1 is 96 dots per inch
};

struct Log {
    int maxFileSizeKiB = 0; ///< 1 to 1048576
    int keptFiles = 0;      ///< full files kept beside the current one, 0 to 1000
};

/// What pages are told of the browser that shows them.
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
    std::vector<CloudFile> cloudFiles;
    Account account;
    Cloud cloud;
    Language language;
    Dpi dpi;
    Log log;
    Browser browser;
    QMap<QString, bool> services;
};

// All calls [any thread].

/// Replaces the current profile by the default with the keys of `file` laid over it. Returns an empty text,
/// or what is wrong, one line for each wrong key; the current profile then stays.
QString load(const QString& file);
/// The profile as it is at this moment: the default until load() succeeds. Never null; what is returned never
/// changes.
std::shared_ptr<const Profile> current();

/// The names of the services, sorted.
const QStringList& serviceNames();
/// Whether a service is there; an unknown name is not.
bool serviceOn(const QString& service);
/// Takes a service away until the next load(). False for an unknown name, with the reason in `error` unless
/// null.
bool switchOff(const QString& service, QString* error);

/// The JSON Schema that a profile is checked against, and the default profile: JSON in UTF-8.
QByteArray schemaText();
QByteArray defaultText();

} // namespace profile
