// An upload, with a service that replies to each request from a list.
#include "cloud/uploadfiletask.h"
#include "tests/support/cloudservice.h"
#include "tests/support/rows.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <cctype>

namespace {

using jsapi::KUploadFileTask;

/// `text` so often, with commas between.
std::string times(int count, const std::string& text)
{
    std::string all = text;
    while (--count > 0)
        all += ',' + text;
    return all;
}

/// Replies in the next turn of the event loop; without a reply left it takes requests and never replies.
class Upload : public testing::Test {
protected:
    Upload()
    {
        service.onRequest = [this](support::CloudRequest& request) { onRequest(request); };
        listen(&KUploadFileTask::sigStarted, "started ");
        listen(&KUploadFileTask::sigProgressChanged, "progress ");
        listen(&KUploadFileTask::sigFinished, "finished ");
        EXPECT_EQ(task->findChild<QTimer*>()->interval(), 1000);
        task->findChild<QTimer*>()->setInterval(0);
    }
    ~Upload() override
    {
        delete task;
        support::cloudProxy = nullptr;
    }

    void listen(void (KUploadFileTask::*signal)(const QVariantMap&), const char* name)
    {
        QObject::connect(task, signal, [this, name](const QVariantMap& map) {
            const QString keys = QStringList(map.keys()).join(u' ');
            EXPECT_TRUE(
                keys == u"data status taskId type uploadErrorCode" || (name[0] == 's' && keys == u"taskId"));
            const auto text = [&](const char* key) { return map.value(QLatin1String(key)).toString(); };
            const QString error = text("uploadErrorCode");
            events << QLatin1String(name) + text("taskId") + u' ' + text("status")
                    + (error.isEmpty() ? error : QStringLiteral(" error ") + error);
        });
    }

    /// Replies to a method, separated by commas: the id of the task or its status, "!" in front when the
    /// request has failed, "@" and a state other than 0 behind; "?" is none.
    void replies(const char* method, const std::string& texts)
    {
        left[QLatin1String(method)] = QString::fromStdString(texts).split(u',');
    }

    void onRequest(support::CloudRequest& request)
    {
        const LarkIpcArg& envelope = request.envelope();
        const QString method = QString::fromStdString(envelope.method);
        const auto taskId = envelope.argMap.find("taskId");
        EXPECT_EQ(envelope.argMap.at("userId"), "u");
        asked << method.left(6)
                + QString::fromStdString(taskId == envelope.argMap.end() ? "" : " " + taskId->second);
        if (method == refused)
            return request.id.clear();
        const QString reply =
            left.value(method).isEmpty() ? otherwise.value(method) : left[method].takeFirst();
        if (reply.isNull() || reply == u'?')
            return;
        const bool ok = !reply.startsWith(u'!');
        const QString text = reply.section(u'@', 0, 0).mid(ok ? 0 : 1);
        const std::string key = method == QLatin1String("getTaskState") ? "status" : "taskId";
        request.replyState(
            ok, reply.section(u'@', 1).toInt(), { { key, text.toStdString() } }, Qt::QueuedConnection);
    }

    void forCancelTimer(const std::function<void(QTimer&)>& action) const
    {
        for (QTimer* timer : task ? task->findChildren<QTimer*>() : QList<QTimer*>()) {
            if (timer->isSingleShot() && timer->isActive())
                action(*timer);
        }
    }
    /// Runs a little longer, too. Replies come before a cancel is repeated.
    void runUntil(const std::function<bool()>& done)
    {
        QElapsedTimer patience;
        patience.start();
        for (bool wasDone = false; !wasDone && patience.elapsed() < 60000;) {
            wasDone = done();
            for (int turn = 0; turn < 20; ++turn)
                QCoreApplication::processEvents();
            forCancelTimer([](QTimer& timer) { timer.setInterval(0); });
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    void runToEnd()
    {
        runUntil([this] { return !events.filter(QStringLiteral("finished")).isEmpty(); });
    }
    static std::string joined(QStringList& texts)
    {
        return std::exchange(texts, {}).join(u',').toStdString();
    }

    support::FakeCloudService service;
    QPointer<KUploadFileTask> task =
        new KUploadFileTask({ { QStringLiteral("userId"), QStringLiteral("u") } });
    QMap<QString, QStringList> left; ///< replies by methods
    /// The replies to methods that have none left.
    QMap<QString, QString> otherwise { { QStringLiteral("cancelTransferTask"), QStringLiteral("") } };
    QString refused;   ///< a method
    QStringList asked; ///< the first letters of the method, and the task
    QStringList events;
};

struct UploadRow {
    const char* name;
    const char* begun;
    std::string polls;
    std::string events;
};

const UploadRow Uploads[] = {
    { "Done", "t", "0,3,1", "started t ,progress t 0,progress t 3,progress t 1,finished t 1" },
    { "Failed", "t", "2", "started t ,progress t 2,finished t 2" },
    { "Cancelled", "t", "6", "started t ,progress t 6,finished t 6" },
    { "StatusesThatAreNoNumbersInBetween", "t", "x,99999999999,1",
        "started t ,progress t x,progress t 99999999999,progress t 1,finished t 1" },
    { "NeverANumber", "t", times(10, "1x"), "started t ," + times(10, "progress t 1x") + ",finished t -1" },
    { "AnswersInBetween", "t", times(9, "y") + ",3," + times(9, "y") + ",1",
        "started t ," + times(9, "progress t y") + ",progress t 3," + times(9, "progress t y")
            + ",progress t 1,finished t 1" },
    { "PollsThatFailAndHaveAStatus", "t", times(11, "!3@3") + ",!1",
        "started t ," + times(11, "progress t 3 error 3") + ",progress t 1,finished t 1" },
    { "OnlyPollsThatFail", "t", times(10, "!@3"),
        "started t ," + times(10, "progress t  error 3") + ",finished t -1" },
    { "NotBegun", "t@5", "", "finished t -1 error 5" },
    { "BegunWithoutATask", "", "", "finished  -1" },
    { "RequestFailed", "!t", "", "finished t -1" },
};

ROW_TEST(Upload, Ends, Uploads)
{
    replies("uploadFileToCloud", GetParam().begun);
    if (!GetParam().polls.empty())
        replies("getTaskState", GetParam().polls);
    EXPECT_TRUE(task->start());
    EXPECT_FALSE(task->start()) << "it is under way";
    runToEnd();
    EXPECT_EQ(joined(events), GetParam().events);
    EXPECT_FALSE(task->findChild<QTimer*>()->isActive());
    EXPECT_LE(asked.count(QStringLiteral("getTas t")), 20);
}

/// Steps: (s)tart, (c)ancel and (r)estart, in capitals where they fail; then what happens: the upload (b)egins,
/// (f)inishes, is (l)ost; uploads are refused from now on (x), the service is (o)ut and i(n) again, the page
/// (g)oes; the cancel is repeated after a (p)oll or a log(i)n.
struct CancelRow {
    const char* name;
    const char* steps;
    const char* replies; ///< to cancels; those that are left are confirmed
    const char* asked;   ///< without polls
    const char* events;  ///< without progress
};

const CancelRow Cancels[] = {
    { "Confirmed", "CsSbcfCs", "", "upload,cancel t,upload", "started t ,finished t 1" },
    { "CancelFails", "sbc", "!,!", "upload,cancel t,cancel t,cancel t", "started t " },
    { "Refused", "sbc", "@3", "upload,cancel t,cancel t", "started t " },
    { "NeverAnswered", "sbc", "?,?", "upload,cancel t,cancel t,cancel t", "started t " },
    { "RepeatedAfterAPoll", "sbcp", "!", "upload,cancel t,cancel t", "started t " },
    { "RepeatedAfterALogin", "sbcgi", "!", "upload,cancel t,cancel t", "started t " },
    { "NotRepeatedAfterTheEnd", "sbcf", "?", "upload,cancel t", "started t ,finished t 1" },
    { "NotSent", "sboCn", "", "upload", "started t " },
    { "AfterAnEndThatIsLost", "sblc", "!", "upload,cancel t,cancel t", "started t ,finished t -1" },
    { "RestartedAfterAnEndThatIsLost", "sblrf", "", "upload,cancel t,upload",
        "started t ,finished t -1,started t2 ,finished t2 1" },
    { "ServiceIsReplaced", "sbcolCRn", "!", "upload,cancel t,cancel t", "started t ,finished t -1" },
    { "BeforeItBegins", "sc", "!", "upload,cancel t,cancel t", "" },
    { "ThePageGoesWithoutACancel", "sbg", "", "upload", "started t " },
    { "RestartedBeforeItBegins", "srcf", "!,!", "upload,upload,cancel t,cancel t2,cancel t",
        "started t2 ,finished t2 1" },
    { "RestartedTwiceBeforeItBegins", "srrf", "", "upload,upload,upload,cancel t,cancel t2",
        "started t3 ,finished t3 1" },
    { "Restarted", "sbrf", "!,!", "upload,cancel t,upload,cancel t,cancel t",
        "started t ,started t2 ,finished t2 1" },
    { "CancelledAndRestarted", "sbcrc", "!", "upload,cancel t,cancel t,upload,cancel t2", "started t " },
    { "RestartIsRefused", "sbxRbf", "!", "upload,cancel t,upload", "started t ,finished t 1" },
};

ROW_TEST(Upload, IsCancelledWhenThatWasPromised, Cancels)
{
    using Action = bool (KUploadFileTask::*)();
    const std::map<char, Action> actions { { 's', &KUploadFileTask::start },
        { 'c', &KUploadFileTask::cancel }, { 'r', &KUploadFileTask::restart } };
    class final : public KCloudSvrProxy {
        QObject* larkEventObject() override { return nullptr; }
    } proxy;
    support::cloudProxy = &proxy;
    replies("uploadFileToCloud", "t,t2,t3");
    replies("cancelTransferTask", GetParam().replies);
    for (const char* step = GetParam().steps; *step; ++step) {
        otherwise[QStringLiteral("getTaskState")] = *step == 'l' ? QString()
            : *step == 'f'                                       ? QStringLiteral("1")
                                                                 : QStringLiteral("3");
        const auto action = actions.find(static_cast<char>(std::tolower(*step)));
        if (action != actions.end())
            EXPECT_EQ((task->*action->second)(), std::islower(*step) != 0) << step;
        else if (*step == 'b')
            runUntil([&] { return asked.last().startsWith(QStringLiteral("getTas")); });
        else if (*step == 'f' || *step == 'l')
            runToEnd();
        else if (*step == 'x')
            refused = QStringLiteral("uploadFileToCloud");
        else if (*step == 'o' || *step == 'n')
            support::cloudIpc = *step == 'n' ? &service : nullptr;
        else if (*step == 'g')
            task->release();
        else if (*step == 'p' || *step == 'i') {
            QCoreApplication::processEvents();
            forCancelTimer([](QTimer& timer) { timer.stop(); });
            if (*step == 'i')
                Q_EMIT proxy.loginStatusChanged(true);
            runUntil([&] { return asked.filter(QStringLiteral("cancel")).size() == 2; });
        }
    }
    if (task)
        task->release();
    runUntil([this] { return !task; });
    EXPECT_FALSE(task) << "something is still open";
    asked = asked.filter(QRegularExpression(QStringLiteral("^(?!getTas)")));
    EXPECT_EQ(joined(asked), GetParam().asked);
    events = events.filter(QRegularExpression(QStringLiteral("^(?!progress)")));
    EXPECT_EQ(joined(events), GetParam().events);
}

TEST_F(Upload, IsRestartedByAListener)
{
    replies("uploadFileToCloud", "t,t2");
    replies("getTaskState", "2,1");
    bool restarted = false;
    QObject::connect(task, &KUploadFileTask::sigProgressChanged,
        [&](const QVariantMap&) { EXPECT_TRUE(std::exchange(restarted, true) || task->restart()); });
    task->start();
    runToEnd();
    EXPECT_EQ(joined(events), "started t ,progress t 2,started t2 ,progress t2 1,finished t2 1");
}

} // namespace
