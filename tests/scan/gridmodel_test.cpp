// The grid model: widths, sorting by header clicks and saved state, empty columns, highlighting.
#include "scan/gridmodel.h"

#include "core/configuration.h"
#include "core/inifile.h"
#include "core/language.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;

namespace {

// Columns Document, Title, Revision number, Pages (a numeric caption), Client (user slot 2); rows
// of name, title, revision, pages, client, where a and b have metadata.
GridModel Filled(const QByteArray& keys = "")
{
    GridModel grid(BuildColumns(IniDocument("[Proprietes]\r\nPages=1\r\nRevision=1\r\nTitre=1\r\n"
                                            "[Personnelles]\r\ntextPerso2=Client\r\nchkPerso2=1\r\n"),
                                Captions::English(), true),
                   ReadConfiguration(IniDocument("[Configuration]\r\n" + keys), true));
    grid.appendRows({{{"a", "10", "2", "9", "b"}, true}, {{"b", "9", "10", "10", "B"}, true}, {{"c", "", "", "", "a"}, false},
                     {{"d", "Zeta", "3", "9 (draft)", ""}, false}, {{"e", "apple", "1", "-1", "A"}, false}});
    return grid;
}

// The file names in row order, each with "*" when the row has metadata.
QString Order(const GridModel& grid)
{
    QString order;
    for (int r = 0; r < grid.rowCount(); ++r)
        order += grid.cell(r, 0) + (grid.hasMetadata(r) ? QStringLiteral("*") : QString());
    return order;
}

}  // namespace

TEST(GridModel, HeaderClicksSort)
{
    const struct { QList<int> clicks; const char* order; std::optional<SortMode> mode; } cases[] = {
        // Pages sorts by number (9 before 10, empty as 0); equal numbers keep their order.
        {{3}, "eca*db*", SortMode::NumericAscending},
        {{3, 3}, "b*a*dce", SortMode::NumericDescending},
        // Title sorts as text, case-sensitively: "10" before "9", "Zeta" before "apple".
        {{1}, "ca*b*de", SortMode::TextAscending},
        // A new column keeps the direction of the last sort.
        {{3, 3, 1}, "edb*a*c", SortMode::TextDescending},
        {{9}, "a*b*cde", std::nullopt},
    };
    for (const auto& c : cases) {
        GridModel grid = Filled();
        for (int column : c.clicks)
            grid.sortByColumn(column);
        EXPECT_EQ(Order(grid), QString::fromLatin1(c.order)) << c.clicks.size() << " clicks, last " << c.clicks.last();
        EXPECT_EQ(grid.sortMode(), c.mode) << c.order;
    }
}

TEST(GridModel, SavedSortIsAppliedAfterTheScan)
{
    const struct { QByteArray keys; const char* order; int column; bool up; } cases[] = {
        {"Sort=3\r\nUp=0\r\n", "b*a*dce", 3, false},
        {"Sort=1\r\n", "ca*b*de", 1, true},  // ascending without "Up"
        {"Sort=5\r\nUp=1\r\n", "a*b*cde", -1, true},
        {"Sort=-1\r\nUp=0\r\n", "a*b*cde", -1, true},
        {"Up=0\r\n", "a*b*cde", -1, true},
    };
    for (const auto& c : cases) {
        GridModel grid = Filled(c.keys);
        EXPECT_EQ(Order(grid), u"a*b*cde");  // nothing moves before the scan ends
        grid.applySavedSort();
        EXPECT_EQ(Order(grid), QString::fromLatin1(c.order)) << c.keys.constData();
        EXPECT_EQ(grid.sortColumn(), c.column) << c.keys.constData();
        EXPECT_EQ(grid.sortUp(), c.up) << c.keys.constData();
    }
}

TEST(GridModel, WidthsAndEmptyColumns)
{
    // A saved width of 0 hides the column; a negative one is the default width.
    GridModel grid = Filled("Largeur0=250\r\nLargeur2=0\r\nLargeur4=-1\r\n");
    EXPECT_EQ(QList<int>({grid.width(0), grid.width(1), grid.width(2), grid.width(4)}), QList<int>({250, 100, 0, 100}));
    EXPECT_EQ(grid.visibleColumns(), QList<int>({0, 1, 3, 4}));
    EXPECT_EQ(QList<QString>({grid.cell(3, 1), grid.cell(5, 1)}), QList<QString>({u"Zeta"_s, QString()}));

    grid.clearRows();
    grid.appendRows({{{"a.doc", "", "", "12", ""}, true}, {{"b.doc", "", "", "", ""}, false}});
    grid.setWidth(1, 150);
    grid.setDisplayEmptyColumns(false);
    EXPECT_EQ(grid.visibleColumns(), QList<int>({0, 3}));
    EXPECT_EQ(QList<int>({grid.width(1), grid.keptWidth(1)}), QList<int>({0, 150}));

    // A row that brings a title shows its column again, while Client stays hidden.
    grid.appendRow({{"c.doc", "Report"}, true});
    EXPECT_EQ(grid.visibleColumns(), QList<int>({0, 1, 3}));
    EXPECT_EQ(grid.width(1), 150);

    // A new scan starts with every column empty; the document column always shows.
    grid.clearRows();
    EXPECT_EQ(grid.visibleColumns(), QList<int>({0}));
    EXPECT_EQ(grid.width(0), 250);

    grid.setDisplayEmptyColumns(true);
    EXPECT_EQ(QList<int>({grid.width(0), grid.width(1), grid.width(2), grid.width(3), grid.width(4)}),
              QList<int>({250, 150, 0, 100, 100}));
}

TEST(GridModel, Highlighting)
{
    // Row 0 has metadata, row 2 has not; column 4 is the user-defined Client column.
    const struct { QByteArray keys; QList<bool> row0TitleClientRow2TitleClient; } cases[] = {
        {"", {true, true, false, true}},
        {"Surligner=0\r\n", {false, true, false, true}},
        {"SurlignerProprietesPersonnelles=0\r\n", {true, true, false, false}},
    };
    for (const auto& c : cases) {
        const GridModel grid = Filled(c.keys);
        EXPECT_EQ(QList<bool>({grid.isHighlighted(0, 1), grid.isHighlighted(0, 4), grid.isHighlighted(2, 1),
                               grid.isHighlighted(2, 4)}), c.row0TitleClientRow2TitleClient)
            << c.keys.constData();
    }
    EXPECT_FALSE(Filled().isHighlighted(9, 4));
}

TEST(GridModel, RowsKeepTheirIdsThroughSortsRenamesAndDeletes)
{
    GridModel grid = Filled();
    const auto idOf = [&](const char* name) {
        for (int row = 0; row < grid.rowCount(); ++row)
            if (grid.cell(row, 0) == QLatin1String(name))
                return grid.order()[row];
        return -1;
    };
    // A selection of ids follows its files through a sort.
    const int d = idOf("d");
    grid.sortByColumn(3);
    EXPECT_EQ(Order(grid), u"eca*db*");
    EXPECT_EQ(grid.cell(grid.rowOfId(d), 0), u"d");

    // A rename replaces the row in place (no resort) and shows a column that was empty.
    grid.setDisplayEmptyColumns(false);
    grid.removeRows({grid.rowOfId(idOf("e"))});
    QList<int> shown;
    grid.onColumnShown = [&](int column, bool visible) { shown << (visible ? column : -column); };
    grid.replaceRow(0, {{"zz.doc", "", "", "", "Z"}, true});
    EXPECT_EQ(Order(grid), u"zz.doc*a*db*");
    EXPECT_TRUE(shown.isEmpty());  // Client had a value already

    // Deleting rows moves every id above them down; deleting the last row with a title,
    // a revision and pages hides their columns.
    grid.removeRows({1, 3});
    EXPECT_EQ(Order(grid), u"zz.doc*d");
    EXPECT_EQ(grid.order(), (QList<int>{0, 1}));
    EXPECT_TRUE(shown.isEmpty());
    grid.removeRows({1});
    EXPECT_EQ(shown, (QList<int>{-1, -2, -3}));
    EXPECT_EQ(grid.visibleColumns(), (QList<int>{0, 4}));
    grid.appendRow({{"new.pdf", "Report"}, true});
    EXPECT_EQ(shown.last(), 1);
}

TEST(GridModel, StateIsSavedWithTheKeysItIsReadFrom)
{
    GridModel grid = Filled("Largeur1=150\r\nLargeur4=0\r\n");
    grid.setWidth(0, 260);
    grid.sortByColumn(3);
    grid.sortByColumn(3);
    const SettingsChange change = grid.stateChange();
    QByteArray keys;
    for (const SettingsChange::Entry& entry : change.entries()) {
        EXPECT_EQ(entry.section, u"Configuration");
        keys += (entry.key + u'=' + entry.value + QStringLiteral("\r\n")).toUtf8();
    }
    // What is saved reads back as the same widths and sort.
    GridModel again = Filled(keys);
    again.applySavedSort();
    EXPECT_EQ(QList<int>({again.width(0), again.width(1), again.width(2), again.width(4)}), QList<int>({260, 150, 100, 0}));
    EXPECT_EQ(again.sortColumn(), 3);
    EXPECT_FALSE(again.sortUp());
    EXPECT_EQ(Order(again), u"b*a*dce");
}
