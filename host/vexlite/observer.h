// Observer and PageChecker: what may watch, and what may refuse, that which goes on between pages and the library.
//
// They are set with Core::addObserver and Core::setChecker. Values are borrowed for the time of a call; reading them runs no
// script of the page. [GUI thread]
#pragma once

#include "vexlite/jscore.h"

#include <QString>
#include <chrono>

namespace vexlite {

using TraceTime = std::chrono::steady_clock::time_point;

/// A call of a method, or the reading of a property.
struct CallFacts {
    int id = 0;     ///< counts from 1 in a process
    int within = 0; ///< the call during which this one is made; 0: none
    JSContextEnv context;
    QString object;            ///< "NovaExtension.Log"
    std::int64_t instance = 0; ///< which one of the class; 0 for an object of NovaExtension
    QString member;
    bool isProperty = false;
    const JSApiArguments& arguments;
    TraceTime start;
};

/// How a call ended: `exception` is empty when it succeeded.
struct CallOutcome {
    TraceTime end;
    const KJSVariant& result;
    const KJSVariant& exception;
};

/// A promise that a call returned has been settled. Comes after the end of that call.
struct SettledPromise {
    std::int64_t id = 0; ///< see promiseHandle()
    JSContextEnv context;
    QString object; ///< of the call; null when it was not observed
    QString member;
    TraceTime time;
    JSPromiseState state;
    const KJSVariant& value; ///< of a rejection an object with "code" and "msg"
};

/// An event that listeners of a page hear.
struct EventFacts {
    int within = 0;
    JSContextEnv context;
    QString object;
    std::int64_t instance = 0;
    QString event;
    const JSApiArguments& arguments;
    TraceTime time;
};

/// A function of a page, an argument of an earlier call, that is called. Listeners are not: see EventFacts.
struct FunctionFacts {
    int within = 0;
    JSContextEnv context;
    std::int64_t function = 0; ///< see PageFunction::number()
    const JSApiArguments& arguments;
    TraceTime start;
};

/// An observer may add and remove observers, itself as well, but must make no calls for a page.
class Observer {
public:
    virtual void pageOpened(const JSContextEnv& context, const QString& origin)
    {
        static_cast<void>(context), static_cast<void>(origin);
    }
    virtual void callBegan(const CallFacts& call) { static_cast<void>(call); }
    virtual void callEnded(const CallFacts& call, const CallOutcome& outcome)
    {
        static_cast<void>(call), static_cast<void>(outcome);
    }
    virtual void promiseSettled(const SettledPromise& promise) { static_cast<void>(promise); }
    /// Before the first of a page's listeners is called; once for each page, which may be closed when the event ends.
    virtual void eventBegan(const EventFacts& event) { static_cast<void>(event); }
    virtual void eventEnded(const EventFacts& event) { static_cast<void>(event); }
    virtual void functionBegan(const FunctionFacts& function) { static_cast<void>(function); }
    virtual void functionEnded(const FunctionFacts& function, TraceTime end)
    {
        static_cast<void>(function), static_cast<void>(end);
    }
    virtual void stepPlayed(const QString& step) { static_cast<void>(step); }

protected:
    ~Observer() = default;
};

class PageChecker {
public:
    /// Before a call is made. A text is the reason to refuse it, with code 1.
    virtual QString checkCall(const CallFacts& call) = 0;
    /// A page has read a property that `object` ("NovaExtension", "NovaExtension.Log") does not have. A text is thrown as a
    /// TypeError.
    virtual QString checkName(const JSContextEnv& context, const QString& object, const QString& name) = 0;

protected:
    ~PageChecker() = default;
};

/// What an exception, or the value of a rejection, says.
struct Failure {
    std::int32_t code = 0;
    QString msg;
};
Failure failureOf(const KJSVariant& exception);

} // namespace vexlite
