// Replies to requests of the schemes.
#pragma once

#include <QByteArray>

class QWebEngineUrlRequestJob;

namespace engine::web {

/// Ends a request with this content. Once for each.
void replyWith(QWebEngineUrlRequestJob& job, const QByteArray& contentType, const QByteArray& content);

} // namespace engine::web
