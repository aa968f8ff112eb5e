// DialogTest: a ServiceTest that ends whatever dialog hangs, and notes what the suite warns of.
#pragma once

#include "tests/services/fixture.h"

#include <QApplication>
#include <QDialog>
#include <QTimer>

/// Cancels every dialog there is; whether there was one.
inline bool closeDialogs()
{
    bool found = false;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<QDialog*>(widget);
        if (!dialog || !dialog->isVisible())
            continue;
        found = true;
        dialog->QDialog::done(QDialog::Rejected);
    }
    return found;
}

class DialogTest : public ServiceTest {
protected:
    DialogTest()
    {
        s_warnings.clear();
        m_before = qInstallMessageHandler(note);
        QObject::connect(&m_watchdog, &QTimer::timeout, [] {
            ADD_FAILURE() << "a dialog hangs";
            closeDialogs();
        });
        m_watchdog.start(20000);
    }
    ~DialogTest() override
    {
        qInstallMessageHandler(m_before);
        if (closeDialogs())
            ADD_FAILURE() << "a dialog was left open";
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
            const QFileInfo file(path(name));
            ASSERT_TRUE(QDir().mkpath(file.path()));
            write(name, "content");
        }
    }

    /// Paths below the data directory, separated by "|".
    std::string below(QStringList files) const
    {
        for (QString& file : files)
            file.remove(path(""));
        return files.join(QLatin1Char('|')).toStdString();
    }

    static std::string warnings() { return s_warnings.join(QLatin1Char('\n')).toStdString(); }

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
