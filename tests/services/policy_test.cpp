// Who may call: the decision, as a browser engine asks for it. What people see of it is in tests/cli.
#include "host/engine/policy.h"
#include "tests/services/fixture.h"
#include "tests/services/rows.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr char Rules[] = R"({"policy": [
    {"origin": "https://docs.example", "allow": ["Log", "FileSystem", "category:Usual"], "deny": ["FileSystem.File", "FileSystem.copy"]},
    {"origin": "https://docs.example:8443", "allow": ["FileSystem.File", "SettingsManager.settings"]},
    {"origin": "https://*.docs.example", "allow": ["*"], "deny": ["category:Launch"]},
    {"origin": "https://[::1]", "allow": ["category:0x41"]},
    {"origin": "https://127.0.0.1", "allow": ["*"], "deny": ["category:0x41"]},
    {"origin": "http://Bücher.example", "allow": ["Log"]},
    {"origin": "nova://help", "allow": ["Log"]},
    {"origin": "nova://closed", "allow": [], "deny": ["*"]},
    {"origin": "http://*:8080", "allow": ["Log"]},
    {"origin": "*", "allow": ["Event"]}
]})";

class WhoMayCall : public ServiceTest, public testing::WithParamInterface<Row> { };

// The origin ("-" for an empty one), the object, the member and its category; then the rule that decides, or "none", and
// "yes" or "no".
TEST_P(WhoMayCall, IsDecidedByOneRule)
{
    useProfile(Rules);
    const QStringList words = GetParam().given.simplified().split(QLatin1Char(' '));
    const QString text = words[0] == QLatin1String("-") ? QString() : words[0];
    const std::uint32_t mask = words[3].toUInt(nullptr, 0);
    const engine::Policy policy(profile::current()->policy);
    const engine::OriginPolicy origin = policy.of(text);
    const engine::Decision decision = origin.explain(words[1], words[2], mask);
    const QString rule = decision.rule < 0 ? QStringLiteral("none") : QString::number(decision.rule);
    EXPECT_EQ((rule + QLatin1String(decision.allowed ? " yes" : " no")).toStdString(),
        GetParam().expected.toStdString());
    EXPECT_EQ(policy.of(QUrl(text)).allows(words[1], words[2], mask), decision.allowed)
        << "as the engine asks";
    EXPECT_TRUE(origin.anything() || !decision.allowed);
}

INSTANTIATE_TEST_SUITE_P(Origins, WhoMayCall, testing::ValuesIn(rows(R"(
Same: https://docs.example Log logInfo 0x40 -> 0 yes
UpperCase: HTTPS://DOCS.Example Log logInfo 0x40 -> 0 yes
DefaultPort: https://docs.example:443/ Log logInfo 0x40 -> 0 yes
OtherPort: https://docs.example:8443 Log logInfo 0x40 -> 1 no
UnknownPort: https://docs.example:80 Log logInfo 0x40 -> 9 no
OtherScheme: http://docs.example Log logInfo 0x40 -> 9 no
NameGoesOn: https://docs.example.evil.com Log logInfo 0x40 -> 9 no
NameBegins: https://evildocs.example Log logInfo 0x40 -> 9 no
TrailingDot: https://docs.example. Log logInfo 0x40 -> 9 no
UserName: https://docs.example@evil.com Event dispatchEvent 0 -> none no
EmptyUserName: https://@docs.example Log logInfo 0x40 -> none no
Backslash: https://docs.example\@evil.com Event dispatchEvent 0 -> none no
Path: https://docs.example/x Log logInfo 0x40 -> none no
Query: https://docs.example?x Log logInfo 0x40 -> none no
Below: https://a.b.docs.example FileSystem copy 0x40 -> 2 yes
BelowWithADot: https://a.docs.example. FileSystem copy 0x40 -> 9 no
BelowAtAPort: https://a.docs.example:8443 FileSystem copy 0x40 -> 9 no
Address: https://[0:0:0:0:0:0:0:1] SettingsManager.Settings getValue 1 -> 3 yes
AddressAtAPort: https://[::1]:8443 SettingsManager.Settings getValue 1 -> 9 no
AddressInHex: https://0x7f.1 Log logInfo 0x80 -> 4 yes
Punycode: http://xn--bcher-kva.example Log logInfo 0x40 -> 5 yes
CyrillicLookalike: https://docs.exаmple Log logInfo 0x40 -> 9 no
EveryHost: http://docs.example:8080 Log logInfo 0x40 -> 8 yes
Anybody: https://evil.com Event dispatchEvent 0 -> 9 yes
None: - Event dispatchEvent 0 -> none no
Null: null Event dispatchEvent 0 -> none no
File: file:/// Event dispatchEvent 0 -> none no
Blank: about:blank Event dispatchEvent 0 -> none no
Data: data:text/html,docs.example Event dispatchEvent 0 -> none no
Blob: blob:https://docs.example/1 Log logInfo 0x40 -> none no
WebSocket: wss://docs.example Event dispatchEvent 0 -> none no
NoScheme: docs.example Event dispatchEvent 0 -> none no
Help: nova://help Log logInfo 0x40 -> 6 yes
HelpMayNoMore: nova://help FileSystem copy 0x40 -> 6 no
HelpGoesOn: nova://help.evil Log logInfo 0x40 -> 9 no
HelpWithAPort: nova://help:80 Log logInfo 0x40 -> none no
ClosedToApplication: nova://closed Log logInfo 0x40 -> 7 no
)")),
    rowName);

INSTANTIATE_TEST_SUITE_P(Members, WhoMayCall, testing::ValuesIn(rows(R"(
FullScriptName: https://docs.example NovaExtension.Log logInfo 0x80 -> 0 yes
Category: https://docs.example Product language 0x40 -> 0 yes
OtherCategoryWithItsBit: https://docs.example Payment open 0x240 -> 0 no
DeniedMember: https://docs.example FileSystem copy 0x40 -> 0 no
MemberThatBeginsSo: https://docs.example FileSystem copyTo 0x80 -> 0 yes
ObjectThatBeginsSo: https://docs.example Logs read 0x80 -> 0 no
OtherCase: https://docs.example log logInfo 0x80 -> 0 no
DeniedHandedOut: https://docs.example FileSystem.File size 0x40 -> 0 no
DeniedMaker: https://docs.example FileSystem File 0x40 -> 0 no
HandedOut: https://docs.example:8443 FileSystem.File size 0x40 -> 1 yes
Maker: https://docs.example:8443 FileSystem File 0x40 -> 1 yes
WholeOfIt: https://docs.example:8443 FileSystem exists 0x40 -> 1 no
MakerOnly: https://docs.example:8443 SettingsManager.Settings getValue 0x1 -> 1 no
DeniedCategory: https://a.docs.example Tools compress 0x80 -> 2 no
AllBits: https://[::1] ConfigCenter value 0x41 -> 3 yes
TooManyBits: https://[::1] ConfigCenter setValue 0x42 -> 3 no
NoBits: https://[::1] Event dispatchEvent 0 -> 3 no
DeniedByOneBit: https://127.0.0.1 ConfigCenter setValue 0x42 -> 4 no
)")),
    rowName);

constexpr char PermissionRules[] = R"({"policy": [
    {"origin": "nova://app", "allow": ["*"], "permissions": ["usual", "startProgram:/usr/bin/true", "reachPrivateNetwork:127.0.0.0/8",
        "reachPrivateNetwork:fd00::1", "reachPrivateNetwork:::ffff:10.1.1.1"]},
    {"origin": "nova://closed", "allow": ["*"], "permissions": []},
    {"origin": "https://docs.example", "allow": ["*"], "permissions": ["usual", "readClipboard", "requestCloud:user.space", "openAddress:mailto", "reachNetwork:https://*.docs.example:8443"]},
    {"origin": "https://plain.example", "allow": ["*"]}
]})";

class PermissionTest : public ServiceTest, public testing::WithParamInterface<Row> { };

// The origin, the number of the permission, the subject ("-" for none).
TEST_P(PermissionTest, IsGrantedByTheRuleOfTheOrigin)
{
    useProfile(PermissionRules);
    const QStringList words = GetParam().given.simplified().split(QLatin1Char(' '));
    const QString subject = words[2] == QLatin1String("-") ? QString() : words[2];
    EXPECT_EQ(engine::Policy(profile::current()->policy)
                  .of(words[0])
                  .permits(static_cast<KPagePermission>(words[1].toInt()), subject),
        GetParam().expected == QLatin1String("yes"));
}

INSTANTIATE_TEST_SUITE_P(Rules, PermissionTest, testing::ValuesIn(rows(R"(
UsualOfTheApplication: nova://script 2 - -> yes
ProgramIsNotUsual: nova://script 0 /usr/bin/true -> no
PrivateIsNotUsual: nova://script 7 127.0.0.1 -> no
NothingIsUsualElsewhere: https://plain.example 2 - -> no
WithoutARule: https://other.example 6 https://docs.example:443 -> no
WithoutAnOrigin: null 2 - -> no
UsualAndMore: nova://app 1 a@b.example -> yes
Program: nova://app 0 /usr/bin/true -> yes
OtherProgram: nova://app 0 /usr/bin/false -> no
ProgramByAnotherPath: nova://app 0 /usr/bin/../bin/true -> no
Network: nova://app 7 127.1.2.3 -> yes
MappedAddress: nova://app 7 ::ffff:127.0.0.1 -> yes
MappedInTheRule: nova://app 7 10.1.1.1 -> yes
OtherAddress: nova://app 7 10.0.0.1 -> no
AddressIPv6: nova://app 7 fd00:0::1 -> yes
OtherAddressIPv6: nova://app 7 fd00::2 -> no
NoAddress: nova://app 7 localhost -> no
EmptyList: nova://closed 2 - -> no
Named: https://docs.example 2 - -> yes
NotNamed: https://docs.example 3 - -> no
Request: https://docs.example 8 user.space -> yes
OtherRequest: https://docs.example 8 user.spaces -> no
Scheme: https://docs.example 5 mailto:a@b.example -> yes
OtherScheme: https://docs.example 5 https://mailto:1 -> no
Origin: https://docs.example 6 https://a.docs.example:8443 -> yes
OtherPort: https://docs.example 6 https://a.docs.example:443 -> no
OtherHost: https://docs.example 6 https://docs.example.evil:8443 -> no
)")),
    rowName);

TEST_F(ServiceTest, WithoutRulesOnlyTheApplicationMayCall)
{
    const engine::Policy policy(profile::current()->policy);
    EXPECT_TRUE(policy.of(QStringLiteral("nova://app")).allows(u"Payment", u"open", 0x240));
    for (const char* other :
        { "https://docs.example", "file:///", "null", "nova://", "nova://app:80", "novas://app" })
        EXPECT_FALSE(policy.of(QString::fromLatin1(other)).anything()) << other;
    const engine::Policy wrong({ { QStringLiteral("https://"), { QStringLiteral("*") }, {} } });
    EXPECT_FALSE(wrong.of(QStringLiteral("nova://app")).anything()) << "rules that can not be understood";
}

TEST_F(ServiceTest, ObjectsWithoutANameAreNotForOthers)
{
    const engine::Policy policy(
        { { QStringLiteral("*"), { QStringLiteral("*") }, { QStringLiteral("Account") } } });
    EXPECT_FALSE(policy.of(QStringLiteral("https://a.example")).allows({}, u"isNovaMember", 0));
}

TEST(Policy, KnowsTheCategoriesOfAllMembers)
{
    QFile file(QStringLiteral(API));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    int members = 0;
    for (const QJsonValue& object :
        QJsonDocument::fromJson(file.readAll())[QStringLiteral("objects")].toArray()) {
        for (const QJsonValue& member : object[QStringLiteral("members")].toArray()) {
            const QString category =
                QStringLiteral("category:") + member[QStringLiteral("category")].toString();
            const engine::Policy policy({ { QStringLiteral("*"), { category }, {} } });
            EXPECT_TRUE(policy.of(QStringLiteral("https://a.example"))
                            .allows(u"Any", u"member",
                                static_cast<std::uint32_t>(member[QStringLiteral("mask")].toInt())))
                << category.toStdString();
            ++members;
        }
    }
    EXPECT_GT(members, 100);
}

} // namespace
