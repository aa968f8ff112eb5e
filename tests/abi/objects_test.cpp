// What objects make of a page's core where script can not set the scene.
#include "tests/support/library.h"

namespace {

TEST(Objects, ReportTheBrowserAndNoNegativeDuration)
{
    vexlite::BrowserFacts facts;
    facts.applicationId = QStringLiteral("app");
    facts.sessionId = QStringLiteral("session");
    facts.browserId = QStringLiteral("browser");
    facts.times = { 100, 130, 500, 570, 400 }; // its load finished before it started
    facts.groupMark1 = 1000;
    facts.groupMark2 = 1025;
    support::Page page(support::libraryCore(), facts);
    EXPECT_EQ(page.call("Profile", "getProfileInfo"),
        R"({"c_cb":30,"c_cb_ts":100,"c_cbf_ts":130,"c_l":0,"c_l_ts":500,"c_lf_ts":400})");
    EXPECT_EQ(page.call("Profile", "getBrowserTraceInfo"),
        R"({"appid":"app","browserid":"browser","c_cb":30,"c_cb_ld":25,"c_cb_ld_ts":1000,"c_cb_ts":100,)"
        R"("c_cbf_ts":130,"c_l":0,"c_l_rd":70,"c_l_rd_ts":570,"c_l_ts":500,"c_lf_ts":400,"pid":)"
            + std::to_string(QCoreApplication::applicationPid()) + R"(,"sessionid":"session"})");
}

TEST(Objects, HaveTheirPromisesRejectedByTheService)
{
    support::Page page(support::libraryCore());
    KJSVariant promise;
    EXPECT_EQ(
        KNovaExtensionUtils::setPromiseReject(page.context, promise, QStringLiteral("why")), KR_REJECTED);
    EXPECT_EQ(page.settled, std::vector<std::string> { "rejected: 3 why" });
    EXPECT_FALSE(promise.isEmpty());
}

} // namespace
