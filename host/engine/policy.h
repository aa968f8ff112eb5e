// Policy: which origins may call which members.
//
// The rules are those of the profile's "policy". The first rule whose pattern matches an origin decides about it alone: what
// its deny list names is denied, else what its allow list names is allowed, all else is denied. Where no rule matches, pages
// of the application (nova://) may call everything, others nothing. No rule matches a page without an origin.
#pragma once

#include "host/engine/permissions.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace engine {

/// A rule as it is written. The lists have "*", names of members or objects ("FileSystem.copy", "Log"; an object's name
/// stands for all objects that it hands out, too), and categories: "category:Usual" for the members of that category,
/// "category:0x40" for those that have, in an allow list, no other bits than these, and in a deny list, one of these.
struct PolicyRule {
    QString origin;
    QStringList allow;
    QStringList deny;
    QStringList permissions { QStringLiteral("usual") }; ///< see Permissions
};

/// Returns an error for each text in the rules that has no meaning, and each rule that can decide nothing:
/// "policy[0].origin: ...". What members there are is not known here.
QStringList findPolicyErrors(const std::vector<PolicyRule>& rules);

struct PolicyRules;

struct Decision {
    bool allowed = false;
    int rule = -1;  ///< the index of the rule that decides; -1 where none does
    QString reason; ///< "policy[0].deny[1], \"FileSystem\""
};

/// What one origin may do. Cheap to copy; stays valid without its Policy.
class OriginPolicy {
public:
    /// Nothing.
    OriginPolicy() = default;

    /// False when not a single member is allowed.
    bool anything() const;
    /// `object` is "FileSystem" or "FileSystem.File", with or without "NovaExtension." in front. Allocates nothing.
    bool allows(QStringView object, QStringView member, std::uint32_t categoryMask) const;
    Decision explain(QStringView object, QStringView member, std::uint32_t categoryMask) const;
    bool permits(KPagePermission permission, const QString& subject) const;

private:
    friend class Policy;
    enum class Source { NoOrigin, Default, ApplicationDefault, Rule };
    struct Verdict;
    Verdict judge(QStringView object, QStringView member, std::uint32_t categoryMask) const;

    Source m_source = Source::NoOrigin;
    Origin m_origin;
    std::size_t m_index = 0;
    std::shared_ptr<const PolicyRules> m_rules;
};

/// Immutable. [any thread]
class Policy {
public:
    /// When the rules have errors, nobody may call anything.
    explicit Policy(const std::vector<PolicyRule>& rules);

    OriginPolicy of(const Origin& origin) const;
    OriginPolicy of(const QUrl& origin) const { return of(Origin::of(origin)); }
    OriginPolicy of(const QString& origin) const { return of(Origin::of(origin)); }

private:
    std::shared_ptr<const PolicyRules> m_rules;
};

} // namespace engine
