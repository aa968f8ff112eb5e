#include "host/novahost/policy.h"

#include "host/engine/policy.h"
#include "host/novahost/description.h"
#include "host/novahost/output.h"
#include "host/profile/profile.h"

namespace novahost {

namespace {

Json listOf(const QStringList& texts)
{
    Json list = Json::array();
    for (const QString& text : texts)
        list.push_back(text.toStdString());
    return list;
}

int listRules(const std::vector<engine::PolicyRule>& rules, bool json)
{
    if (json) {
        Json list = Json::array();
        for (const engine::PolicyRule& rule : rules)
            list.push_back({ { "origin", rule.origin.toStdString() }, { "allow", listOf(rule.allow) },
                { "deny", listOf(rule.deny) }, { "permissions", listOf(rule.permissions) } });
        printLine(QString::fromStdString(list.dump()), false);
        return 0;
    }
    for (std::size_t i = 0; i < rules.size(); ++i) {
        const auto print = [](const char* list, const QStringList& entries) {
            printLine(
                QString::fromLatin1("  %1  %2").arg(QLatin1String(list), entries.join(QLatin1String(", "))),
                false);
        };
        printLine(QString::fromLatin1("policy[%1]  %2").arg(i).arg(rules[i].origin), false);
        print("allow", rules[i].allow.isEmpty() ? QStringList(QStringLiteral("nothing")) : rules[i].allow);
        if (!rules[i].deny.isEmpty())
            print("deny ", rules[i].deny);
        if (rules[i].permissions != engine::PolicyRule().permissions)
            print("permissions", rules[i].permissions);
    }
    printLine(
        QStringLiteral("otherwise  pages of the application (nova://) may call everything, others nothing"),
        false);
    return 0;
}

/// Without "NovaExtension.", with which a member's name may be given.
QString withoutPrefix(const QString& name)
{
    const QLatin1String prefix("NovaExtension.");
    return name.startsWith(prefix) ? name.mid(prefix.size()) : name;
}

} // namespace

QStringList findUnknownNames()
{
    QStringList errors;
    const std::vector<engine::PolicyRule>& rules = profile::current()->policy;
    const auto check = [&](std::size_t rule, const char* list, const QStringList& entries) {
        for (int i = 0; i < entries.size(); ++i) {
            const QString& entry = entries[i];
            if (entry == QLatin1String("*") || entry.contains(QLatin1Char(':'))
                || Description::builtIn().names().contains(entry))
                continue;
            errors << QString::fromLatin1("policy[%1].%2[%3]: there is no \"%4\"; %5")
                          .arg(rule)
                          .arg(QLatin1String(list))
                          .arg(i)
                          .arg(entry, Description::builtIn().advice(entry));
        }
    };
    for (std::size_t i = 0; i < rules.size(); ++i) {
        check(i, "allow", rules[i].allow);
        check(i, "deny", rules[i].deny);
    }
    return errors;
}

int showPolicy(const Options& options)
{
    const std::shared_ptr<const profile::Profile> profile = profile::current();
    if (!options.explain)
        return listRules(profile->policy, options.json);

    QString error;
    const engine::Origin origin = engine::Origin::of(options.origin, &error);
    if (!error.isEmpty())
        return fail(UsageError, QString::fromLatin1("ORIGIN: \"%1\": %2").arg(options.origin, error));
    const QString name = withoutPrefix(options.object);
    const std::optional<Description::Member> found =
        Description::builtIn().member(QLatin1String("NovaExtension.") + name, Qt::CaseSensitive);
    if (!found)
        return fail(UsageError,
            QString::fromLatin1("MEMBER: there is no \"%1\"; %2")
                .arg(name, Description::builtIn().advice(name)));

    const engine::Decision decision =
        engine::Policy(profile->policy)
            .of(origin)
            .explain(textOf(found->object["name"]), textOf(found->member["name"]),
                found->member["mask"].get<std::uint32_t>());
    if (options.json) {
        Json answer { { "origin", options.origin.toStdString() }, { "member", name.toStdString() },
            { "category", found->member["category"] }, { "allowed", decision.allowed }, { "rule", nullptr },
            { "reason", decision.reason.toStdString() } };
        if (decision.rule >= 0)
            answer["rule"] = decision.rule;
        printLine(QString::fromStdString(answer.dump()), false);
    } else {
        printLine(QString::fromLatin1("%1: %2").arg(
                      QLatin1String(decision.allowed ? "allowed" : "denied"), decision.reason),
            false);
    }
    return decision.allowed ? 0 : Failure;
}

} // namespace novahost
