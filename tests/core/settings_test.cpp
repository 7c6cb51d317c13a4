// Settings written through the key table: sets of keys in one replace, two writers at
// once, the session kept equal to its files.
#include "core/configurationfiles.h"
#include "core/session.h"
#include "core/settings.h"

#include "support/tempfolder.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>
#include <thread>

using namespace brindar;
using namespace Qt::StringLiterals;
using brindar::test::TempFolder;

TEST(Settings, ASetOfKeysGoesToItsFilesAndTheSessionFollows)
{
    TempFolder settings;
    settings.write(u"Brindar.ini"_s, "; my options\r\n[Configuration]\r\nLangue=English\r\n");
    Session session = StartSession(settings.path(), QString(), SystemInfo{});
    SettingsChange change;
    change.set(key::Repertoire, u"/home/me/Docs"_s).setBool(key::LocalTime, true).setNumber(key::Largeur, 3, 120);
    change.setNumber(key::Width, 800);
    ASSERT_FALSE(session.write(change));
    EXPECT_EQ(settings.read(u"Brindar.ini"_s),
              "; my options\r\n[Configuration]\r\nLangue=English\r\nRepertoire=/home/me/Docs\r\nLocalTime=1\r\nLargeur3=120\r\n");
    EXPECT_EQ(settings.read(u"ChoixConfiguration.ini"_s), "[MainWindow]\r\nWidth=800\r\n");
    EXPECT_EQ(session.configuration.repertoire, u"/home/me/Docs");
    EXPECT_TRUE(session.configuration.localTime);
    EXPECT_EQ(session.configuration.largeur.value(3), 120);
    EXPECT_EQ(session.chooser.width, 800);

    // A file that cannot be written keeps what it had, and the session keeps the file's
    // values; the reason comes in the user's words.
    QDir(settings.path()).mkpath(u"Locked.ini"_s);
    ASSERT_FALSE(session.selectConfiguration(u"Locked"_s));
    const auto error = session.write(SettingsChange().set(key::Repertoire, u"/elsewhere"_s));
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->startsWith(u"Unable to save the settings:"));
    EXPECT_TRUE(QFileInfo(settings.file(u"Locked.ini"_s)).isDir());
    EXPECT_EQ(session.configuration.repertoire, QString());
}

TEST(Settings, TwoWritersAtOnceLoseNeitherKey)
{
    TempFolder settings;
    const QString path = ConfigurationPath(settings.path(), u"Brindar"_s);
    // Each writer adds keys of its own, one at a time: a write that replaced the file with
    // what it read before the other's write would lose a key for good.
    constexpr int kWrites = 100;
    const auto writer = [&](const SettingKey& key) {
        for (int i = 0; i < kWrites; ++i)
            EXPECT_FALSE(WriteSettings(path, QString(), SettingsChange().setNumber(key, i, i)));
    };
    std::thread scan(writer, key::Largeur);
    std::thread window(writer, key::ColumnAt);
    scan.join();
    window.join();
    const IniDocument file = IniDocument::Load(path);
    for (int i = 0; i < kWrites; ++i) {
        EXPECT_EQ(file.value(key::Largeur, i), QString::number(i)) << i;
        EXPECT_EQ(file.value(key::ColumnAt, i), QString::number(i)) << i;
    }
}
