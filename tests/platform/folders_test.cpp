// The settings and data folders: environment first, then the per-user folders.
#include "platform/folders.h"

#include "support/tempfolder.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace brindar;

namespace {

// Sets a variable, or unsets it for a null value, until the end of the scope.
struct ScopedEnvironment {
    ScopedEnvironment(const char* n, const QByteArray& v) : name(n), had(qEnvironmentVariableIsSet(n)), old(qgetenv(n))
    {
        v.isNull() ? qunsetenv(n) : qputenv(n, v);
    }
    ~ScopedEnvironment() { had ? qputenv(name, old) : qunsetenv(name); }
    const char* name;
    bool had;
    QByteArray old;
};

}  // namespace

TEST(Folders, SettingsAndDataFolders)
{
    {
        ScopedEnvironment home("BRINDAR_HOME", "/tmp/brindar-test-home/");
        ScopedEnvironment data("BRINDAR_DATA", "/opt/brindar/share");
        EXPECT_EQ(SettingsFolder(), u"/tmp/brindar-test-home");
        EXPECT_EQ(DataFolder(), u"/opt/brindar/share");
    }
    ScopedEnvironment home("BRINDAR_HOME", QByteArray());
    ScopedEnvironment data("BRINDAR_DATA", QByteArray());
    ScopedEnvironment xdg("XDG_CONFIG_HOME", "/tmp/brindar-test-xdg");
    EXPECT_EQ(SettingsFolder(), u"/tmp/brindar-test-xdg/brindar-pro");
    // The tests run from the build tree, whose bin/ has share/brindar-pro beside it.
    EXPECT_TRUE(QDir(DataFolder() + QStringLiteral("/Language")).exists(QStringLiteral("French.lng")))
        << DataFolder().toStdString();
}
