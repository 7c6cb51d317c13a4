// The column order of the reports: stored in section "Columns", read back, and moved.
#include "core/columnorder.h"

#include "core/inifile.h"
#include "core/settings.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::TempFolder;

TEST(ColumnOrder, WriteThenReadKeepsTheRestOfTheFile)
{
    TempFolder folder;
    const QByteArray head = "; Office documents\r\n[Configuration]\r\nRepertoire=/home/me/Docs\r\n[Columns]\r\n; chosen in the order dialog\r\n";
    const QByteArray tail = "[HTML]\r\nPrefixeTableau=Brindar\r\n";
    const QString path = folder.write(QStringLiteral("Office.ini"), head + "NbColumns=2\r\n1=2\r\n2=1\r\n" + tail);
    const auto WriteColumnOrder = [](const QString& file, const QList<int>& order) -> std::optional<QString> {
        const std::optional<SettingsChange> change = ColumnOrderChange(order);
        if (!change)
            return QStringLiteral("not an arrangement of the columns");
        return WriteSettings(file, QString(), *change);
    };
    ASSERT_FALSE(WriteColumnOrder(path, {2, 0, 3, 1}));
    EXPECT_EQ(ReadColumnOrder(IniDocument::Load(path), 4), QList<int>({2, 0, 3, 1}));
    // Stored counted from 1, in place of the old keys.
    EXPECT_EQ(folder.read(QStringLiteral("Office.ini")), head + "NbColumns=4\r\n1=3\r\n2=1\r\n3=4\r\n4=2\r\n" + tail);
    // A shorter order after the displayed fields changed; a missing file is created.
    ASSERT_FALSE(WriteColumnOrder(path, {1, 0}));
    EXPECT_EQ(ReadColumnOrder(IniDocument::Load(path), 2), QList<int>({1, 0}));
    ASSERT_FALSE(WriteColumnOrder(folder.file(QStringLiteral("New.ini")), {0, 2, 1}));
    EXPECT_EQ(ReadColumnOrder(IniDocument::Load(folder.file(QStringLiteral("New.ini"))), 3), QList<int>({0, 2, 1}));

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
    // Nothing at either end, out of the list, or for a step other than -1 and +1.
    const struct { int index, step; QList<int> after; } rows[] = {
        {0, 1, {1, 0, 2}}, {2, -1, {0, 2, 1}}, {0, -1, {0, 1, 2}}, {2, 1, {0, 1, 2}},
        {3, -1, {0, 1, 2}}, {-1, 1, {0, 1, 2}}, {0, 2, {0, 1, 2}}, {1, 0, {0, 1, 2}},
    };
    for (const auto& row : rows) {
        QList<int> order = NaturalColumnOrder(3);
        MoveItem(order, row.index, row.step);
        EXPECT_EQ(order, row.after) << row.index << " " << row.step;
    }
}
