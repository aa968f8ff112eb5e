// Encodes the configuration centre's values and names as JSON, without loss: every type, every bit of a
// number and every UTF-16 unit.
#pragma once

#include <QString>
#include <QVariant>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace krt {

/// Encodes any string as UTF-8: U+FFFF and half surrogate pairs become U+FFFF and four hexadecimal digits.
std::string encodeText(const QString& text);
QString decodeText(const std::string& stored);

/// Encodes booleans, 32-bit and 64-bit integers, doubles, strings, lists, maps, null (nullptr_t) and
/// undefined (invalid), up to 1,000 levels deep. Nothing for a value with anything else in it.
std::optional<nlohmann::json> encodeValue(const QVariant& value);
/// Throws nlohmann::json::exception or std::invalid_argument for JSON that encodeValue() never makes.
QVariant decodeValue(const nlohmann::json& stored);

} // namespace krt
