// Test entry point of the window's tests: an application with widgets, offscreen, in one
// style and one font, so sizes and screenshots do not depend on the desktop of the day.
// The settings folder is a fresh temporary one.
#include <QApplication>
#include <QFont>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    QTemporaryDir home;
    qputenv("BRINDAR_HOME", home.path().toUtf8());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // No desktop session: the file manager is asked over a bus that is not there.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/brindar-test-bus");
    QApplication app(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
