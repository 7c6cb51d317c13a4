// The column builder: which switches make which columns, in which order, with which flags.
#include "core/columnbuilder.h"
#include "core/inifile.h"
#include "core/language.h"

#include "support/tempfolder.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;

namespace {

ColumnSet Build(const QByteArray& ini, bool nt = true, const Captions& captions = Captions::English())
{
    return BuildColumns(IniDocument(ini), captions, nt);
}

}  // namespace

TEST(FieldTable, CodesAndSwitchesAreUniqueAndCaptioned)
{
    QStringList codes, keys;
    for (const FieldInfo& f : FieldTable()) {
        codes << QLatin1String(f.code);
        keys << QLatin1String(f.section) + u'/' + QString::fromLatin1(f.key).toUpper();
        // ".XY": never a user slot's ".P<n>".
        EXPECT_TRUE(codes.last().contains(QRegularExpression(u"^\\.[A-Z]{2}$"_s))) << f.code;
        EXPECT_FALSE(Captions::English().text(CaptionSection::Metadata, f.caption).isEmpty()) << f.code;
    }
    EXPECT_EQ(codes.removeDuplicates(), 0) << codes.join(u' ').toStdString();
    EXPECT_EQ(keys.removeDuplicates(), 0) << keys.join(u' ').toStdString();
}

TEST(ColumnBuilder, ColumnsFollowTheTableWhateverTheFileOrder)
{
    const ColumnSet set = Build("[OpenOffice]\nOOPrintedBy=1\n[Proprietes]\nTitre=1\nNomCourt=1\n[Personnelles]\ntextPerso3=\n"
                                "chkPerso3=1\ntextPerso13=Client\nchkPerso13=1\ntextPerso0=Projet\nchkPerso0=0\n");
    // User slots stand between the Office and the OpenOffice fields; one needs a name.
    EXPECT_EQ(set.codeList, u":meta.SN.TI.P13.PB");
    // The short name is padded by two blanks, every other column by one.
    EXPECT_EQ(QStringList({set.columns[0].header, set.columns[1].header, set.columns[2].header, set.columns[3].header}),
              QStringList({u"   Document"_s, u"  Short Name"_s, u" Title"_s, u" Client"_s}));
    EXPECT_EQ(set.columns[3].userSlot, 13);
    EXPECT_EQ(set.columnOf(u".TI"_s), 2);
    EXPECT_FALSE(set.isDisplayed(".SU"));
    EXPECT_TRUE(set.userChecked[3]);  // checked without a name: flagged, but no column
    EXPECT_FALSE(set.userChecked[0]);
    EXPECT_EQ(set.userNames[0], u"Projet");
    EXPECT_TRUE(Build("[XML]\nIPTCMacXML=1").macintoshAccents);
    EXPECT_FALSE(Build("[XML]\nIPTCMacXML=yes").macintoshAccents);

    const struct { QByteArray ini; bool nt; const char* codes; } rows[] = {
        {"[Proprietes]\nCommentairesMacintosh=1\n", true, ":meta.MC"},
        {"[Proprietes]\nCommentairesMacintosh=1\n", false, ":meta"},  // NT only
        // Only the exact text "1" shows a field (the reader drops quotes and blanks).
        {"[PDF]\nPDFVersion=\"1\"", true, ":meta.VE"},
        {"[PDF]\nPDFVersion=yes\n[Proprietes]\nTitre=01", true, ":meta"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Build(row.ini, row.nt).codeList, QLatin1String(row.codes)) << row.ini.constData();
}

TEST(ColumnBuilder, NumericColumnsByTheirCaption)
{
    const QByteArray ini = "[Proprietes]\nRevision=1\nPages=1\nSecurite=1\n";
    const ColumnSet en = Build(ini);
    EXPECT_FALSE(en.columns[en.columnOf(QStringLiteral(".RV"))].numeric);  // "Revision number"
    EXPECT_TRUE(en.columns[en.columnOf(QStringLiteral(".PA"))].numeric);
    const ColumnSet fr = Build(ini, true, LoadLanguage(u"French"_s, QString(), test::SourceFile(u"share"_s)));
    EXPECT_TRUE(fr.columns[fr.columnOf(QStringLiteral(".SE"))].numeric);  // "Sécurité"
}

TEST(ColumnBuilder, SavedColumnOrderOnlyForTheSameColumnCount)
{
    const struct { QByteArray columns; QList<int> order; } rows[] = {
        {"[Columns]\nNbColumns=3\n1=3\n2=1\n3=2\n", {2, 0, 1}},
        {"[Columns]\nNbColumns=4\n1=3\n2=1\n3=2\n4=4\n", {0, 1, 2}},  // another column set
        {"", {0, 1, 2}},
        {"[Columns]\nNbColumns=3\n1=3\n2=3\n3=2\n", {0, 1, 2}},  // not a permutation
        {"[Columns]\nNbColumns=3\n1=3\n2=9\n3=2\n", {0, 1, 2}},
        {"[Columns]\nNbColumns=3\n1=1\n2=2\n", {0, 1, 2}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Build("[Proprietes]\nTitre=1\nAuteur=1\n" + row.columns).htmlOrder, row.order) << row.columns.data();
}
