#include "host/profile/accountfields.h"
#include "host/suite/account/accountservice.h"
#include "krt/krt.h"
#include "krt/product.h"
#include "suite/kdcinfo.h"
#include "tests/services/fixture.h"
#include "tests/services/rows.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <map>

namespace {

class WrongProfiles : public ServiceTest, public testing::WithParamInterface<Row> { };

TEST_P(WrongProfiles, AreRefusedWithTheirPlace)
{
    useProfile(R"({"application": {"name": "kept"}})");
    QString expected = GetParam().expected;
    expected.replace(QLatin1String(" && "), QLatin1String("\n"));
    EXPECT_EQ(loadProfile(GetParam().given.toUtf8()).toStdString(), expected.toStdString());
    EXPECT_EQ(krt::appName(), QStringLiteral("kept"));
}

INSTANTIATE_TEST_SUITE_P(Texts, WrongProfiles, testing::ValuesIn(rows(R"(
TooLarge: {"dpi": {"scale": 9}} -> dpi.scale: must be a number from 0.5 to 8
WrongType: {"dpi": {"scale": "1"}} -> dpi.scale: must be a number from 0.5 to 8
NoWholeNumber: {"log": {"keptFiles": 1.5}} -> log.keptFiles: must be a whole number from 0 to 1000
Null: {"services": {"logger": null}} -> services.logger: must be true or false
SectionIsNoObject: {"dpi": 1} -> dpi: must be an object
NoObject: [] -> the profile: must be an object
UnknownKey: {"dpi": {"scle": 1}} -> dpi.scle: is not a key of a profile; use one of scale
ListItem: {"directories": {"blacklistedDownloads": ["/a", "b"]}} -> directories.blacklistedDownloads[1]: must be an absolute path, begin with ${DATA} or ${HOME}, or be ${PATH}
UnknownVariable: {"directories": {"pluginDownloads": "${TMP}/a"}} -> directories.pluginDownloads: must be an absolute path, or begin with ${DATA} or ${HOME}
InAFreeMap: {"product": {"configurations": {"37": {"a": true}}}} -> product.configurations.37.a: must be a text or a whole number from -2147483648 to 2147483647
EmptyText: {"application": {"name": ""}} -> application.name: must be a text that is not empty
Several: {"dpi": {"scale": 9}, "services": {"logger": 1}} -> dpi.scale: must be a number from 0.5 to 8 && services.logger: must be true or false
NoSuchDialog: {"dialogs": {"answers": [{}, {"dialog": "open"}]}} -> dialogs.answers[1].dialog: must be one of "file", "files", "folder", "save", "cloud", "panel", "access", "login", "upgrade", "sync", "purchase", "color", "confirm"
InAListOfObjects: {"dialogs": {"answers": [{"file": "/a"}]}} -> dialogs.answers[0].file: is not a key of a profile; use one of accept, dialog, files, values
MissingKey: {"cloudFiles": [{"tab": "cloud"}]} -> cloudFiles[0]: needs "path"
LongIdOfAUser: {"account": {"users": [{"userId": "a"}, {"userId": "äääääääääääääääääääääääääääääääääääääääää"}]}} -> account.users[1].userId: must be a text of at most 80 bytes without control characters
IdOfACompanyWithALineFeed: {"account": {"companies": [{"companyId": "a\nb"}]}} -> account.companies[0].companyId: must be a text of at most 80 bytes without control characters
RuleWithoutAllow: {"policy": [{"origin": "*"}]} -> policy[0]: needs "allow"
RuleOfAPath: {"policy": [{"origin": "https://a.example/x", "allow": []}]} -> policy[0].origin: an origin has no path; leave out what follows the host and port
RuleOfAUser: {"policy": [{"origin": "https://a@b.example", "allow": []}]} -> policy[0].origin: an origin has no user name or password
RuleOfFiles: {"policy": [{"origin": "file:///", "allow": ["*"]}]} -> policy[0].origin: a rule is for https://, http:// or nova://, or for "*"; other pages get nothing
RuleOfNull: {"policy": [{"origin": "null", "allow": ["*"]}]} -> policy[0].origin: a rule is for https://, http:// or nova://, or for "*"; other pages get nothing
RuleOfAPermission: {"policy": [{"origin": "*", "allow": [], "permissions": ["readscreen"]}]} -> policy[0].permissions[0]: there is no permission "readscreen"; use one of usual, startProgram, sendMail, readClipboard, readScreen, purchase, openAddress, reachNetwork, reachPrivateNetwork, requestCloud, useSession
RuleOfAnyProgram: {"policy": [{"origin": "*", "allow": [], "permissions": ["usual", "startProgram"]}]} -> policy[0].permissions[1]: must name a program: "startProgram:/usr/bin/true"
RuleOfNoNetwork: {"policy": [{"origin": "*", "allow": [], "permissions": ["reachPrivateNetwork:localhost"]}]} -> policy[0].permissions[0]: must be "reachPrivateNetwork" or "reachPrivateNetwork:" and an address or a network
RuleOfAHostOnly: {"policy": [{"origin": "a.example", "allow": []}]} -> policy[0].origin: an origin is scheme://host or scheme://host:port
RuleOfPartOfAName: {"policy": [{"origin": "https://*a.example", "allow": []}]} -> policy[0].origin: a "*" stands for whole parts of a name, at its beginning: https://*.docs.example
RuleBelowAnAddress: {"policy": [{"origin": "https://*.0.0.1", "allow": []}]} -> policy[0].origin: there are no hosts below an address
RuleOfAnAmbiguousName: {"policy": [{"origin": "https://straße.example", "allow": []}]} -> policy[0].origin: browsers differ about this name; write its host in ASCII, as xn--...
RuleAtAPortOfTheApplication: {"policy": [{"origin": "nova://app:80", "allow": []}]} -> policy[0].origin: pages of the application have no port
RuleThatDecidesNothing: {"policy": [{"origin": "https://*.a.example", "allow": ["*"]}, {"origin": "https://B.a.example:443", "allow": []}]} -> policy[1].origin: policy[0] ("https://*.a.example") decides before for all these pages; move this rule in front of it
RulesBehindEverybody: {"policy": [{"origin": "*", "allow": []}, {"origin": "nova://*", "allow": ["*"]}]} -> policy[1].origin: policy[0] ("*") decides before for all these pages; move this rule in front of it
RuleOfNoCategory: {"policy": [{"origin": "*", "allow": [], "deny": ["Log", "category:usual"]}]} -> policy[0].deny[1]: there is no category "usual"; use one of None, Read, Write, Usual, SharedRead, SharedWrite, CloudOpen, Launch, CloudRead, CloudWrite, Purchase, CloudRequest, Account, or a mask such as 0x40
RuleOfNoName: {"policy": [{"origin": "*", "allow": ["NovaExtension.Log"]}]} -> policy[0].allow[0]: must be "*", a name such as "Log" or "FileSystem.copy", or "category:Usual"
Twice: {"dpi": {}, "dpi": {}} -> dpi: appears twice; keep one of the two
MissingComma: {
  "dpi": {}
  "log": {}
 } -> line 3, column 7: is not JSON; look for a missing quote, comma or bracket before it
Nothing: -> line 1, column 1: is not JSON; look for a missing quote, comma or bracket before it
)")),
    rowName);

TEST_F(ServiceTest, AFileThatIsNotThereIsNamed)
{
    const QString error = profile::load(path("none.json"));
    EXPECT_TRUE(error.startsWith(QStringLiteral("profile \"%1\": can not be read").arg(path("none.json"))));
}

TEST_F(ServiceTest, AbsentKeysKeepTheDefault)
{
    useProfile(
        R"({"product": {"strings": {"Home": {"37": "first"}}, "configurations": {"37": {"count": 12}}}})");
    bool ok = true;
    krt::kcmc::value(QStringLiteral("Home"), QStringLiteral("38"), &ok);
    EXPECT_FALSE(ok);
    EXPECT_NE(krt::kcmc::value(QStringLiteral("BaseApiProduct"), QStringLiteral("productName")), QString());
    EXPECT_FALSE(krt::kcmc::support(QStringLiteral("NoSuchFeature")));
    EXPECT_EQ(krt::configs::getInt(QStringLiteral("count"), 1), 0);
    EXPECT_NE(KDcInfoCDetail::getGuid(), QString());
}

TEST_F(ServiceTest, LanguageFormatsAndItsCache)
{
    const QString first = krt::i18n::language(1, true);
    useProfile(R"({"language": {"name": "pt", "region": "BR"}})");
    EXPECT_EQ(krt::i18n::language(0, false), QStringLiteral("pt"));
    EXPECT_EQ(krt::i18n::language(1, false), QStringLiteral("pt_BR"));
    EXPECT_EQ(krt::i18n::language(2, false), QStringLiteral("pt-BR"));
    EXPECT_EQ(krt::i18n::language(9, false), QStringLiteral("pt"));
    EXPECT_EQ(krt::i18n::language(1, true), first);
    useProfile(R"({"language": {"name": "eo", "region": ""}})");
    EXPECT_EQ(krt::i18n::language(2, false), QStringLiteral("eo"));
}

TEST_F(ServiceTest, ServicesAreSwitchedOffByName)
{
    for (const QString& service : profile::serviceNames()) {
        EXPECT_TRUE(profile::serviceOn(service)) << service.toStdString();
        EXPECT_TRUE(profile::switchOff(service, nullptr));
        EXPECT_FALSE(profile::serviceOn(service));
    }
    QString error;
    EXPECT_FALSE(profile::switchOff(QStringLiteral("loger"), &error));
    EXPECT_TRUE(error.contains(QStringLiteral("logger"))) << error.toStdString();
}

struct Anything {
    template <typename Value> operator Value() const;
};

/// Of an aggregate: as many initializers as it takes.
template <typename Record, typename... Initializers> constexpr std::size_t countFields()
{
    if constexpr (requires { Record { Initializers {}..., Anything {} }; })
        return countFields<Record, Initializers..., Anything>();
    else
        return sizeof...(Initializers);
}

/// The keys with their types.
using Keys = std::map<std::string, std::string>;

template <typename Fields> Keys describe(const Fields& fields)
{
    constexpr const char* types[] = { "string", "integer", "boolean", "array" };
    Keys keys;
    for (const auto& field : fields)
        keys[field.key] = types[field.member.index()];
    return keys;
}

Keys describe(const QJsonObject& properties)
{
    Keys keys;
    for (auto property = properties.begin(); property != properties.end(); ++property)
        keys[property.key().toStdString()] =
            property.value().toObject()[QStringLiteral("type")].toString().toStdString();
    return keys;
}

TEST(Profile, SchemaHasTheFieldsOfAccounts)
{
    const QJsonObject account = QJsonDocument::fromJson(
        profile::schemaText())[QStringLiteral("properties")][QStringLiteral("account")]
                                    .toObject()[QStringLiteral("properties")]
                                    .toObject();
    const auto properties = [](const QJsonObject& parent, const char* list) {
        return parent[QLatin1String(list)][QStringLiteral("items")][QStringLiteral("properties")].toObject();
    };
    QJsonObject user = properties(account, "users");
    EXPECT_EQ(describe(properties(user, "members")), describe(profile::MembershipFields));
    user.remove(QStringLiteral("members"));
    EXPECT_EQ(describe(user), describe(profile::UserFields));
    EXPECT_EQ(describe(properties(account, "companies")), describe(profile::CompanyFields));
    EXPECT_EQ(std::size(profile::UserFields), countFields<kacctoutsdk::KUserInfo>());
    EXPECT_EQ(std::size(profile::CompanyFields), countFields<kacctoutsdk::KCompanyInfo>());
}

TEST_F(ServiceTest, AChangeOfAccountsKeepsThoseOfOtherProcesses)
{
    suite::AccountService& accounts = suite::AccountService::instance();
    accounts.signIn(QStringLiteral("user-1"));
    int changes = 0;
    QObject::connect(&accounts, &suite::AccountService::loginInfoChanged, [&] { ++changes; });
    const QByteArray signedOut = R"({"current": "", "logins": 7, "signedIn": []})";
    write("accounts.json", signedOut);
    accounts.changeUser(QStringLiteral("nickName"), QStringLiteral("B"));
    const QJsonObject now = QJsonDocument::fromJson(read("accounts.json")).object();
    EXPECT_EQ(now[QStringLiteral("users")].toObject().size(), 1);
    for (const char* key : { "current", "logins", "signedIn" })
        EXPECT_EQ(now[QLatin1String(key)], QJsonDocument::fromJson(signedOut)[QLatin1String(key)]) << key;
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(accounts.accountList().isEmpty());
}

TEST_F(ServiceTest, DataDirectoryIsMadeOrRefused)
{
    EXPECT_EQ(profile::setDataDirectory(path("new/one")), QString());
    EXPECT_TRUE(QFileInfo(path("new/one")).isDir());
    write("file", "");
    EXPECT_NE(profile::setDataDirectory(path("file")), QString());
    EXPECT_EQ(profile::dataDirectory(), path("new/one"));

    profile::setDataDirectory({});
    const QString temporary = profile::dataDirectory();
    EXPECT_TRUE(QFileInfo(temporary).isDir());
    EXPECT_EQ(profile::dataDirectory(), temporary);
    EXPECT_FALSE(temporary.startsWith(path("")));
}

} // namespace
