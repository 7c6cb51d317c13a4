// The column order of the reports: stored in section "Columns", read back, and moved.
#include "reports/columnorder.h"

#include "core/columnbuilder.h"
#include "core/inifile.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::TempFolder;

TEST(ColumnOrder, WriteThenReadKeepsTheRestOfTheFile)
{
    TempFolder folder;
    const QByteArray before = "; Office documents\r\n[Configuration]\r\nRepertoire=/home/me/Docs\r\n"
                              "[Columns]\r\n; chosen in the order dialog\r\nNbColumns=2\r\n1=2\r\n2=1\r\n"
                              "[HTML]\r\nPrefixeTableau=Brindar\r\n";
    const QString path = folder.write(QStringLiteral("Office.ini"), before);

    const QList<int> order = {2, 0, 3, 1};
    ASSERT_FALSE(WriteColumnOrder(path, order));
    const IniDocument written = IniDocument::Load(path);
    EXPECT_EQ(ReadColumnOrder(written, 4), order);
    // Stored counted from 1.
    EXPECT_EQ(written.value(QStringLiteral("Columns"), QStringLiteral("1")), u"3");
    EXPECT_EQ(written.value(QStringLiteral("Columns"), QStringLiteral("NbColumns")), u"4");
    EXPECT_EQ(folder.read(QStringLiteral("Office.ini")),
              "; Office documents\r\n[Configuration]\r\nRepertoire=/home/me/Docs\r\n"
              "[Columns]\r\n; chosen in the order dialog\r\nNbColumns=4\r\n1=3\r\n2=1\r\n3=4\r\n4=2\r\n"
              "[HTML]\r\nPrefixeTableau=Brindar\r\n");

    // The reset of the dialog, then a shorter order after the displayed fields changed.
    ASSERT_FALSE(WriteColumnOrder(path, NaturalColumnOrder(4)));
    EXPECT_EQ(ReadColumnOrder(IniDocument::Load(path), 4), (QList<int>{0, 1, 2, 3}));
    ASSERT_FALSE(WriteColumnOrder(path, {1, 0}));
    EXPECT_EQ(ReadColumnOrder(IniDocument::Load(path), 2), (QList<int>{1, 0}));

    // A missing file is created with the section alone.
    const QString fresh = folder.file(QStringLiteral("New.ini"));
    ASSERT_FALSE(WriteColumnOrder(fresh, {0, 2, 1}));
    EXPECT_EQ(ReadColumnOrder(IniDocument::Load(fresh), 3), (QList<int>{0, 2, 1}));

    // What is not an arrangement of the columns, or cannot be written, is refused and
    // the file stays as it was.
    const QByteArray kept = folder.read(QStringLiteral("Office.ini"));
    for (const QList<int>& bad : {QList<int>{0, 0, 1}, QList<int>{0, 3, 1}, QList<int>{-1, 0}})
        EXPECT_TRUE(WriteColumnOrder(path, bad).has_value());
    EXPECT_EQ(folder.read(QStringLiteral("Office.ini")), kept);
    folder.write(QStringLiteral("plain"), "x");
    EXPECT_TRUE(WriteColumnOrder(folder.file(QStringLiteral("plain/Office.ini")), {0}).has_value());
}

TEST(ColumnOrder, NaturalOrderAndMoves)
{
    EXPECT_EQ(NaturalColumnOrder(0), QList<int>{});
    EXPECT_EQ(NaturalColumnOrder(3), (QList<int>{0, 1, 2}));

    struct Row { int index, step; QList<int> after; };
    const Row rows[] = {
        {0, -1, {0, 1, 2}}, {2, 1, {0, 1, 2}}, {0, 1, {1, 0, 2}}, {2, -1, {0, 2, 1}},
        {1, -1, {1, 0, 2}}, {3, -1, {0, 1, 2}}, {-1, 1, {0, 1, 2}}, {0, 2, {0, 1, 2}},
    };
    for (const Row& row : rows) {
        QList<int> order = NaturalColumnOrder(3);
        MoveColumn(order, row.index, row.step);
        EXPECT_EQ(order, row.after) << row.index << " " << row.step;
    }
}
