#include "host/suite/dialoganswers.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    dialogs::install();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
