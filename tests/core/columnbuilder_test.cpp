// The column builder: which switches make which columns, in which order, with which flags.
#include "core/columnbuilder.h"
#include "core/inifile.h"
#include "core/language.h"

#include "support/tempfolder.h"

#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

using namespace brindar;

namespace {

ColumnSet Build(const QByteArray& ini, bool nt = true, const Captions& captions = Captions::English())
{
    return BuildColumns(IniDocument(ini), captions, nt);
}

QStringList Headers(const ColumnSet& set)
{
    QStringList headers;
    for (const Column& c : set.columns)
        headers << c.header;
    return headers;
}

}  // namespace

TEST(FieldTable, EveryRowIsUsable)
{
    const QRegularExpression code(QStringLiteral("^\\.[A-Z]{2}$"));
    QSet<QString> codes, keys;
    for (const FieldInfo& f : FieldTable()) {
        const QString c = QLatin1String(f.code);
        EXPECT_TRUE(code.match(c).hasMatch()) << f.code;
        EXPECT_FALSE(codes.contains(c)) << f.code;  // unique, and never a user slot's ".P<n>"
        codes.insert(c);
        const QString key = QLatin1String(f.section) + u'/' + QString::fromLatin1(f.key).toUpper();
        EXPECT_FALSE(keys.contains(key)) << f.key;
        keys.insert(key);
        EXPECT_FALSE(Captions::English().text(CaptionSection::Metadata, f.caption).isEmpty()) << f.code;
    }
    EXPECT_EQ(FieldTable().size(), 72u);
}

TEST(ColumnBuilder, NothingSwitchedOnLeavesTheDocumentColumn)
{
    const ColumnSet set = Build("");
    EXPECT_EQ(set.codeList, u":meta");
    EXPECT_EQ(Headers(set), QStringList{QStringLiteral("   Document")});
    EXPECT_EQ(set.readerFlags, kReaderNone);
    EXPECT_EQ(set.htmlOrder, QList<int>{0});
}

TEST(ColumnBuilder, ColumnsFollowTheTableWhateverTheFileOrder)
{
    const ColumnSet set = Build("[Proprietes]\r\nAuteur=1\r\nTitre=1\r\nNomCourt=1\r\n");
    EXPECT_EQ(set.codeList, u":meta.SN.TI.AU");
    EXPECT_EQ(Headers(set), (QStringList{QStringLiteral("   Document"), QStringLiteral("  Short Name"),
                                         QStringLiteral(" Title"), QStringLiteral(" Author")}));
    EXPECT_EQ(set.columnOf(QStringLiteral(".AU")), 3);
    EXPECT_TRUE(set.isDisplayed(".TI"));
    EXPECT_FALSE(set.isDisplayed(".SU"));
}

TEST(ColumnBuilder, OnlyTheTextOneShowsAField)
{
    struct Row { const char* value; bool shown; };
    for (const Row& row : {Row{"1", true}, Row{"1 ", true}, Row{"\"1\"", true}, Row{"true", false},
                           Row{"yes", false}, Row{"01", false}, Row{"", false}})
        EXPECT_EQ(Build(QByteArray("[PDF]\nPDFVersion=") + row.value).isDisplayed(".VE"), row.shown) << row.value;
}

TEST(ColumnBuilder, UserDefinedSlots)
{
    const ColumnSet set = Build("[Proprietes]\nTempsEdition=1\n[OpenOffice]\nOOPrintedBy=1\n"
                                "[Personnelles]\ntextPerso3=\nchkPerso3=1\n"
                                "textPerso13=Client\nchkPerso13=1\n"
                                "textPerso0=Projet\nchkPerso0=0\n");
    EXPECT_EQ(set.codeList, u":meta.ED.P13.PB");  // between the Office and the OpenOffice fields
    EXPECT_EQ(set.columns[2].header, u" Client");
    EXPECT_EQ(set.columns[2].userSlot, 13);
    EXPECT_TRUE(set.userChecked[3]);  // checked without a name: flagged, but no column
    EXPECT_FALSE(set.userChecked[0]);
    EXPECT_EQ(set.userNames[0], u"Projet");
}

TEST(ColumnBuilder, MacintoshCommentsOnlyOnTheNtPlatform)
{
    const QByteArray ini = "[Proprietes]\nCommentairesMacintosh=1\n";
    EXPECT_EQ(Build(ini, true).codeList, u":meta.MC");
    EXPECT_EQ(Build(ini, false).codeList, u":meta");
}

TEST(ColumnBuilder, ReaderFlagsFollowTheDisplayedColumns)
{
    struct Row { const char* ini; unsigned flags; };
    const Row rows[] = {
        {"[PDF]\nPDFEncrypted=1", kReaderPdf},
        {"[Proprietes]\nTitre=1", kReaderOpenOffice | kReaderHtml | kReaderPdf | kReaderIptc | kReaderXmp},
        {"[Proprietes]\nCompagnie=1\nOctets=1", kReaderNone},
        {"[IPTC]\nIPTCCity=1", kReaderIptc | kReaderXmp},
        {"[HTMLMeta]\nCoverage=1", kReaderHtml},
        {"[Personnelles]\ntextPerso1=Client\nchkPerso1=1", kReaderOpenOffice | kReaderHtml},
        {"[Personnelles]\ntextPerso1=\nchkPerso1=1", kReaderNone},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Build(row.ini).readerFlags, row.flags) << row.ini;
}

TEST(ColumnBuilder, TogglingAFieldChangesTheCodeList)
{
    const QByteArray base = "[Proprietes]\nTitre=1\n[XML]\nIPTCMacXML=1\n";
    const ColumnSet off = Build(base);
    const ColumnSet on = Build(base + "[OpenOffice]\nOOPrintedBy=1\n");
    EXPECT_NE(off.codeList, on.codeList);
    EXPECT_TRUE(off.macintoshAccents);
    EXPECT_FALSE(Build("[XML]\nIPTCMacXML=yes").macintoshAccents);
}

TEST(ColumnBuilder, NumericColumnsByTheirCaption)
{
    const QByteArray ini = "[Proprietes]\nRevision=1\nPages=1\nSecurite=1\nTitre=1\n";
    const ColumnSet en = Build(ini);
    EXPECT_FALSE(en.columns[en.columnOf(QStringLiteral(".RV"))].numeric);  // "Revision number"
    EXPECT_TRUE(en.columns[en.columnOf(QStringLiteral(".PA"))].numeric);
    EXPECT_TRUE(en.columns[en.columnOf(QStringLiteral(".SE"))].numeric);
    EXPECT_FALSE(en.columns[en.columnOf(QStringLiteral(".TI"))].numeric);

    const Captions fr = LoadLanguage(QStringLiteral("French"), QString(), brindar::test::SourceFile(QStringLiteral("share")));
    const ColumnSet french = Build(ini, true, fr);
    EXPECT_EQ(french.columns[0].header, u"   Document");
    EXPECT_TRUE(french.columns[french.columnOf(QStringLiteral(".SE"))].numeric);  // "Sécurité"
}

TEST(ColumnBuilder, SavedColumnOrderOnlyForTheSameColumnCount)
{
    const QByteArray three = "[Proprietes]\nTitre=1\nAuteur=1\n";
    struct Row { QByteArray columns; QList<int> order; };
    const Row rows[] = {
        {"[Columns]\nNbColumns=3\n1=3\n2=1\n3=2\n", {2, 0, 1}},
        {"[Columns]\nNbColumns=4\n1=3\n2=1\n3=2\n4=4\n", {0, 1, 2}},  // another column set
        {"", {0, 1, 2}},
        {"[Columns]\nNbColumns=3\n1=3\n2=3\n3=2\n", {0, 1, 2}},  // not a permutation
        {"[Columns]\nNbColumns=3\n1=3\n2=9\n3=2\n", {0, 1, 2}},
        {"[Columns]\nNbColumns=3\n1=1\n2=2\n", {0, 1, 2}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Build(three + row.columns).htmlOrder, row.order) << row.columns.constData();
}
