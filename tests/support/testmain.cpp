// Test entry point: a QCoreApplication exists, and the settings folder is a fresh
// temporary one, so no test can touch the user's own settings.
#include <QCoreApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    QTemporaryDir home;
    qputenv("BRINDAR_HOME", home.path().toUtf8());
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
