// Parses a profile, or another file that a user writes, and checks every key against its schema, with errors that a user
// can act on.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <nlohmann/json.hpp>

namespace profile {

struct Checked {
    nlohmann::json document;
    QStringList errors; ///< each with its place: "dpi.scale: must be ..."; empty when the document is right
};

/// Parses `text` and checks it against `schema`. `kind` is what errors call the file. What is nested more than 200 levels
/// deep is an error. Throws nothing.
Checked parseChecked(
    const QByteArray& text, const nlohmann::json& schema, const QString& kind = QStringLiteral("profile"));

} // namespace profile
