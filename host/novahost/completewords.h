// Completion of novahost's command line in a shell.
#pragma once

#include <QStringList>

namespace CLI {
class App;
}

namespace novahost {

/// The script with which a shell completes; it asks `novahost --complete-words WORD...`, whose last word is unfinished.
QString completionScript(const QString& shell);

/// What the last word may become, each with a tab and what it means, where that is known; ":files" or ":directories" for such
/// names.
QStringList completeWords(const CLI::App& app, const QStringList& words);

} // namespace novahost
