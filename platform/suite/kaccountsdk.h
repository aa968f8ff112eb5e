// The suite's account service: who is signed in, and what is known of them.
#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

namespace kacctoutsdk {

// In all of these: a string is empty, and a time 0, when it is not known. Times are milliseconds since 1970
// (UTC).

struct KUserInfo {
    QString userId;
    QString account; ///< what the user signs in with
    QString nickName;
    QString pic;                ///< address of the portrait
    QString thumbnailLocalPath; ///< the portrait on this machine
    QString email;
    QString phoneNumber;
    QString status;
    QString sex;
    QString loginMode;
    QString country;
    QString province;
    QString city;
    QString address;
    QString postal;
    QString companyId;
    qint64 regtime = 0;
    QString deviceStatus;
    bool isPlus = false;
    QStringList roleList;
};

struct KCompanyInfo {
    QString companyId;
    QString name;
    QString email;
    QString phoneNumber;
    QString description;
    QString address;
    QString city;
    QString country;
    QString province;
    QString postal;
    QString fax;
    QString adminId;
};

/// How an account stands to one membership tier.
struct KMembership {
    QString tier; ///< the tier's name
    bool isMember = false;
    qint64 expireTime = 0; ///< 0 as well when it does not end
};

/// Something that an account may use, or not, as its memberships say.
struct KPrivilege {
    QString name;
    bool isGranted = false;
    qint64 expireTime = 0; ///< when that ends; 0 when it is not granted or does not end
};

/// What an account may be a member of, whatever the tier that says so. A member of the company is one who
/// belongs to a company.
enum class KMemberKind { Nova, Folio, Super, Company };

/// One account. [GUI thread] for all. Without a user signed in, strings and lists are empty.
class IKAccount {
public:
    virtual bool isLoggedIn() const = 0;
    virtual KUserInfo userInfo() const = 0;
    /// Empty strings when the user belongs to no company.
    virtual KCompanyInfo companyInfo() const = 0;
    /// One for each tier that the service knows, always the same ones in the same order.
    virtual QVector<KMembership> memberships() const = 0;
    /// The memberships as the service's server has them.
    virtual QVariantMap rawMemberInfo() const = 0;
    virtual bool isMember(KMemberKind kind) const = 0;
    /// The identifier of the session that the login began; another one after every login.
    virtual QString novasid() const = 0;
    /// One for each privilege that the service knows, always the same ones in the same order.
    virtual QVector<KPrivilege> privileges() const = 0;

protected:
    ~IKAccount() = default;
};

/// How a login stands that was started with a confirmation id.
enum class KLoginConfirmation {
    Waiting,   ///< under way
    Succeeded, ///< reported once; the id is used up
    Ended,     ///< cancelled, failed, reported already, or never started
};

/// The account service. [GUI thread] for all; signals come on the GUI thread too, from the event loop or from
/// within a call. Throws nothing.
class KAccountSdkProxy : public QObject {
    Q_OBJECT

public:
    // The three return at once with whether the request was taken on; what becomes of it is reported by the
    // signals. A cancelled login or upgrade has no signal.

    /// Has the user sign in. All keys may be left out: strings "src" (who asks), "bizSrc", "loginSrc" (the way
    /// to sign in), "from", "confirmId"; booleans "qrcode", "bShowModal", "bTopWindow". A string
    /// "login.params.confirmId", from generateConfirmId(), names this login in confirmLoginSuccess(). False
    /// while another login is under way.
    virtual bool login(const QVariantMap& params) = 0;
    /// Signs the current account out; strings "src" (who asks) and "logoutSrc". False when nobody is signed in.
    virtual bool logout(const QVariantMap& params) = 0;
    /// Opens the membership upgrade of the current account: strings "csource" (who asks), "payUrl", "src",
    /// "confirmId", "appName"; "parentWidget", the number of the X11 window that owns it. False when nobody
    /// is signed in, or while another upgrade is open.
    virtual bool upgradeMember(const QVariantMap& params) = 0;

    /// The account of that user, or the current one for an empty id. Null when there is none; the current
    /// one is there when nobody is signed in, too, but not before the service has begun. Borrowed until the
    /// caller returns to the event loop or a signal comes.
    virtual IKAccount* getAccount(const QString& userId) = 0;
    /// The ids of the users who are signed in on this machine, the current one among them.
    virtual QStringList accountList() const = 0;
    /// True from when one account stops being the current one until another has taken its place.
    virtual bool isSwitching() const = 0;

    /// A string that no other login has.
    virtual QString generateConfirmId() = 0;
    /// How the login of that id stands. It has succeeded before loginInfoChanged is emitted.
    virtual KLoginConfirmation confirmLoginSuccess(const QString& confirmId) = 0;

Q_SIGNALS:
    /// The current account was signed in, in again, or out. A switch from one account to another emits twice.
    void loginInfoChanged();
    void userInfoChanged();
    void memberInfoChanged();
    /// Another account has become the current one.
    void currentAccountChanged();
    /// The privileges of the current account have changed; the second where the service knows which.
    void privilegeInfoChanged();
    void privilegeInfoChangedWithDetail(const QVariantMap& detail);
};

} // namespace kacctoutsdk
