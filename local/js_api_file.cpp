#include "local/js_api_file.h"

#include "local/treechanges.h"

#include <QFileInfo>

namespace jsapi {

namespace {

constexpr Failure IllegalPath { ErrorCode::OperationFailed, "illegal path" };
constexpr Failure EmptyPath { ErrorCode::OperationFailed, "empty path" };
constexpr Failure InvalidPath { ErrorCode::OperationFailed, "invalid path" };

} // namespace

const MemberList& KJsApiFile::members()
{
    using Self = KJsApiFile;
    static const MemberList list {
        "A handle on one path, that of an existing regular file when FileSystem made it.",
        {
            member<&Self::exists>(
                u"exists", Category::Usual, Type::JsValue, "Returns whether the file is still there."),
            member<&Self::remove>(u"remove", Category::Usual, Type::JsValue,
                "Removes the file. Returns whether the system did it.", { &IllegalPath }),
            member<&Self::size>(u"size", Category::Usual, Type::JsValue,
                "Returns the size of the file in bytes.", { &EmptyPath, &InvalidPath }),
        }
    };
    return list;
}

void KJsApiFile::Initialise(IJSONValue* options)
{
    m_path = fromObject<FileOptions>(options).path;
}

Answer<bool> KJsApiFile::exists()
{
    return QFile::exists(m_path);
}

Answer<bool> KJsApiFile::remove()
{
    const std::optional<WritablePath> path = WritablePath::check(m_path);
    if (!path)
        return IllegalPath;
    return removeFile(*path);
}

Answer<std::int64_t> KJsApiFile::size()
{
    if (m_path.isEmpty())
        return EmptyPath;
    const QFileInfo info(m_path);
    if (!info.isFile())
        return InvalidPath;
    return info.size();
}

} // namespace jsapi
