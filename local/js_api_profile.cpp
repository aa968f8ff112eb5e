#include "local/js_api_profile.h"

#include "framework/pagewatch.h"

namespace jsapi {

namespace {

constexpr Failure NoBrowser { ErrorCode::BadArgument, "Browser is not in browser group." };

std::int64_t duration(std::int64_t from, std::int64_t to)
{
    return qMax<std::int64_t>(0, to - from);
}

} // namespace

/// The browser that shows the calling page.
template <> struct Argument<IVEXBrowser> {
    static constexpr bool IsScript = false;
    static constexpr std::array Refusals { &NoBrowser };
    bool read(ArgumentReader& reader)
    {
        browser = browserOf(reader.page());
        return browser || reader.refuse(NoBrowser);
    }
    const IVEXBrowser& get() const { return *browser; }
    const IVEXBrowser* browser = nullptr;
};

struct KJsApiProfile::ProfileInfo {
    std::int64_t loadDuration;
    std::int64_t creationDuration;
    std::int64_t loadStart;
    std::int64_t creationStart;
    std::int64_t loadFinish;
    std::int64_t creationFinish;

    explicit ProfileInfo(const VEXBrowserTimes& times)
        : loadDuration(duration(times.loadStart, times.loadFinish))
        , creationDuration(duration(times.creationStart, times.creationFinish))
        , loadStart(times.loadStart)
        , creationStart(times.creationStart)
        , loadFinish(times.loadFinish)
        , creationFinish(times.creationFinish)
    {
    }

    static constexpr auto fields()
    {
        using Self = ProfileInfo;
        return std::tuple(property("c_l", &Self::loadDuration, "how long loading took"),
            property("c_cb", &Self::creationDuration, "how long making the browser took"),
            property("c_l_ts", &Self::loadStart, "when loading began"),
            property("c_cb_ts", &Self::creationStart, "when making the browser began"),
            property("c_lf_ts", &Self::loadFinish, "when loading had ended"),
            property("c_cbf_ts", &Self::creationFinish, "when the browser was made"));
    }
};

struct KJsApiProfile::BrowserTraceId {
    std::int64_t processId;
    QString applicationId;
    QString browserId;

    explicit BrowserTraceId(const IVEXBrowser& browser)
        : processId(browser.ProcessId())
        , applicationId(browser.ApplicationId())
        , browserId(browser.BrowserId())
    {
    }

    static constexpr auto fields()
    {
        using Self = BrowserTraceId;
        return std::tuple(property("pid", &Self::processId, "the process"),
            property("appid", &Self::applicationId, "the application"),
            property("browserid", &Self::browserId, "the browser"));
    }
};

struct KJsApiProfile::BrowserTraceInfo : ProfileInfo, BrowserTraceId {
    QString sessionId;
    std::int64_t readyDuration;
    std::int64_t readyTime;
    std::int64_t markDuration;
    std::int64_t markTime;

    BrowserTraceInfo(const IVEXBrowser& browser, const IVEXBrowserGroup& group)
        : ProfileInfo(browser.Times())
        , BrowserTraceId(browser)
        , sessionId(browser.SessionId())
        , readyDuration(duration(loadStart, browser.Times().loadReady))
        , readyTime(browser.Times().loadReady)
        , markDuration(duration(group.Mark1(), group.Mark2()))
        , markTime(group.Mark1())
    {
    }

    static constexpr auto fields()
    {
        using Self = BrowserTraceInfo;
        return std::tuple_cat(BrowserTraceId::fields(), ProfileInfo::fields(),
            std::tuple(property("sessionid", &Self::sessionId, "the session"),
                property("c_l_rd", &Self::readyDuration, "how long it took until the document was ready"),
                property("c_l_rd_ts", &Self::readyTime, "when the document was ready"),
                property("c_cb_ld", &Self::markDuration, "the time between the marks of the browser's group"),
                property("c_cb_ld_ts", &Self::markTime, "the first of these marks")));
    }
};

const MemberList& KJsApiProfile::members()
{
    using Self = KJsApiProfile;
    static const MemberList list {
        "When the calling page's browser was made and loaded. Times are milliseconds since 1970"
        " (UTC), 0 for what has not happened; durations are milliseconds and never negative.",
        {
            member<&Self::getProfileInfo>(u"getProfileInfo", Category::Usual, Type::JsValue,
                "Returns when the browser was made and the page loaded."),
            member<&Self::getBrowserTraceId>(
                u"getBrowserTraceId", Category::Usual, Type::JsValue, "Returns which browser it is."),
            member<&Self::getBrowserTraceInfo>(u"getBrowserTraceInfo", Category::Usual, Type::JsValue,
                "Returns both, and what is known of the session and of the browser's group.", { &NoBrowser }),
        }
    };
    return list;
}

Answer<KJsApiProfile::ProfileInfo> KJsApiProfile::getProfileInfo(const IVEXBrowser& browser)
{
    return ProfileInfo(browser.Times());
}

Answer<KJsApiProfile::BrowserTraceId> KJsApiProfile::getBrowserTraceId(const IVEXBrowser& browser)
{
    return BrowserTraceId(browser);
}

Answer<KJsApiProfile::BrowserTraceInfo> KJsApiProfile::getBrowserTraceInfo(const IVEXBrowser& browser)
{
    const IVEXBrowserGroup* group = browser.Group();
    if (!group)
        return NoBrowser;
    return BrowserTraceInfo(browser, *group);
}

} // namespace jsapi
