// Private-profile reading and writing: the Windows rules the configuration files rely on.
#include "core/inifile.h"

#include "support/tempfolder.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;

const QByteArray kSample = "; comment line\r\nOrphan=before any section\r\n[Configuration]\r\n"
                           "  Langue  =  French  \r\nlangue=second occurrence\r\n"
                           "Quoted=\"  kept blanks \"\r\nSingle='x'\r\nMismatched=\"x'\r\nOneQuote=\"\r\n"
                           "Equals=a=b\r\n;Commented=1\r\n\r\n"
                           "[ proprietes ]\r\nTitre=1\r\n"
                           "[CONFIGURATION]\r\nLate=only in the second section of that name\r\n";

TEST(IniFile, ReadsAsGetPrivateProfileString)
{
    const IniDocument ini(kSample);
    const struct { const char* section; const char* key; const char* expected; } rows[] = {
        {"configuration", "LANGUE", "French"},          // case-insensitive, blanks dropped, first key wins
        {"Configuration", "Quoted", "  kept blanks "},  // matching quotes removed, inner blanks kept
        {"Configuration", "Single", "x"}, {"Configuration", "Mismatched", "\"x'"}, {"Configuration", "OneQuote", "\""},
        {"Configuration", "Equals", "a=b"}, {"Configuration", "Commented", ""},
        {"Proprietes", "Titre", "1"},                    // blanks inside the brackets
        {"Configuration", "Late", ""},                   // the first section of a name wins
        {"Configuration", "Orphan", ""}, {"Missing", "Langue", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ini.value(QLatin1String(row.section), QLatin1String(row.key)), QLatin1String(row.expected))
            << row.section << "/" << row.key;
    EXPECT_FALSE(ini.contains(u"configuration"_s, u"commented"_s));
    EXPECT_TRUE(ini.contains(u"CONFIGURATION"_s, u"equals"_s));
    // Values come back through a 255-character buffer.
    EXPECT_EQ(IniDocument("[S]\nK=" + QByteArray(300, 'v')).value(u"S"_s, u"K"_s), QString(254, u'v'));

    // Binary garbage around a section does not hide it; a missing file reads as empty.
    QByteArray garbage;
    for (int i = 0; i < 4096; ++i)
        garbage.append(char((i * 7919) % 256));
    const IniDocument noisy(garbage + "\n[S]\nK=v\n" + garbage);
    EXPECT_EQ(noisy.value(u"S"_s, u"K"_s), u"v");
    EXPECT_EQ(noisy.value(u"Configuration"_s, u"Langue"_s), QString());
    EXPECT_EQ(IniDocument::Load(u"/nonexistent/Brindar.ini"_s).toBytes(), QByteArray());
}

TEST(IniFile, WritingChangesOneLineOrAddsOne)
{
    IniDocument sample(kSample);
    sample.setValue(u"CONFIGURATION"_s, u"LANGUE"_s, u"English"_s);
    EXPECT_EQ(sample.toBytes(), QByteArray(kSample).replace("  Langue  =  French  \r\n", "Langue=English\r\n"));

    // New keys join their section, new sections the end; a value is one line.
    IniDocument ini(QByteArray("[A]\nx=1\n\n[B]\ny=2"));
    ini.setValue(u"a"_s, u"z"_s, u"3"_s);
    ini.setValue(u"B"_s, u"w"_s, u"4"_s);
    ini.setValue(u"C"_s, u"v"_s, u"two\nlines"_s);
    EXPECT_EQ(ini.toBytes(), QByteArray("[A]\nx=1\nz=3\n\n[B]\ny=2\nw=4\n[C]\nv=two lines\n"));
    EXPECT_EQ(ini.value(u"A"_s, u"Z"_s), u"3");
}

TEST(IniFile, EncodingFollowsTheFileAndTheValues)
{
    const struct { QByteArray before; QString value; QByteArray after; } rows[] = {
        // Windows-1252 stays so while the values fit; one that does not turns the whole file into UTF-8.
        {"[S]\r\nA=caf\xE9\r\n", u"\u20AC"_s, "[S]\r\nA=caf\xE9\r\nB=\x80\r\n"},
        {"[S]\r\nA=caf\xE9\r\n", u"\u0100"_s, "[S]\r\nA=caf\xC3\xA9\r\nB=\xC4\x80\r\n"},
        // UTF-8 stays UTF-8, with its byte-order mark when it had one.
        {"\xEF\xBB\xBF[S]\r\nA=x\r\n", u"\u00E9"_s, "\xEF\xBB\xBF[S]\r\nA=x\r\nB=\xC3\xA9\r\n"},
        {"[S]\r\nA=\xC3\xA9\r\n", u"e"_s, "[S]\r\nA=\xC3\xA9\r\nB=e\r\n"},
    };
    for (const auto& row : rows) {
        IniDocument ini(row.before);
        ini.setValue(u"S"_s, u"B"_s, row.value);
        EXPECT_EQ(ini.toBytes(), row.after);
        EXPECT_EQ(IniDocument(row.after).value(u"S"_s, u"B"_s), row.value);
    }
}
