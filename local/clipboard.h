// What pages put on the clipboard.
#pragma once

#include "framework/answer.h"
#include "framework/bytes.h"

#include <QImage>

namespace jsapi {

inline constexpr Failure NoImageFile { ErrorCode::OperationFailed, "Path is illegal." };
inline constexpr Failure NotAnImage { ErrorCode::OperationFailed, "%1 is not an image" };

/// Reads a picture as a user sees it: a photograph upright. Refuses with NoImageFile what is no regular file, or
/// one that can not be read, with NotAnImage what is none of the formats that the clipboard takes, or too large. [GUI thread]
Answer<QImage> readImage(const QString& path);
Answer<QImage> readImage(const Bytes& bytes);

} // namespace jsapi
