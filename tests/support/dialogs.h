// A user who goes through dialogs step by step:
//
//     const User user("name a.txt; confirm");
//     QFileDialog::getOpenFileName(...);   // the steps are done within its event loop
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace support {

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

/// What a user does, each step in a turn of its own of whatever event loop runs then:
///   tab NAME        goes to a tab of the cloud dialog
///   pick TEXT       clicks on an entry of its list; more TEXT: with the control key; double TEXT: twice
///   name TEXT       replaces the name, here and in a local file dialog
///   confirm, cancel press that button; enter, escape that key
///   box TEXT        presses the button of a message box that has this text
///   look            calls the function given with the dialog that is open
///   wait            until the dialog has gone by itself
///   drop            destroys the owner; exit tells the application to end
class User {
public:
    using Look = std::function<void(QDialog& dialog)>;

    explicit User(const QString& steps, Look look = {}, QWidget* owner = nullptr)
        : m_steps(steps.split(QStringLiteral("; "), Qt::SkipEmptyParts))
        , m_look(std::move(look))
        , m_owner(owner)
    {
        next();
    }
    explicit User(const char* steps, Look look = {}, QWidget* owner = nullptr)
        : User(QString::fromUtf8(steps), std::move(look), owner)
    {
    }
    ~User()
    {
        m_steps.removeAll(QStringLiteral("wait"));
        EXPECT_TRUE(m_steps.isEmpty()) << "no dialog for " << m_steps.join(u';').toStdString();
    }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

private:
    void next()
    {
        // Behind what the step before has queued.
        QTimer::singleShot(0, &m_context, [this] { QTimer::singleShot(0, &m_context, [this] { step(); }); });
    }

    void step()
    {
        if (m_steps.isEmpty()) {
            EXPECT_FALSE(closeDialogs()) << "the steps left a dialog open";
            return;
        }
        if (m_steps.first() == QLatin1String("wait") && window())
            return QTimer::singleShot(10, &m_context, [this] { step(); });
        const QString step = m_steps.takeFirst();
        next();
        act(step.section(u' ', 0, 0).toStdString(), step.section(u' ', 1));
    }

    static QWidget* window() { return QApplication::activeModalWidget(); }

    /// The tab in use, or the whole dialog when it has no tabs.
    static QWidget* page()
    {
        auto* tabs = window()->findChild<QTabWidget*>(QStringLiteral("tabs"));
        return tabs ? tabs->currentWidget() : window();
    }

    static void press(QAbstractButton* button)
    {
        ASSERT_NE(button, nullptr);
        QTest::mouseClick(button, Qt::LeftButton);
    }

    static void press(QDialogButtonBox::ButtonRole role)
    {
        for (auto* box : page()->findChildren<QDialogButtonBox*>()) {
            for (QAbstractButton* found : box->buttons()) {
                if (box->buttonRole(found) == role)
                    return press(found);
            }
        }
        FAIL() << "no such button";
    }

    static void pressInBox(const QString& text)
    {
        for (auto* found : window()->findChildren<QAbstractButton*>()) {
            if (found->text().remove(u'&') == text)
                return press(found);
        }
        FAIL() << "no button " << text.toStdString();
    }

    static void pick(const QString& text, Qt::KeyboardModifiers modifiers, bool twice)
    {
        auto* list = page()->findChild<QListWidget*>();
        ASSERT_NE(list, nullptr);
        const QList<QListWidgetItem*> items = list->findItems(text, Qt::MatchExactly);
        ASSERT_EQ(items.size(), 1) << text.toStdString();
        const QPoint place = list->visualItemRect(items.first()).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, modifiers, place);
        if (twice)
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, modifiers, place);
    }

    static QLineEdit* nameLine()
    {
        auto* local = page()->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        return local ? local : page()->findChild<QLineEdit*>(QStringLiteral("name"));
    }

    void act(const std::string& verb, const QString& what)
    {
        if (verb == "drop")
            return delete m_owner;
        if (verb == "exit")
            return QCoreApplication::exit();
        if (verb == "wait")
            return;
        ASSERT_NE(window(), nullptr) << verb;
        if (verb == "look") {
            m_look(*qobject_cast<QDialog*>(window()));
        } else if (verb == "tab") {
            auto* wanted = window()->findChild<QWidget*>(what);
            ASSERT_NE(wanted, nullptr) << what.toStdString();
            window()->findChild<QTabWidget*>(QStringLiteral("tabs"))->setCurrentWidget(wanted);
        } else if (verb == "pick" || verb == "more" || verb == "double") {
            pick(what, verb == "more" ? Qt::ControlModifier : Qt::NoModifier, verb == "double");
        } else if (verb == "name") {
            ASSERT_NE(nameLine(), nullptr);
            nameLine()->setFocus();
            nameLine()->selectAll();
            nameLine()->insert(what); // as from the clipboard: nothing is completed
        } else if (verb == "enter") {
            QTest::keyClick(nameLine(), Qt::Key_Return);
        } else if (verb == "escape") {
            QTest::keyClick(window(), Qt::Key_Escape);
        } else if (verb == "confirm" || verb == "cancel") {
            press(verb == "confirm" ? QDialogButtonBox::AcceptRole : QDialogButtonBox::RejectRole);
        } else if (verb == "box") {
            pressInBox(what);
        } else {
            FAIL() << verb;
        }
    }

    QStringList m_steps;
    Look m_look;
    QPointer<QWidget> m_owner;
    QObject m_context; ///< steps that are left over end with the user
};

} // namespace support
