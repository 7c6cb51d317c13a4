// The configuration-file dialog's rules: list, names, create, select, remove, save option.
#include "core/configurationfiles.h"
#include "core/paths.h"
#include "core/inifile.h"
#include "core/session.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;
using brindar::test::TempFolder;

TEST(ConfigurationFiles, ListCreateSelectRemove)
{
    for (QChar c : u"\\/:*?\"<>|"_s)
        EXPECT_TRUE(HasForbiddenCharacters(u"a"_s + c)) << int(c.unicode());
    EXPECT_FALSE(HasForbiddenCharacters(u"Photos 2026 \u00E9t\u00E9.b"_s));
    EXPECT_EQ(ReportsListPath(u"/s"_s, u"Photos"_s), u"/s/Photos.txt");
    EXPECT_EQ(SubstitutionsPath(u"/s"_s, u"Photos"_s), u"/s/Photos.pat");

    TempFolder folder, trash;
    qputenv("XDG_DATA_HOME", trash.path().toUtf8());
    folder.write(u"choixconfiguration.INI"_s, "[Configuration]\r\nNom=Photos\r\n");
    folder.write(u"Photos.ini"_s, "[Configuration]\r\nRepertoire=/home/me/Photos\r\n");
    folder.write(u"Brindar.ini"_s, "");
    folder.write(u"Photos.txt"_s, "");
    EXPECT_EQ(ListConfigurations(folder.path()), (QStringList{u"Brindar"_s, u"Photos"_s}));
    EXPECT_FALSE(ConfigurationDirectory(folder.path(), u"Missing"_s).has_value());

    EXPECT_FALSE(CreateConfiguration(folder.path(), u"Archives"_s));
    EXPECT_TRUE(QFileInfo::exists(folder.file(u"Archives.ini"_s)));
    EXPECT_TRUE(CreateConfiguration(folder.path(), u"bad:name"_s).has_value());
    EXPECT_TRUE(CreateConfiguration(folder.path(), u" "_s).has_value());
    // Creating an existing configuration keeps its settings.
    EXPECT_FALSE(CreateConfiguration(folder.path(), u"Photos"_s));
    EXPECT_EQ(ConfigurationDirectory(folder.path(), u"Photos"_s), u"/home/me/Photos"_s);

    const QString chooser = folder.file(u"ChoixConfiguration.ini"_s);
    auto chosen = [&] { return IniDocument::Load(chooser).value(u"Configuration"_s, u"Nom"_s); };
    EXPECT_FALSE(SelectConfiguration(folder.path(), u"Archives"_s));
    EXPECT_EQ(chosen(), u"Archives");
    // Removing another configuration leaves the one in use; removing that one brings back the default name.
    EXPECT_FALSE(RemoveConfiguration(folder.path(), u"Photos"_s, u"Archives"_s));
    EXPECT_FALSE(QFileInfo::exists(folder.file(u"Photos.ini"_s)));
    EXPECT_EQ(chosen(), u"Archives");
    EXPECT_FALSE(RemoveConfiguration(folder.path(), u"Archives"_s, u"Archives"_s));
    EXPECT_EQ(chosen(), u"Brindar");
    // Removed files can be brought back from the trash.
    EXPECT_TRUE(QFileInfo::exists(trash.file(u"Trash/files/Photos.ini"_s)));
    EXPECT_TRUE(QFileInfo::exists(trash.file(u"Trash/files/Archives.ini"_s)));

    // Conditions files follow the same rules under their own extension and chooser key.
    folder.write(u"Brindar.prp"_s, "");
    EXPECT_FALSE(CreateConditions(folder.path(), u"Invoices"_s));
    EXPECT_TRUE(CreateConditions(folder.path(), u"a?b"_s).has_value());
    EXPECT_EQ(ListConditions(folder.path()), (QStringList{u"Brindar"_s, u"Invoices"_s}));
    EXPECT_EQ(ListConfigurations(folder.path()), (QStringList{u"Brindar"_s}));
    WriteSettings(QString(), chooser, SettingsChange().set(key::NomConditions, u"Invoices"_s));
    EXPECT_FALSE(RemoveConditions(folder.path(), u"Invoices"_s, u"Invoices"_s));
    EXPECT_EQ(ListConditions(folder.path()), QStringList{u"Brindar"_s});
    EXPECT_EQ(IniDocument::Load(chooser).value(u"Configuration"_s, u"NomConditions"_s), u"Brindar");
    qunsetenv("XDG_DATA_HOME");
}

TEST(Session, StartUpFollowsTheChooserAndTheConfiguration)
{
    TempFolder settings, shipped;
    settings.write(u"ChoixConfiguration.ini"_s, "[Configuration]\r\nNom=Photos\r\n");
    settings.write(u"Photos.ini"_s, "[Configuration]\r\nLangue=Test\r\n[Proprietes]\r\nTitre=1\r\n");
    settings.write(u"Other.ini"_s, "[Proprietes]\r\nAuteur=1\r\n");
    shipped.write(u"Language/Test.lng"_s, "[Metadata]\r\n4=Intitul\xE9\r\n5=Auteur\r\n");

    Session session = StartSession(settings.path(), shipped.path(), SystemInfo{});
    EXPECT_EQ(session.configurationPath, settings.file(u"Photos.ini"_s));
    EXPECT_EQ(session.columns.codeList, u":meta.TI");
    EXPECT_EQ(session.columns.columns[1].header, u" Intitul\u00E9");

    // The Language menu saves its choice at once and renames the columns.
    EXPECT_FALSE(session.chooseLanguage(u"English"_s));
    EXPECT_EQ(session.columns.columns[1].header, u" Title");
    EXPECT_EQ(IniDocument::Load(session.configurationPath).value(u"Configuration"_s, u"Langue"_s), u"English");
    EXPECT_TRUE(settings.read(u"Photos.ini"_s).contains("[Proprietes]\r\nTitre=1\r\n"));

    EXPECT_FALSE(session.selectConfiguration(u"Other"_s));
    EXPECT_EQ(session.columns.codeList, u":meta.AU");
    EXPECT_EQ(StartSession(settings.path(), shipped.path(), SystemInfo{}).chooser.nom, u"Other");
}

// A first start makes the configuration the chooser names from the shipped starter, in
// the locale's language; a folder that already holds a configuration is left alone.
TEST(ConfigurationFiles, StarterConfiguration)
{
    const struct {
        const char* locale;
        const char* chooser;  // content of the chooser, "" for none
        const char* existing; // a configuration already there, "" for none
        const char* created;  // the file expected, "" for none
        const char* langue;
    } cases[] = {
        {"fr_FR.UTF-8", "", "", "Brindar.ini", "French"},
        {"fr", "", "", "Brindar.ini", "French"},
        {"fr_CA.UTF-8", "", "", "Brindar.ini", "French"},
        {"en_GB.UTF-8", "", "", "Brindar.ini", "English"},
        {"C.UTF-8", "", "", "Brindar.ini", "English"},
        {"", "", "", "Brindar.ini", "English"},
        {"de_DE.UTF-8", "[Configuration]\r\nNom=Photos\r\n", "", "Photos.ini", "English"},
        {"fr_FR.UTF-8", "", "Other.ini", "", ""},
    };
    const QString data = brindar::test::SourceFile(u"share"_s);
    for (const auto& c : cases) {
        TempFolder settings;
        if (*c.chooser)
            settings.write(u"ChoixConfiguration.ini"_s, c.chooser);
        if (*c.existing)
            settings.write(QLatin1String(c.existing), "[Configuration]\r\nLangue=Test\r\n");
        const auto created = CreateStarterConfiguration(settings.path(), data, QLatin1String(c.locale));
        if (!*c.created) {
            EXPECT_FALSE(created.has_value()) << c.locale;
            EXPECT_EQ(settings.read(QLatin1String(c.existing)), "[Configuration]\r\nLangue=Test\r\n");
            continue;
        }
        ASSERT_EQ(created, settings.file(QLatin1String(c.created))) << c.locale;
        Session session = StartSession(settings.path(), data, SystemInfo{});
        EXPECT_EQ(session.configuration.langue, QLatin1String(c.langue)) << c.locale;
        EXPECT_TRUE(session.configuration.inclurePdf && session.configuration.inclureXmp) << c.locale;
        QStringList codes;
        for (const Column& column : session.columns.columns)
            codes << column.code;
        EXPECT_EQ(codes.size(), 10) << codes.join(u' ').toStdString();
        // Run again: nothing changes.
        EXPECT_FALSE(CreateStarterConfiguration(settings.path(), data, u"en"_s).has_value());
    }
}
