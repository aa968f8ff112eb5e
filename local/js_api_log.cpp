#include "local/js_api_log.h"

#include "suite/kxloggerlite.h"

const MemberList& KJsApiLog::members()
{
    // clang-format off
    static const MemberList list {
        // member                                     category         answer         parameters
        method<&KJsApiLog::logInfo>(u"logInfo",       Category::Usual, Type::JsValue, { Type::JsValue }),
        method<&KJsApiLog::logWarning>(u"logWarning", Category::Usual, Type::JsValue, { Type::JsValue }),
    };
    // clang-format on
    return list;
}

namespace {

using LogWriter = void (*)(const std::wstring& module, const std::wstring& text);

Reply writeRecord(Call& call, LogWriter write)
{
    const Options options = call.options();
    const QString module = options.string("moduleName");
    const QString text = options.string("logStr");
    if (module.isEmpty() || text.isEmpty())
        return call.fail(ErrorCode::BadArgument, MissingParameters);
    write(module.toStdWString(), text.toStdWString());
    return call.succeed();
}

} // namespace

Reply KJsApiLog::logInfo(Call& call)
{
    return writeRecord(call, KxLoggerLite::writeInfo);
}

Reply KJsApiLog::logWarning(Call& call)
{
    return writeRecord(call, KxLoggerLite::writeWarning);
}
