#include "local/js_api_log.h"

#include "suite/kxloggerlite.h"

namespace jsapi {

struct KJsApiLog::LogRecord {
    QString moduleName;
    QString logStr;
    static constexpr auto fields()
    {
        return std::tuple(required("moduleName", &LogRecord::moduleName, "who writes"),
            required("logStr", &LogRecord::logStr, "what is written"));
    }
};

const MemberList& KJsApiLog::members()
{
    using Self = KJsApiLog;
    static const MemberList list { "Writes records into the suite's log.",
        {
            member<&Self::logInfo>(u"logInfo", Category::Usual, Type::JsValue, { Type::JsValue },
                "Writes a record of what has happened."),
            member<&Self::logWarning>(u"logWarning", Category::Usual, Type::JsValue, { Type::JsValue },
                "Writes a record of what should not have happened."),
        } };
    return list;
}

Answer<void> KJsApiLog::logInfo(const LogRecord& record)
{
    KxLoggerLite::writeInfo(record.moduleName.toStdWString(), record.logStr.toStdWString());
    return {};
}

Answer<void> KJsApiLog::logWarning(const LogRecord& record)
{
    KxLoggerLite::writeWarning(record.moduleName.toStdWString(), record.logStr.toStdWString());
    return {};
}

} // namespace jsapi
