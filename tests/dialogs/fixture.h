// DialogTest: a ServiceTest that ends whatever dialog hangs, and notes what the suite warns of.
#pragma once

#include "tests/services/fixture.h"
#include "tests/support/dialogs.h"
#include "tests/support/rows.h"

class DialogTest : public ServiceTest {
protected:
    DialogTest()
    {
        s_warnings.clear();
        m_before = qInstallMessageHandler(note);
        QObject::connect(&m_watchdog, &QTimer::timeout, [] {
            ADD_FAILURE() << "a dialog hangs";
            support::closeDialogs();
        });
        m_watchdog.start(60000);
    }
    ~DialogTest() override
    {
        qInstallMessageHandler(m_before);
        EXPECT_FALSE(support::closeDialogs()) << "a dialog was left open";
    }

    /// Loads a profile with these answers, each a JSON object.
    void useAnswers(const QByteArray& answers) const
    {
        useProfile(R"({"access": {"granted": ["${DATA}/granted"]},
                       "dialogs": {"mode": "answer", "answers": [)"
            + answers + "]}}");
    }

    void makeFiles(std::initializer_list<const char*> names) const
    {
        for (const char* name : names) {
            ASSERT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()));
            write(name, "content");
        }
    }

    /// Paths below the data directory, separated by "|".
    std::string below(QStringList files) const
    {
        for (QString& file : files)
            file.remove(path(""));
        return files.join(u'|').toStdString();
    }

    static std::string warnings() { return s_warnings.join(u'\n').toStdString(); }
    /// That the only warning, if any, has this text in it; "" is none.
    static void expectWarning(const char* text)
    {
        EXPECT_EQ(warnings().empty(), text[0] == 0) << warnings();
        EXPECT_NE(warnings().find(text), std::string::npos) << warnings();
    }

private:
    static void note(QtMsgType, const QMessageLogContext& context, const QString& text)
    {
        if (qstrcmp(context.category, "suite.dialogs") == 0)
            s_warnings << text;
    }

    static inline QStringList s_warnings;
    QtMessageHandler m_before;
    QTimer m_watchdog;
};
