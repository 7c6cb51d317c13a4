// The configuration-file dialog's rules: list, names, create, select, remove, save option.
#include "core/configurationfiles.h"
#include "core/inifile.h"

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
