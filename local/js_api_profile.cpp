#include "local/js_api_profile.h"

#include "framework/kjsonvalue.h"

const MemberList& KJsApiProfile::members()
{
    // clang-format off
    static const MemberList list {
        // member                                                           category         answer
        method<&KJsApiProfile::getProfileInfo>(u"getProfileInfo",           Category::Usual, Type::JsValue),
        method<&KJsApiProfile::getBrowserTraceId>(u"getBrowserTraceId",     Category::Usual, Type::JsValue),
        method<&KJsApiProfile::getBrowserTraceInfo>(u"getBrowserTraceInfo", Category::Usual, Type::JsValue),
    };
    // clang-format on
    return list;
}

namespace {

std::int64_t duration(std::int64_t from, std::int64_t to)
{
    return qMax<std::int64_t>(0, to - from);
}

template <typename Fill> Reply reportOnBrowser(Call& call, Fill fill)
{
    IVEXJSCore* core = vexlite::GetVEXJSCore();
    const IVEXBrowser* browser = core ? core->Browser(call.context().browserId) : nullptr;
    KRef<KJSONValue> report(new KJSONValue);
    if (!browser || !fill(*browser, *report))
        return call.fail(ErrorCode::BadArgument, "Browser is not in browser group.");
    return call.succeed(std::move(report));
}

} // namespace

Reply KJsApiProfile::getProfileInfo(Call& call)
{
    return reportOnBrowser(call, [](const IVEXBrowser& browser, KJSONValue& report) {
        const VEXBrowserTimes times = browser.Times();
        report.SetInt64(QStringLiteral("c_l"), duration(times.loadStart, times.loadFinish));
        report.SetInt64(QStringLiteral("c_cb"), duration(times.creationStart, times.creationFinish));
        report.SetInt64(QStringLiteral("c_l_ts"), times.loadStart);
        report.SetInt64(QStringLiteral("c_cb_ts"), times.creationStart);
        report.SetInt64(QStringLiteral("c_lf_ts"), times.loadFinish);
        report.SetInt64(QStringLiteral("c_cbf_ts"), times.creationFinish);
        return true;
    });
}

Reply KJsApiProfile::getBrowserTraceId(Call& call)
{
    return reportOnBrowser(call, [](const IVEXBrowser& browser, KJSONValue& report) {
        report.SetInt64(QStringLiteral("pid"), browser.ProcessId());
        report.SetString(QStringLiteral("appid"), browser.ApplicationId());
        report.SetString(QStringLiteral("browserid"), browser.BrowserId());
        return true;
    });
}

Reply KJsApiProfile::getBrowserTraceInfo(Call& call)
{
    return reportOnBrowser(call, [](const IVEXBrowser& browser, KJSONValue& report) {
        const IVEXBrowserGroup* group = browser.Group();
        if (!group)
            return false;
        const VEXBrowserTimes times = browser.Times();
        report.SetInt64(QStringLiteral("pid"), browser.ProcessId());
        report.SetString(QStringLiteral("appid"), browser.ApplicationId());
        report.SetString(QStringLiteral("sessionid"), browser.SessionId());
        report.SetString(QStringLiteral("browserid"), browser.BrowserId());
        report.SetInt64(QStringLiteral("c_l"), duration(times.loadStart, times.loadFinish));
        report.SetInt64(QStringLiteral("c_cb"), duration(times.creationStart, times.creationFinish));
        report.SetInt64(QStringLiteral("c_l_ts"), times.loadStart);
        report.SetInt64(QStringLiteral("c_l_rd"), duration(times.loadStart, times.loadReady));
        report.SetInt64(QStringLiteral("c_cb_ld"), duration(group->Mark1(), group->Mark2()));
        report.SetInt64(QStringLiteral("c_cb_ts"), times.creationStart);
        report.SetInt64(QStringLiteral("c_lf_ts"), times.loadFinish);
        report.SetInt64(QStringLiteral("c_cbf_ts"), times.creationFinish);
        report.SetInt64(QStringLiteral("c_l_rd_ts"), times.loadReady);
        report.SetInt64(QStringLiteral("c_cb_ld_ts"), group->Mark1());
        return true;
    });
}
