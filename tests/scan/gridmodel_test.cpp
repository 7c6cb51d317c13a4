// The grid model: widths, sorting by header clicks and saved state, empty columns, highlighting.
#include "scan/gridmodel.h"

#include "core/configuration.h"
#include "core/inifile.h"
#include "core/language.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;

namespace {

// Document, Title (.TI), Revision number (.RV), Pages (.PA), Client (user slot 2).
// "Revision number" is not one of the numeric captions, "Pages" is.
ColumnSet Columns()
{
    return BuildColumns(IniDocument("[Proprietes]\r\nPages=1\r\nRevision=1\r\nTitre=1\r\n"
                                    "[Personnelles]\r\ntextPerso2=Client\r\nchkPerso2=1\r\n"),
                        Captions::English(), true);
}

Configuration Options(const QByteArray& keys)
{
    return ReadConfiguration(IniDocument("[Configuration]\r\n" + keys), true);
}

// name, title, revision, pages, client; rows a and b have metadata.
GridModel Filled(const QByteArray& keys = "")
{
    GridModel grid(Columns(), Options(keys));
    grid.appendRows({
        {{"a", "10", "2", "9", "b"}, true},
        {{"b", "9", "10", "10", "B"}, true},
        {{"c", "", "", "", "a"}, false},
    });
    grid.appendRow({{"d", "Zeta", "3", "9 (draft)", ""}, false});
    grid.appendRow({{"e", "apple", "1", "-1", "A"}, false});
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

TEST(GridModel, ColumnsAndWidths)
{
    const GridModel grid = Filled("Largeur0=250\r\nLargeur2=0\r\nLargeur4=-1\r\n");
    ASSERT_EQ(grid.columnCount(), 5);
    EXPECT_EQ(grid.header(0), u"   Document");
    EXPECT_EQ(grid.header(3), u" Pages");
    EXPECT_EQ(grid.caption(4), u"Client");
    EXPECT_EQ(QList<bool>({grid.isNumeric(2), grid.isNumeric(3)}), QList<bool>({false, true}));
    EXPECT_EQ(QList<int>({grid.width(0), grid.width(1), grid.width(2), grid.width(4)}), QList<int>({250, 100, 0, 100}));
    EXPECT_EQ(grid.visibleColumns(), QList<int>({0, 1, 3, 4}));
    EXPECT_EQ(grid.rowCount(), 5);
    EXPECT_EQ(grid.cell(3, 1), u"Zeta");
    EXPECT_EQ(grid.cell(5, 1), QString());
}

TEST(GridModel, HeaderClicksSort)
{
    const struct {
        QList<int> clicks;
        const char* order;
        std::optional<SortMode> mode;
    } cases[] = {
        // Pages sorts by number (9 before 10, empty as 0); equal numbers keep their order.
        {{3}, "eca*db*", SortMode::NumericAscending},
        {{3, 3}, "b*a*dce", SortMode::NumericDescending},
        {{3, 3, 3}, "eca*db*", SortMode::NumericAscending},
        // Title sorts as text, case-sensitively: "10" before "9", "Zeta" before "apple".
        {{1}, "ca*b*de", SortMode::TextAscending},
        // A new column keeps the direction of the last sort.
        {{3, 3, 1}, "edb*a*c", SortMode::TextDescending},
        // "Revision number" is not a numeric caption: "10" sorts before "2".
        {{2}, "ceb*a*d", SortMode::TextAscending},
        {{4}, "deb*ca*", SortMode::TextAscending},
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
    const struct {
        QByteArray keys;
        const char* order;
        int column;
        bool up;
    } cases[] = {
        {"Sort=3\r\nUp=0\r\n", "b*a*dce", 3, false},
        {"Sort=1\r\nUp=1\r\n", "ca*b*de", 1, true},
        {"Sort=1\r\n", "ca*b*de", 1, true},
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
    GridModel grid = Filled("Sort=3\r\nUp=0\r\n");
    grid.applySavedSort();
    grid.sortByColumn(3);
    EXPECT_EQ(Order(grid), u"eca*db*");
    EXPECT_TRUE(grid.sortUp());
}

TEST(GridModel, EmptyColumnsHideAndComeBackWithTheirWidths)
{
    GridModel grid(Columns(), Options("Largeur0=250\r\n"));
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
              QList<int>({250, 150, 100, 100, 100}));
}

TEST(GridModel, Highlighting)
{
    // Row 0 has metadata, row 2 has not; column 4 is the user-defined Client column.
    const struct {
        QByteArray keys;
        bool row0Title, row0Client, row2Title, row2Client;
    } cases[] = {
        {"", true, true, false, true},
        {"Surligner=0\r\n", false, true, false, true},
        {"SurlignerProprietesPersonnelles=0\r\n", true, true, false, false},
        {"Surligner=0\r\nSurlignerProprietesPersonnelles=0\r\n", false, false, false, false},
    };
    for (const auto& c : cases) {
        const GridModel grid = Filled(c.keys);
        EXPECT_EQ(QList<bool>({grid.isHighlighted(0, 1), grid.isHighlighted(0, 4), grid.isHighlighted(2, 1),
                               grid.isHighlighted(2, 4)}),
                  QList<bool>({c.row0Title, c.row0Client, c.row2Title, c.row2Client}))
            << c.keys.constData();
    }
    GridModel grid = Filled();
    grid.setHighlightFilesWithMetadata(false);
    grid.setHighlightUserColumns(false);
    EXPECT_FALSE(grid.isHighlighted(0, 4));
    EXPECT_FALSE(grid.isHighlighted(9, 4));
}
