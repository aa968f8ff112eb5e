#include "host/suite/account/accountservice.h"
#include "suite/kcoreapplication.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const KCoreApplication application(argc, argv);
    // Its file is that of the process, not of a test.
    suite::AccountService::instance().accountList();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
