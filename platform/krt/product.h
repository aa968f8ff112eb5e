// The product's fixed facts: strings, switches and configuration values that came with the installation.
#pragma once

#include <QString>

namespace krt::kcmc {
/// A product string, empty when there is none. `option` narrows the section to one entry. `ok`, unless null,
/// says whether the string exists. [any thread]
QString value(const QString& section, const QString& option, bool* ok = nullptr);
/// Whether the product has a feature. [any thread]
bool support(const QString& feature);
} // namespace krt::kcmc

namespace krt::configs {
/// A configuration value in the selector's set; empty, or 0, when there is none. [any thread]
QString getString(const QString& name, int selector);
int getInt(const QString& name, int selector);
} // namespace krt::configs
