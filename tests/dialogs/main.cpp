#include "host/suite/dialogs/dialoganswers.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <malloc.h>

int main(int argc, char** argv)
{
    // What the toolkit still reads of a widget that has gone is no longer what it was.
    mallopt(M_PERTURB, 0xa5);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    dialogs::install();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
