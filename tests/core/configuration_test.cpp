// The configuration loader: defaults, reading rules and the quirks the program keeps.
#include "core/configuration.h"
#include "core/inifile.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;

static Configuration Read(const QByteArray& text, bool nt = true) { return ReadConfiguration(IniDocument(text), nt); }

TEST(Configuration, BooleansFollowTheirOwnRules)
{
    const struct { const char* line; bool Configuration::*member; bool expected; } rows[] = {
        {"InclureTout=yes", &Configuration::inclureTout, false},  // present: anything but "1" turns it off
        {"InclureTout=1", &Configuration::inclureTout, true},
        {"InclureTout=", &Configuration::inclureTout, true},
        {"InclureCaches=no", &Configuration::inclureCaches, true},  // only "0" turns it off
        {"InclureCaches=0", &Configuration::inclureCaches, false},
        {"InclurePDF=true", &Configuration::inclurePdf, false},  // only "1" turns it on
        {"UseNTFSCache=1", &Configuration::useNtfsCache, true},
        {"ToolTips=0", &Configuration::toolTips, true},  // the loader can set it on, never off
    };
    for (const auto& row : rows)
        EXPECT_EQ(Read(QByteArray("[Configuration]\r\n") + row.line).*(row.member), row.expected) << row.line;
    // Off the NT platform the metadata cache is never used.
    EXPECT_FALSE(Read("[Configuration]\r\nUseNTFSCache=1\r\n", false).useNtfsCache);
}

TEST(Configuration, NumbersColoursAndLists)
{
    const struct { const char* text; qint64 number; } numbers[] = {
        {"  12abc", 12}, {"-5", -5}, {"+7", 7}, {"abc", 0}, {"", 0}, {"99999999999999999999999", 999999999999999999LL},
    };
    for (const auto& row : numbers)
        EXPECT_EQ(LeadingNumber(QLatin1String(row.text)), row.number) << row.text;
    // One to five lines of text, else one.
    const struct { const char* value; int lines; } lines[] = {{"6", 1}, {"0", 1}, {"5 lines", 5}, {"x", 1}};
    for (const auto& row : lines)
        EXPECT_EQ(Read(QByteArray("[Configuration]\nLignesTexte=") + row.value).lignesTexte, row.lines) << row.value;

    const Configuration c = Read("[Configuration]\nCouleurSurlignage=255\nExtensionsSelected= doc , xls,pdf \n"
                                 "Largeur0=2500\nLargeur3=0\nLargeur7=wide\nSort=2\nUp=1\n[HTML]\nCouleurTitre=4294967295\n"
                                 "ImageEnTete=images/logo.final.PNG\nImagePied=noextension\n");
    EXPECT_EQ(c.couleurSurlignage, 255);
    EXPECT_EQ(c.couleurTitre, -1);  // a 32-bit colour word
    EXPECT_EQ(c.extensionsSelected, u"doc,xls,pdf");
    EXPECT_EQ(c.largeur, (QMap<int, int>{{0, 2500}, {3, 0}, {7, 0}}));
    EXPECT_EQ(c.sort, 2);
    EXPECT_EQ(c.up, 1);
    EXPECT_EQ(c.imageEnTeteExtension, u".PNG");
    EXPECT_EQ(c.imagePiedExtension, QString());
}

TEST(Configuration, AMissingFolderOfListsOfReportsIsIgnored)
{
    const brindar::test::TempFolder folder;
    EXPECT_EQ(Read("[HTML]\nPathListeTableaux=" + folder.path().toUtf8()).pathListeTableaux, folder.path());
    EXPECT_EQ(Read("[HTML]\nPathListeTableaux=/no/such/folder").pathListeTableaux, QString());
}

TEST(Configuration, ChooserNamesTheConfigurationInUse)
{
    const Chooser chooser = ReadChooser(IniDocument("[MainWindow]\nWindowState=2\nWidth=800\n"
                                                    "[Configuration]\nNom=Photos\nNomConditions=../../etc/x\n"));
    EXPECT_EQ(chooser.nom, u"Photos");
    EXPECT_EQ(chooser.nomConditions, u"Brindar");  // a name that leaves the folder is refused
    EXPECT_EQ(chooser.windowState, 2);
    EXPECT_EQ(chooser.width, 800);
}
