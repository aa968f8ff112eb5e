#include "host/engine/policy.h"

#include <QRegularExpression>
#include <algorithm>
#include <optional>

namespace engine {

namespace {

struct Category {
    const char* name;
    std::uint32_t mask;
};
constexpr Category Categories[] = {
    { "None", 0 },
    { "Read", 0x1 },
    { "Write", 0x2 },
    { "Usual", 0x40 },
    { "SharedRead", 0x41 },
    { "SharedWrite", 0x42 },
    { "CloudOpen", 0x50 },
    { "Launch", 0x80 },
    { "CloudRead", 0x100 },
    { "CloudWrite", 0x200 },
    { "Purchase", 0x240 },
    { "CloudRequest", 0x380 },
    { "Account", 0x80000 },
};
constexpr char CategoryPrefix[] = "category:";
constexpr char16_t ScriptPrefix[] = u"NovaExtension.";

/// What one text in a rule's list stands for.
struct Entry {
    enum Kind { Everything, Name, Category, Bits };
    Kind kind = Everything;
    QString text;
    std::uint32_t mask = 0;
};

/// "FileSystem.File" is in "FileSystem.File" and in "FileSystem".
bool isWithin(QStringView object, QStringView name)
{
    return object.startsWith(name)
        && (object.size() == name.size() || object[name.size()] == QLatin1Char('.'));
}

bool isNamed(QStringView name, QStringView object, QStringView member)
{
    return isWithin(object, name)
        || (name.size() == object.size() + 1 + member.size() && isWithin(name, object)
            && name.endsWith(member));
}

bool covers(const Entry& entry, bool denies, QStringView object, QStringView member, std::uint32_t mask)
{
    switch (entry.kind) {
    case Entry::Everything:
        return true;
    case Entry::Name:
        return isNamed(entry.text, object, member);
    case Entry::Category:
        return mask == entry.mask;
    case Entry::Bits:
        return denies ? mask & entry.mask : mask && !(mask & ~entry.mask);
    }
    return false;
}

std::optional<Entry> readCategory(const QString& text, QString& error)
{
    const QString name = text.mid(static_cast<int>(qstrlen(CategoryPrefix)));
    QStringList names;
    for (const Category& category : Categories) {
        names << QLatin1String(category.name);
        if (name == names.last())
            return Entry { Entry::Category, text, category.mask };
    }
    bool isNumber = false;
    const std::uint32_t mask = name.toUInt(&isNumber, 0);
    if (isNumber && mask)
        return Entry { Entry::Bits, text, mask };
    error = QStringLiteral("there is no category \"%1\"; use one of %2, or a mask such as 0x40")
                .arg(name, names.join(QStringLiteral(", ")));
    return std::nullopt;
}

std::optional<Entry> readEntry(const QString& text, QString& error)
{
    if (text == QLatin1String("*"))
        return Entry { Entry::Everything, text, 0 };
    if (text.startsWith(QLatin1String(CategoryPrefix)))
        return readCategory(text, error);
    static const QRegularExpression name(QStringLiteral("\\A(?!NovaExtension\\b)[A-Za-z]\\w*(\\.\\w+)*\\z"));
    if (name.match(text).hasMatch())
        return Entry { Entry::Name, text, 0 };
    error =
        QStringLiteral("must be \"*\", a name such as \"Log\" or \"FileSystem.copy\", or \"category:Usual\"");
    return std::nullopt;
}

struct Rule {
    QString origin;
    OriginPattern pattern;
    std::vector<Entry> allow;
    std::vector<Entry> deny;
    Permissions permissions;
};

QString placeOf(std::size_t rule)
{
    return QStringLiteral("policy[%1]").arg(rule);
}

std::vector<Entry> readEntries(const QStringList& texts, const QString& place, QStringList& errors)
{
    std::vector<Entry> entries;
    for (int i = 0; i < texts.size(); ++i) {
        QString error;
        if (std::optional<Entry> entry = readEntry(texts[i], error))
            entries.push_back(std::move(*entry));
        else
            errors << QStringLiteral("%1[%2]: %3").arg(place).arg(i).arg(error);
    }
    return entries;
}

std::vector<Rule> readRules(const std::vector<PolicyRule>& given, QStringList& errors)
{
    std::vector<Rule> rules;
    for (std::size_t i = 0; i < given.size(); ++i) {
        const QString place = placeOf(i);
        QString error;
        Rule rule { given[i].origin, OriginPattern::of(given[i].origin, error), {}, {}, {} };
        const auto earlier = std::find_if(
            rules.begin(), rules.end(), [&](const Rule& one) { return one.pattern.covers(rule.pattern); });
        if (error.isEmpty() && earlier != rules.end())
            error = QStringLiteral(
                "%1 (\"%2\") decides before for all these pages; move this rule in front of it")
                        .arg(placeOf(static_cast<std::size_t>(earlier - rules.begin())), earlier->origin);
        if (!error.isEmpty())
            errors << QStringLiteral("%1.origin: %2").arg(place, error);
        rule.allow = readEntries(given[i].allow, place + QStringLiteral(".allow"), errors);
        rule.deny = readEntries(given[i].deny, place + QStringLiteral(".deny"), errors);
        rule.permissions =
            Permissions::read(given[i].permissions, place + QStringLiteral(".permissions"), errors);
        rules.push_back(std::move(rule));
    }
    return rules;
}

} // namespace

struct PolicyRules {
    std::vector<Rule> rules;
};

/// A decision, and what in the rule has made it.
struct OriginPolicy::Verdict {
    bool allowed = false;
    const char* list = nullptr; ///< null when no entry has decided
    std::size_t index = 0;
};

QStringList findPolicyErrors(const std::vector<PolicyRule>& rules)
{
    QStringList errors;
    readRules(rules, errors);
    return errors;
}

OriginPolicy::Verdict OriginPolicy::judge(QStringView object, QStringView member, std::uint32_t mask) const
{
    if (m_source != Source::Rule)
        return { m_source == Source::ApplicationDefault };
    if (object.startsWith(QStringView(ScriptPrefix)))
        object = object.mid(QStringView(ScriptPrefix).size());
    // Names could not deny it.
    if (object.isEmpty() || member.isEmpty())
        return {};
    const Rule& rule = m_rules->rules[m_index];
    const auto find = [&](const std::vector<Entry>& entries, bool denies) -> std::size_t {
        return static_cast<std::size_t>(std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
            return covers(entry, denies, object, member, mask);
        }) - entries.begin());
    };
    if (const std::size_t at = find(rule.deny, true); at < rule.deny.size())
        return { false, "deny", at };
    if (const std::size_t at = find(rule.allow, false); at < rule.allow.size())
        return { true, "allow", at };
    return {};
}

bool OriginPolicy::anything() const
{
    return m_source == Source::ApplicationDefault
        || (m_source == Source::Rule && !m_rules->rules[m_index].allow.empty());
}

bool OriginPolicy::allows(QStringView object, QStringView member, std::uint32_t categoryMask) const
{
    return judge(object, member, categoryMask).allowed;
}

Decision OriginPolicy::explain(QStringView object, QStringView member, std::uint32_t categoryMask) const
{
    const Verdict verdict = judge(object, member, categoryMask);
    switch (m_source) {
    case Source::NoOrigin:
        return { false, -1,
            QStringLiteral("a page without an origin of its own may call nothing, whatever the rules") };
    case Source::Default:
        return { false, -1,
            QStringLiteral("no rule is for this origin, and only pages of the application may call then") };
    case Source::ApplicationDefault:
        return { true, -1,
            QStringLiteral(
                "no rule is for this origin, and pages of the application may call everything then") };
    case Source::Rule:
        break;
    }
    const Rule& rule = m_rules->rules[m_index];
    const QString place = QStringLiteral("policy[%1] for \"%2\"").arg(m_index).arg(rule.origin);
    const QString reason = verdict.list
        ? QStringLiteral("%1: %2[%3] is \"%4\"")
              .arg(place, QLatin1String(verdict.list))
              .arg(verdict.index)
              .arg((verdict.allowed ? rule.allow : rule.deny)[verdict.index].text)
        : QStringLiteral("%1 has nothing in its allow list that covers this").arg(place);
    return { verdict.allowed, static_cast<int>(m_index), reason };
}

bool OriginPolicy::permits(KPagePermission permission, const QString& subject) const
{
    switch (m_source) {
    case Source::NoOrigin:
        return false;
    case Source::Rule:
        return m_rules->rules[m_index].permissions.grant(m_origin, permission, subject);
    default:
        return Permissions().grant(m_origin, permission, subject);
    }
}

Policy::Policy(const std::vector<PolicyRule>& rules)
{
    QStringList errors;
    PolicyRules read { readRules(rules, errors) };
    if (errors.isEmpty())
        m_rules = std::make_shared<const PolicyRules>(std::move(read));
}

OriginPolicy Policy::of(const Origin& origin) const
{
    OriginPolicy policy;
    if (origin.isOpaque() || !m_rules)
        return policy;
    policy.m_origin = origin;
    const auto& rules = m_rules->rules;
    const auto rule = std::find_if(
        rules.begin(), rules.end(), [&](const Rule& one) { return one.pattern.matches(origin); });
    if (rule == rules.end()) {
        policy.m_source =
            origin.isApplication() ? OriginPolicy::Source::ApplicationDefault : OriginPolicy::Source::Default;
        return policy;
    }
    policy.m_source = OriginPolicy::Source::Rule;
    policy.m_index = static_cast<std::size_t>(rule - rules.begin());
    policy.m_rules = m_rules;
    return policy;
}

} // namespace engine
