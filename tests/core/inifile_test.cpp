// Private-profile reading and writing: the Windows rules the configuration files rely on.
#include "core/inifile.h"

#include "support/tempfolder.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::TempFolder;

namespace {

const QByteArray kSample =
    "; comment line\r\n"
    "Orphan=before any section\r\n"
    "[Configuration]\r\n"
    "  Langue  =  French  \r\n"
    "langue=second occurrence\r\n"
    "Quoted=\"  kept blanks \"\r\n"
    "Single='x'\r\n"
    "Mismatched=\"x'\r\n"
    "OneQuote=\"\r\n"
    "Switch=1 \r\n"
    "Equals=a=b\r\n"
    "no equals sign here\r\n"
    ";Commented=1\r\n"
    "\r\n"
    "[ proprietes ]\r\n"
    "Titre=1\r\n"
    "[CONFIGURATION]\r\n"
    "Late=only in the second section of that name\r\n";

}  // namespace

TEST(IniFile, ReadsAsGetPrivateProfileString)
{
    const IniDocument ini(kSample);
    struct Row { const char* section; const char* key; const char* expected; };
    const Row rows[] = {
        {"configuration", "LANGUE", "French"},          // case-insensitive, blanks dropped
        {"Configuration", "Quoted", "  kept blanks "},  // matching quotes removed, inner blanks kept
        {"Configuration", "Single", "x"},
        {"Configuration", "Mismatched", "\"x'"},
        {"Configuration", "OneQuote", "\""},
        {"Configuration", "Switch", "1"},
        {"Configuration", "Equals", "a=b"},
        {"Configuration", "Commented", ""},
        {"Configuration", "no equals sign here", ""},
        {"Proprietes", "Titre", "1"},                    // blanks inside the brackets
        {"Configuration", "Late", ""},                   // the first section of a name wins
        {"Configuration", "Orphan", ""},
        {"Missing", "Langue", ""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ini.value(QLatin1String(row.section), QLatin1String(row.key)), QLatin1String(row.expected))
            << row.section << "/" << row.key;
    EXPECT_TRUE(ini.contains(QStringLiteral("configuration"), QStringLiteral("commented")) == false);
    EXPECT_TRUE(ini.contains(QStringLiteral("CONFIGURATION"), QStringLiteral("switch")));
}

TEST(IniFile, ValuesComeBackThroughA255CharacterBuffer)
{
    const QByteArray longValue(300, 'v');
    const IniDocument ini("[S]\nK=" + longValue + "\n");
    EXPECT_EQ(ini.value(QStringLiteral("S"), QStringLiteral("K")), QString(254, u'v'));
}

TEST(IniFile, WritingOneKeyKeepsEveryOtherLine)
{
    IniDocument ini(kSample);
    ini.setValue(QStringLiteral("CONFIGURATION"), QStringLiteral("LANGUE"), QStringLiteral("English"));
    QByteArray expected = kSample;
    expected.replace("  Langue  =  French  \r\n", "Langue=English\r\n");
    EXPECT_EQ(ini.toBytes(), expected);
}

TEST(IniFile, NewKeysJoinTheirSectionAndNewSectionsTheEnd)
{
    IniDocument ini(QByteArray("[A]\nx=1\n\n[B]\ny=2"));
    ini.setValue(QStringLiteral("a"), QStringLiteral("z"), QStringLiteral("3"));
    ini.setValue(QStringLiteral("B"), QStringLiteral("w"), QStringLiteral("4"));
    ini.setValue(QStringLiteral("C"), QStringLiteral("v"), QStringLiteral("two\nlines"));
    EXPECT_EQ(ini.toBytes(), QByteArray("[A]\nx=1\nz=3\n\n[B]\ny=2\nw=4\n[C]\nv=two lines\n"));
    EXPECT_EQ(ini.value(QStringLiteral("A"), QStringLiteral("Z")), u"3");
}

TEST(IniFile, EncodingFollowsTheFileAndTheValues)
{
    struct Row { QByteArray before; QString value; QByteArray after; };
    const Row rows[] = {
        // Windows-1252 stays Windows-1252 while the values fit.
        {"[S]\r\nA=caf\xE9\r\n", QStringLiteral("\u20AC"), "[S]\r\nA=caf\xE9\r\nB=\x80\r\n"},
        // A value that needs another character turns the whole file into UTF-8.
        {"[S]\r\nA=caf\xE9\r\n", QStringLiteral("\u0100"), "[S]\r\nA=caf\xC3\xA9\r\nB=\xC4\x80\r\n"},
        // UTF-8 stays UTF-8, with its byte-order mark when it had one.
        {"\xEF\xBB\xBF[S]\r\nA=x\r\n", QStringLiteral("\u00E9"), "\xEF\xBB\xBF[S]\r\nA=x\r\nB=\xC3\xA9\r\n"},
        {"[S]\r\nA=\xC3\xA9\r\n", QStringLiteral("e"), "[S]\r\nA=\xC3\xA9\r\nB=e\r\n"},
    };
    for (const Row& row : rows) {
        IniDocument ini(row.before);
        ini.setValue(QStringLiteral("S"), QStringLiteral("B"), row.value);
        EXPECT_EQ(ini.toBytes(), row.after);
        EXPECT_EQ(IniDocument(row.after).value(QStringLiteral("S"), QStringLiteral("B")), row.value);
    }
    EXPECT_EQ(IniDocument("[S]\nA=caf\xE9\n").value(QStringLiteral("S"), QStringLiteral("A")), u"caf\u00E9");
}

TEST(IniFile, WriteCreatesTheFileAndReplacesItWhole)
{
    TempFolder folder;
    const QString path = folder.file(QStringLiteral("new/Brindar.ini"));
    ASSERT_FALSE(WritePrivateProfileString(path, QStringLiteral("HTML"), QStringLiteral("PrefixeTableau"),
                                           QStringLiteral("Rapport")));
    ASSERT_FALSE(WritePrivateProfileString(path, QStringLiteral("HTML"), QStringLiteral("AjouterDate"),
                                           QStringLiteral("1")));
    EXPECT_EQ(folder.read(QStringLiteral("new/Brindar.ini")),
              QByteArray("[HTML]\r\nPrefixeTableau=Rapport\r\nAjouterDate=1\r\n"));
}

TEST(IniFile, AFailedWriteSaysWhyAndChangesNothing)
{
    TempFolder folder;
    // A folder where the file should be: nothing can replace it.
    QDir(folder.path()).mkpath(QStringLiteral("Brindar.ini"));
    const auto error = WritePrivateProfileString(folder.file(QStringLiteral("Brindar.ini")), QStringLiteral("S"),
                                                 QStringLiteral("K"), QStringLiteral("V"));
    ASSERT_TRUE(error.has_value());
    EXPECT_TRUE(error->contains(u"Brindar.ini"));
    EXPECT_TRUE(QFileInfo(folder.file(QStringLiteral("Brindar.ini"))).isDir());

    // A file where the folder should be.
    folder.write(QStringLiteral("plain"), "x");
    EXPECT_TRUE(WritePrivateProfileString(folder.file(QStringLiteral("plain/Brindar.ini")), QStringLiteral("S"),
                                          QStringLiteral("K"), QStringLiteral("V")));
    EXPECT_EQ(folder.read(QStringLiteral("plain")), "x");
}

TEST(IniFile, GarbageReadsAsMissingKeys)
{
    QByteArray garbage;
    for (int i = 0; i < 4096; ++i)
        garbage.append(char((i * 7919) % 256));
    const IniDocument ini(garbage + "\n[S]\nK=v\n" + garbage);
    EXPECT_EQ(ini.value(QStringLiteral("S"), QStringLiteral("K")), u"v");
    EXPECT_EQ(ini.value(QStringLiteral("Configuration"), QStringLiteral("Langue")), QString());
    EXPECT_EQ(IniDocument::Load(QStringLiteral("/nonexistent/Brindar.ini")).toBytes(), QByteArray());
}
