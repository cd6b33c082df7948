#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    // Tests talk to servers of their own; a proxy of the machine must not come between.
    qputenv("no_proxy", "*");
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
