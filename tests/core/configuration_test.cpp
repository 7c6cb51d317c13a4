// The configuration loader: defaults, reading rules and the quirks the program keeps.
#include "core/configuration.h"
#include "core/inifile.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;

namespace {

Configuration Read(const QByteArray& text, bool nt = true)
{
    return ReadConfiguration(IniDocument(text), nt);
}

}  // namespace

TEST(Configuration, OnlyInclureToutZeroLeavesEveryOtherDefault)
{
    const Configuration c = Read("[Configuration]\r\nInclureTout=0\r\n");
    EXPECT_FALSE(c.inclureTout);
    EXPECT_TRUE(c.inclureCaches);
    EXPECT_EQ(c.couleurSurlignage, kSystemHighlightColour);
    EXPECT_EQ(c.couleurSurlignage, -2147483635);
    EXPECT_EQ(c.lignesTexte, 1);
    EXPECT_EQ(c.langue, u"English");
    EXPECT_EQ(c.prefixeTableau, u"Brindar");
    EXPECT_EQ(c.couleurTitre, 65535);
    EXPECT_FALSE(c.inclureOffice);
    EXPECT_TRUE(c.indexListes);
    EXPECT_FALSE(c.sort.has_value());
}

TEST(Configuration, BooleansFollowTheirOwnRules)
{
    struct Row { const char* line; bool Configuration::*member; bool expected; };
    const Row rows[] = {
        {"InclureTout=yes", &Configuration::inclureTout, false},
        {"InclureTout=1", &Configuration::inclureTout, true},
        {"InclureTout=", &Configuration::inclureTout, true},
        {"InclureTout=1 ", &Configuration::inclureTout, true},  // blanks around values are dropped
        {"InclureCaches=no", &Configuration::inclureCaches, true},
        {"InclureCaches=0", &Configuration::inclureCaches, false},
        {"InclurePDF=true", &Configuration::inclurePdf, false},
        {"InclurePDF=1", &Configuration::inclurePdf, true},
        // The loader can set these three on, never off.
        {"ToolTips=0", &Configuration::toolTips, true},
        {"Contextuel=0", &Configuration::contextuel, true},
        {"LocalTime=1", &Configuration::localTime, true},
        {"UseNTFSCache=1", &Configuration::useNtfsCache, true},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Read(QByteArray("[Configuration]\r\n") + row.line).*(row.member), row.expected) << row.line;
    EXPECT_TRUE(Read("[HTML]\r\nEffacerAnciensTableaux=0\r\n").effacerAnciensTableaux);
    EXPECT_FALSE(Read("[HTML]\r\nIndexType=0\r\n").indexType);
    // Off the NT platform the metadata cache is never used.
    EXPECT_FALSE(Read("[Configuration]\r\nUseNTFSCache=1\r\n", false).useNtfsCache);
}

TEST(Configuration, NumbersColoursAndLists)
{
    struct Row { const char* text; qint64 number; };
    const Row numbers[] = {
        {"12", 12}, {"  12abc", 12}, {"-5", -5}, {"+7", 7}, {"abc", 0}, {"", 0},
        {"-2147483635", -2147483635LL}, {"99999999999999999999999", 999999999999999999LL},
    };
    for (const Row& row : numbers)
        EXPECT_EQ(LeadingNumber(QLatin1String(row.text)), row.number) << row.text;

    struct Lines { const char* value; int lines; };
    for (const Lines& row : {Lines{"7", 1}, Lines{"0", 1}, Lines{"3", 3}, Lines{"4 lines", 4}, Lines{"-2", 1}, Lines{"x", 1}})
        EXPECT_EQ(Read(QByteArray("[Configuration]\nLignesTexte=") + row.value).lignesTexte, row.lines) << row.value;

    const Configuration c = Read("[Configuration]\n"
                                 "CouleurSurlignage=255\n"
                                 "ExtensionsSelected= doc , xls,pdf \n"
                                 "Largeur0=2500\nLargeur3=0\nLargeur7=wide\n"
                                 "Sort=2\nUp=1\n"
                                 "[HTML]\nCouleurTitre=4294967295\n"
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
    brindar::test::TempFolder folder;
    const QByteArray existing = "[HTML]\nPathListeTableaux=" + folder.path().toUtf8();
    EXPECT_EQ(Read(existing).pathListeTableaux, folder.path());
    EXPECT_EQ(Read("[HTML]\nPathListeTableaux=/no/such/folder").pathListeTableaux, QString());
}

TEST(Configuration, ChooserNamesTheConfigurationInUse)
{
    const Chooser defaults = ReadChooser(IniDocument());
    EXPECT_EQ(defaults.nom, u"Brindar");
    EXPECT_EQ(defaults.nomConditions, u"Brindar");
    EXPECT_FALSE(defaults.width.has_value());

    const Chooser chooser = ReadChooser(IniDocument("[MainWindow]\nWindowState=2\nWidth=800\n"
                                                    "[Configuration]\nNom=Photos\nNomConditions=../../etc/x\n"));
    EXPECT_EQ(chooser.nom, u"Photos");
    EXPECT_EQ(chooser.nomConditions, u"Brindar");  // a name that leaves the folder is refused
    EXPECT_EQ(chooser.windowState, 2);
    EXPECT_EQ(chooser.width, 800);
}
