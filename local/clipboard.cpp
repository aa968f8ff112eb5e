#include "local/clipboard.h"

#include "local/filedescriptor.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <algorithm>

namespace jsapi {

namespace {

// Others are drawn by programs that are made for trusted files, or have no fixed size.
constexpr const char* Formats[] = { "png", "jpeg", "gif", "bmp", "webp" };
constexpr qint64 MaxImageFile = 256 << 20;
constexpr int MaxSide = 16'384;
constexpr qint64 MaxPixels = 64 << 20;

bool isFitting(QImageReader& reader)
{
    const QSize size = reader.size();
    return std::find(std::begin(Formats), std::end(Formats), reader.format()) != std::end(Formats)
        && size.isValid() && qMax(size.width(), size.height()) <= MaxSide
        && qint64 { size.width() } * size.height() <= MaxPixels;
}

/// `name` says in a refusal what it was read from.
Answer<QImage> readImage(QIODevice& source, const QString& name)
{
    if (source.size() > MaxImageFile)
        return NotAnImage / name;
    QImageReader reader(&source);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    QImage image;
    if (!isFitting(reader) || !reader.read(&image))
        return NotAnImage / name;
    return image;
}

} // namespace

Answer<QImage> readImage(const QString& path)
{
    const FileDescriptor descriptor = openRegularFile(path);
    QFile file;
    if (!descriptor || !file.open(descriptor.number(), QFile::ReadOnly))
        return NoImageFile;
    return readImage(file, path);
}

Answer<QImage> readImage(const Bytes& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes.data);
    buffer.open(QIODevice::ReadOnly);
    return readImage(buffer, heapString("bytes"));
}

} // namespace jsapi
