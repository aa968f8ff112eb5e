// What rows say to readers, kept for the tool that prints the reference. Compiled into that tool only: the
// library has framework/documentation.h instead.
#pragma once

#include "framework/failure.h"

#include <functional>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <tuple>
#include <vector>

namespace jsapi {

using Json = nlohmann::ordered_json;

struct ParameterDocumentation {
    constexpr ParameterDocumentation() = default;
    constexpr ParameterDocumentation(const char* parameterLabel, const char* parameterDoc)
        : label(parameterLabel)
        , doc(parameterDoc)
    {
    }
    const char* label = nullptr;
    const char* doc = "";
};

struct FieldDocumentation {
    constexpr FieldDocumentation(const char* fieldDoc) // NOLINT(*-explicit-*)
        : doc(fieldDoc)
    {
    }
    const char* doc;
};

/// What a signature says: the parameters that take an argument of script's as {"type", "optional", "rest"},
/// what parameters refuse, and the answer.
struct SignatureDescription {
    Json parameters = Json::array();
    std::vector<Failure> refusals;
    Json answer;
};

struct MemberDocumentation {
    std::string doc;
    std::vector<const Failure*> failures;
    std::function<SignatureDescription()> describe; ///< empty for a member that is not built
    std::string event;                              ///< of a member that adds or removes its listeners
    std::function<SignatureDescription()> describeCounterpart; ///< of the member that removes them
    std::string counterpartDoc;

    template <auto Handler>
    static MemberDocumentation of(const char* doc, std::initializer_list<const Failure*> failures)
    {
        return { doc, failures, [] { return describeSignature<Handler>(); }, {}, {}, {} };
    }
    static MemberDocumentation ofUnbuilt(const char* doc)
    {
        return { doc, {}, {}, {}, {}, "Removes a listener." };
    }

    template <auto Remove> void describeListeners(const char* listenedEvent)
    {
        event = listenedEvent;
        doc = "Adds a listener of `" + event + "`. The same function is added once.";
        counterpartDoc = "Removes a listener of `" + event + "`; without one, all of the page's.";
        describeCounterpart = [] { return describeSignature<Remove>(); };
    }
    /// The same for an event without a name for pages.
    template <auto Remove> void describeListenersWhen(const char* when)
    {
        doc =
            std::string("Adds a listener that is called when ") + when + ". The same function is added once.";
        counterpartDoc = std::string("Removes a listener that is called when ") + when + '.';
        describeCounterpart = [] { return describeSignature<Remove>(); };
    }
    void describeRemover()
    {
        describe = describeCounterpart;
        doc = counterpartDoc;
    }

private:
    // Defined in framework/describetypes.h, which knows the types.
    template <auto Handler> static SignatureDescription describeSignature();
};

struct ListDocumentation {
    explicit ListDocumentation(const char* objectDoc)
        : doc(objectDoc)
    {
    }
    std::string doc;
    Json events = Json::array();

    template <typename... Events> void addEvents(const Events&... added) { (addEvent(added), ...); }

private:
    template <typename AddedEvent> void addEvent(const AddedEvent& event);
};

} // namespace jsapi
