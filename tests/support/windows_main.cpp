#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    // Tests talk to servers of their own; a proxy of the machine must not come between.
    qputenv("no_proxy", "*");
    // Cases that need a real display start one of their own.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
