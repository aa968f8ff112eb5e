// The dialogs of the account service, shown.
#include "host/suite/account/accountdialog.h"
#include "tests/dialogs/fixture.h"

#include <QListWidget>
#include <QPushButton>
#include <optional>

namespace {

struct Case {
    const char* name;
    int row; ///< that the user clicks on; -1 leaves the proposed one
    const char* button;
    const char* chosen;
};

void PrintTo(const Case& row, std::ostream* stream)
{
    *stream << row.name;
}

class ShownAccounts : public DialogTest, public testing::WithParamInterface<Case> { };

TEST_P(ShownAccounts, TellWhatWasChosenOnce)
{
    useProfile(R"({"dialogs": {"mode": "show"}})");
    std::vector<std::string> told;
    suite::choose(
        { profile::DialogKind::Login, QStringLiteral("Sign in"), QStringLiteral("userId"),
            { { QStringLiteral("a"), QStringLiteral("A") }, { QStringLiteral("b"), QStringLiteral("B") } },
            QStringLiteral("b") },
        [&](const QString& id) { told.push_back(id.toStdString()); });
    EXPECT_TRUE(told.empty()) << "the call returns while the dialog is shown";
    const QWidgetList windows = QApplication::topLevelWidgets();
    ASSERT_EQ(windows.size(), 1);
    auto* list = windows.first()->findChild<QListWidget*>(QStringLiteral("choices"));
    if (GetParam().row >= 0)
        list->setCurrentRow(GetParam().row);
    windows.first()->findChild<QPushButton*>(QLatin1String(GetParam().button))->click();
    EXPECT_EQ(told, std::vector<std::string> { GetParam().chosen });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Login, ShownAccounts,
    testing::Values(Case { "Proposed", -1, "confirm", "b" }, Case { "Another", 0, "confirm", "a" },
        Case { "Cancelled", 0, "cancel", "" }),
    caseName<Case>);

} // namespace
