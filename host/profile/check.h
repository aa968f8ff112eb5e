// Reading a profile's text: syntax, then every key against the schema, with errors that a person can act on.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <nlohmann/json.hpp>

namespace profile {

struct Checked {
    nlohmann::json document;
    QStringList
        errors; ///< empty when the document may be used; each names its place: "dpi.scale: must be ..."
};

/// Parses `text` and checks it against `schema`. Throws nothing.
Checked parseChecked(const QByteArray& text, const nlohmann::json& schema);

} // namespace profile
