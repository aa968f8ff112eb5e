#include "local/js_api_file.h"

#include "local/pathcheck.h"

#include <QFileInfo>

const MemberList& KJsApiFile::members()
{
    // clang-format off
    static const MemberList list {
        // member                              category         answer
        method<&KJsApiFile::exists>(u"exists", Category::Usual, Type::JsValue),
        method<&KJsApiFile::remove>(u"remove", Category::Usual, Type::JsValue),
        method<&KJsApiFile::size>(u"size",     Category::Usual, Type::JsValue),
    };
    // clang-format on
    return list;
}

void KJsApiFile::Initialise(IJSONValue* options)
{
    m_path = options ? options->GetString(QString::fromLatin1("path"), {}) : QString();
}

Reply KJsApiFile::exists(Call& call)
{
    return call.succeed(QFile::exists(m_path));
}

Reply KJsApiFile::remove(Call& call)
{
    const std::optional<QString> path = checkedPath(m_path);
    if (!path)
        return call.fail(ErrorCode::OperationFailed, "illegal path");
    return call.succeed(QFile::remove(*path));
}

Reply KJsApiFile::size(Call& call)
{
    if (m_path.isEmpty())
        return call.fail(ErrorCode::OperationFailed, "empty path");
    const QFileInfo info(m_path);
    if (!info.isFile())
        return call.fail(ErrorCode::OperationFailed, "invalid path");
    return call.succeed(KJSVariant::fromInt64(info.size()));
}
