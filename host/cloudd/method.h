// The form of a method of the general envelope: a function that gets the call and returns a result, or replies later.
#pragma once

#include "host/cloudd/core.h"
#include "host/cloudd/names.h"

#include "cloud/schema/lark_types.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <span>

namespace cloudd {

/// Called once, unless the service ends before.
using MethodReply = std::function<void(State state, const nova::lark::LarkIpcResult& result)>;

struct MethodCall {
    Core& core;
    Session& session;
    const nova::lark::LarkIpcArg& request;
    MethodReply reply; ///< for methods that reply later
    Member member {};  ///< the user; empty for a method with needsUser false

    /// Empty when the request has no such argument.
    std::string readBytes(const char* name) const
    {
        const auto found = request.argMap.find(name);
        return found == request.argMap.end() ? std::string() : found->second;
    }
    QString readString(const char* name) const { return decodeUtf8(readBytes(name)); }
    bool readFlag(const char* name) const
    {
        const std::string value = readBytes(name);
        if (!value.empty() && value != "true" && value != "false")
            throw Error(State::WrongArguments);
        return value == "true";
    }
};

struct Method {
    std::string_view name;
    /// Throws Error. Nothing is returned by a method that calls `reply` later.
    std::optional<nova::lark::LarkIpcResult> (*run)(MethodCall& call);
    bool needsUser = true;
};

inline nova::lark::LarkIpcResult makeMapResult(std::map<std::string, std::string> values)
{
    nova::lark::LarkIpcResult result;
    result.resultMap = std::move(values);
    return result;
}

inline nova::lark::LarkIpcResult makeStringResult(const QString& string)
{
    nova::lark::LarkIpcResult result;
    result.resultString = string.toStdString();
    return result;
}

inline std::string toJson(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

/// The methods of sync folders.
std::span<const Method> syncMethods();

} // namespace cloudd
