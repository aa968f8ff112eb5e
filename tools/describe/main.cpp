// Prints the description of all script-visible members as JSON: what types/api.json is made of. Linked with
// the library's own objects, compiled so that rows keep what they say to readers.
#include "framework/describetypes.h"
#include "framework/factory.h"
#include "framework/objects.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace jsapi {

namespace {

const char* categoryName(Category category)
{
    switch (category) {
    case Category::None:
        return "None";
    case Category::Read:
        return "Read";
    case Category::Write:
        return "Write";
    case Category::Usual:
        return "Usual";
    case Category::SharedRead:
        return "SharedRead";
    case Category::SharedWrite:
        return "SharedWrite";
    case Category::CloudOpen:
        return "CloudOpen";
    case Category::Launch:
        return "Launch";
    case Category::CloudRead:
        return "CloudRead";
    case Category::CloudWrite:
        return "CloudWrite";
    case Category::Purchase:
        return "Purchase";
    case Category::CloudRequest:
        return "CloudRequest";
    case Category::Account:
        return "Account";
    }
    return "";
}

/// What is known of a parameter of a member that is not built.
Json describeCoreType(Type type)
{
    switch (type) {
    case Type::String:
        return makeKind("string");
    case Type::Boolean:
        return makeKind("boolean");
    case Type::Object:
        return { { "kind", "function" }, { "parameters", Json::array() } };
    default:
        return makeKind("any");
    }
}

void addFailure(Json& list, const Failure& failure)
{
    const Json described = describeFailure(failure);
    if (std::find(list.begin(), list.end(), described) == list.end())
        list.push_back(described);
}

/// The name of a parameter: as it is published, as the row labels it, or by its type.
std::string parameterName(const Parameter& parameter, const Json& type, std::size_t index)
{
    if (parameter.name)
        return toStdString(parameter.name);
    if (parameter.documentation.label)
        return parameter.documentation.label;
    return type["kind"] == "object" ? "options" : "argument" + std::to_string(index + 1);
}

Json describeMember(const MemberDescriptor& member)
{
    const MemberDocumentation& documentation = member.documentation;
    const bool isBuilt = static_cast<bool>(documentation.describe);
    SignatureDescription signature;
    if (isBuilt)
        signature = documentation.describe();
    Json core = Json::array();
    Json parameters = Json::array();
    for (std::size_t i = 0; i < member.parameterCount; ++i) {
        const Parameter& parameter = member.parameters[i];
        core.push_back({ { "type", static_cast<std::int32_t>(parameter.type) }, { "name", nullptr } });
        if (parameter.name)
            core.back()["name"] = toStdString(parameter.name);
        Json described { { "type", describeCoreType(parameter.type) }, { "optional", false },
            { "rest", false } };
        if (isBuilt)
            described = signature.parameters.at(i);
        Json named { { "name", parameterName(parameter, described["type"], i) } };
        named.update(described);
        named["doc"] = parameter.documentation.doc;
        parameters.push_back(std::move(named));
    }
    if (isBuilt && signature.parameters.size() != member.parameterCount)
        throw std::logic_error("The signature takes another number of arguments than its row declares.");
    Json failures = Json::array();
    for (const Failure& refusal : signature.refusals)
        addFailure(failures, refusal);
    for (const Failure* failure : documentation.failures)
        addFailure(failures, *failure);
    if (!isBuilt)
        addFailure(failures, NotSupported);
    return { { "name", toStdString(member.name) },
        { "kind", member.kind == MemberDescriptor::Method ? "method" : "property" },
        { "category", categoryName(member.category) },
        { "mask", static_cast<std::uint32_t>(member.category) },
        { "core",
            { { "result", static_cast<std::int32_t>(member.result) }, { "parameters", std::move(core) } } },
        { "built", isBuilt }, { "doc", documentation.doc }, { "parameters", std::move(parameters) },
        { "answer", isBuilt ? signature.answer : Json { { "form", "plain" }, { "type", makeKind("any") } } },
        { "failures", std::move(failures) },
        { "event", documentation.event.empty() ? Json() : Json(documentation.event) } };
}

Json describeObject(const std::string& name, const char* instance, const MemberList& list)
{
    Json members = Json::array();
    for (const MemberDescriptor& member : list.members()) {
        try {
            members.push_back(describeMember(member));
        } catch (const std::exception& error) {
            throw std::logic_error(name + "." + toStdString(member.name) + ": " + error.what());
        }
    }
    return { { "name", name }, { "instance", instance }, { "doc", list.documentation().doc },
        { "members", std::move(members) }, { "events", list.documentation().events } };
}

bool isRegistered(const std::string& name)
{
    const auto objects = registeredObjects();
    return std::any_of(
        objects.begin(), objects.end(), [&](const RegisteredObject& object) { return object.name == name; });
}

Json describeObjects()
{
    Json objects = Json::array();
    Json handedOut = Json::array();
    for (const RegisteredObject& object : registeredObjects()) {
        const MemberList& list = object.members();
        objects.push_back(describeObject(
            object.name, object.instanceMode == InstanceMode::Shared ? "shared" : "page", list));
        for (const SubObjectClass& made : list.subObjects()) {
            const std::string name = toStdString(made.scriptName).substr(std::size("NovaExtension.") - 1);
            // Of some objects a page has one of its own besides.
            if (isRegistered(name))
                continue;
            handedOut.push_back(describeObject(name, "handed out", made.members()));
        }
    }
    objects.insert(objects.end(), handedOut.begin(), handedOut.end());
    return { { "objects", std::move(objects) } };
}

} // namespace

} // namespace jsapi

int main()
try {
    std::cout << jsapi::describeObjects().dump(2) << '\n';
    return std::cout.flush() ? 0 : 1;
} catch (const std::exception& error) {
    std::cerr << "describe: " << error.what() << '\n';
    return 1;
}
