// The configuration-file dialog's rules: list, names, create, select, remove, save option.
#include "core/configurationfiles.h"
#include "core/inifile.h"
#include "core/session.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::TempFolder;

TEST(ConfigurationFiles, NamesWithForbiddenCharactersAreRefused)
{
    for (const char* name : {"a\\b", "a/b", "a:b", "a*b", "a?b", "a\"b", "a<b", "a>b", "a|b"})
        EXPECT_TRUE(HasForbiddenCharacters(QLatin1String(name))) << name;
    for (const char* name : {"Brindar", "Photos 2026", "été", "a.b"})
        EXPECT_FALSE(HasForbiddenCharacters(QString::fromUtf8(name))) << name;
}

TEST(ConfigurationFiles, ListCreateSelectRemove)
{
    TempFolder folder;
    folder.write(QStringLiteral("choixconfiguration.INI"), "[Configuration]\r\nNom=Photos\r\n");
    folder.write(QStringLiteral("Photos.ini"), "[Configuration]\r\nRepertoire=/home/me/Photos\r\n");
    folder.write(QStringLiteral("Brindar.ini"), "");
    folder.write(QStringLiteral("Photos.txt"), "");
    folder.write(QStringLiteral("Language/French.lng"), "");

    EXPECT_EQ(ListConfigurations(folder.path()), (QStringList{QStringLiteral("Brindar"), QStringLiteral("Photos")}));
    EXPECT_EQ(ConfigurationDirectory(folder.path(), QStringLiteral("Photos")), QStringLiteral("/home/me/Photos"));
    EXPECT_FALSE(ConfigurationDirectory(folder.path(), QStringLiteral("Missing")).has_value());

    EXPECT_FALSE(CreateConfiguration(folder.path(), QStringLiteral("Archives")));
    EXPECT_TRUE(QFileInfo::exists(folder.file(QStringLiteral("Archives.ini"))));
    EXPECT_TRUE(CreateConfiguration(folder.path(), QStringLiteral("bad:name")).has_value());
    EXPECT_TRUE(CreateConfiguration(folder.path(), QStringLiteral(" ")).has_value());
    // Creating an existing configuration keeps its settings.
    EXPECT_FALSE(CreateConfiguration(folder.path(), QStringLiteral("Photos")));
    EXPECT_EQ(ConfigurationDirectory(folder.path(), QStringLiteral("Photos")), QStringLiteral("/home/me/Photos"));

    const QString chooser = folder.file(QStringLiteral("ChoixConfiguration.ini"));
    EXPECT_FALSE(SelectConfiguration(folder.path(), QStringLiteral("Archives")));
    EXPECT_EQ(IniDocument::Load(chooser).value(QStringLiteral("Configuration"), QStringLiteral("Nom")), u"Archives");

    // Removing another configuration leaves the one in use.
    EXPECT_FALSE(RemoveConfiguration(folder.path(), QStringLiteral("Photos"), QStringLiteral("Archives")));
    EXPECT_FALSE(QFileInfo::exists(folder.file(QStringLiteral("Photos.ini"))));
    EXPECT_EQ(IniDocument::Load(chooser).value(QStringLiteral("Configuration"), QStringLiteral("Nom")), u"Archives");
    // Removing the one in use brings back the default name.
    EXPECT_FALSE(RemoveConfiguration(folder.path(), QStringLiteral("Archives"), QStringLiteral("Archives")));
    EXPECT_EQ(IniDocument::Load(chooser).value(QStringLiteral("Configuration"), QStringLiteral("Nom")), u"Brindar");
}

TEST(ConfigurationFiles, CompanionsShareTheBaseName)
{
    EXPECT_EQ(ConfigurationPath(QStringLiteral("/s"), QStringLiteral("Photos")), u"/s/Photos.ini");
    EXPECT_EQ(ReportsListPath(QStringLiteral("/s"), QStringLiteral("Photos")), u"/s/Photos.txt");
    EXPECT_EQ(SubstitutionsPath(QStringLiteral("/s"), QStringLiteral("Photos")), u"/s/Photos.pat");
}

TEST(Session, StartUpFollowsTheChooserAndTheConfiguration)
{
    TempFolder settings, shipped;
    settings.write(QStringLiteral("ChoixConfiguration.ini"), "[Configuration]\r\nNom=Photos\r\n");
    settings.write(QStringLiteral("Photos.ini"), "[Configuration]\r\nLangue=Test\r\n[Proprietes]\r\nTitre=1\r\n");
    settings.write(QStringLiteral("Other.ini"), "[Proprietes]\r\nAuteur=1\r\n");
    shipped.write(QStringLiteral("Language/Test.lng"), "[Metadata]\r\n4=Intitul\xE9\r\n5=Auteur\r\n");

    Session session = StartSession(settings.path(), shipped.path(), SystemInfo{});
    EXPECT_EQ(session.configurationPath, settings.file(QStringLiteral("Photos.ini")));
    EXPECT_EQ(session.columns.codeList, u":meta.TI");
    EXPECT_EQ(session.columns.columns[1].header, QStringLiteral(" Intitul\u00E9"));

    // The Language menu saves its choice at once and renames the columns.
    EXPECT_FALSE(session.chooseLanguage(QStringLiteral("English")));
    EXPECT_EQ(session.columns.columns[1].header, u" Title");
    EXPECT_EQ(IniDocument::Load(session.configurationPath).value(QStringLiteral("Configuration"), QStringLiteral("Langue")),
              u"English");
    EXPECT_TRUE(settings.read(QStringLiteral("Photos.ini")).contains("[Proprietes]\r\nTitre=1\r\n"));

    EXPECT_FALSE(session.selectConfiguration(QStringLiteral("Other")));
    EXPECT_EQ(session.columns.codeList, u":meta.AU");
    EXPECT_EQ(StartSession(settings.path(), shipped.path(), SystemInfo{}).chooser.nom, u"Other");
}
