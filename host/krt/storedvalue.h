// The JSON form of the configuration centre's values and names. What is written reads back the same: every
// type, every number to its last bit, every UTF-16 unit.
#pragma once

#include <QString>
#include <QVariant>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace krt {

/// UTF-8 of any text: U+FFFF and half surrogate pairs become U+FFFF and their four hexadecimal digits.
std::string storedText(const QString& text);
QString textFromStored(const std::string& stored);

/// Booleans, 32-bit and 64-bit integers, doubles, texts, lists, maps, null (nullptr_t) and undefined
/// (invalid), nested up to 200 deep. Nothing for a value that holds anything else.
std::optional<nlohmann::json> storedValue(const QVariant& value);
/// Throws nlohmann::json::exception or std::invalid_argument for what storedValue() never makes.
QVariant valueFromStored(const nlohmann::json& stored);

} // namespace krt
