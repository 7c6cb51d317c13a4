// The settings and data folders: environment first, then the per-user folders.
#include "platform/folders.h"

#include "support/tempfolder.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace brindar;

namespace {

class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const QByteArray& value)
        : name_(name), had_(qEnvironmentVariableIsSet(name)), old_(qgetenv(name))
    {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }
    ~ScopedEnvironment()
    {
        if (had_)
            qputenv(name_, old_);
        else
            qunsetenv(name_);
    }

private:
    const char* name_;
    bool had_;
    QByteArray old_;
};

}  // namespace

TEST(Folders, SettingsFolderOrder)
{
    {
        ScopedEnvironment home("BRINDAR_HOME", "/tmp/brindar-test-home/");
        EXPECT_EQ(SettingsFolder(), u"/tmp/brindar-test-home");
    }
    ScopedEnvironment home("BRINDAR_HOME", QByteArray());
    ScopedEnvironment xdg("XDG_CONFIG_HOME", "/tmp/brindar-test-xdg");
    EXPECT_EQ(SettingsFolder(), u"/tmp/brindar-test-xdg/brindar-pro");
}

TEST(Folders, DataFolderFromTheEnvironmentOrBesideTheProgram)
{
    {
        ScopedEnvironment data("BRINDAR_DATA", "/opt/brindar/share");
        EXPECT_EQ(DataFolder(), u"/opt/brindar/share");
    }
    ScopedEnvironment data("BRINDAR_DATA", QByteArray());
    // The tests run from the build tree, whose bin/ has share/brindar-pro beside it.
    EXPECT_TRUE(QDir(DataFolder() + QStringLiteral("/Language")).exists(QStringLiteral("French.lng"))) << DataFolder().toStdString();
}
