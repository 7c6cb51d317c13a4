// The main grid without its widgets: columns, rows, widths, sorting, empty columns and
// highlighting, as the window shows them and the reports read them.
#pragma once

#include "core/columnbuilder.h"
#include "core/settings.h"
#include "scan/gridrow.h"

#include <QList>
#include <QSet>
#include <QString>
#include <functional>
#include <optional>

namespace brindar {

struct Configuration;

// The grid's sort modes, in its own numbering.
enum class SortMode { NumericAscending = 3, NumericDescending = 4, TextAscending = 7, TextDescending = 8 };

// Rows are kept in the order they arrived, each under a row id (its arrival index, kept
// until rows are removed); the grid shows them through a permutation, so a selection of
// ids follows its files through every sort. "Row" below is a position in the grid.
class GridModel {
public:
    // Widths of the columns the configuration names no "Largeur" for.
    static constexpr int kDefaultDocumentWidth = 200;
    static constexpr int kDefaultWidth = 100;

    // The columns of `columns` with the widths, saved sort and highlighting options of
    // `configuration`; no rows yet.
    GridModel(const ColumnSet& columns, const Configuration& configuration);

    // Columns.
    int columnCount() const { return int(columns_.size()); }
    QString header(int column) const;   // as shown, with its padding blanks
    QString caption(int column) const;  // without them
    bool isNumeric(int column) const;
    bool isUserColumn(int column) const;  // a user-defined property column
    // The width shown: 0 while the column is hidden as empty.
    int width(int column) const;
    // The width the user gave the column, kept while it is hidden: the one to save.
    int keptWidth(int column) const;
    void setWidth(int column, int width);
    // The columns whose shown width is above 0, in grid order.
    QList<int> visibleColumns() const;
    // Called with (column, shown) whenever a column is hidden because it has become
    // empty, or shown again because a value reached it.
    std::function<void(int column, bool shown)> onColumnShown;

    // Rows. Each row gets exactly one cell per column: missing cells are empty, extra
    // ones are dropped. Appended rows go to the end, whatever the sort.
    int rowCount() const { return int(order_.size()); }
    void appendRow(GridRow row);
    void appendRows(const QList<GridRow>& rows);
    void clearRows();
    const GridRow& row(int row) const { return rows_[order_[row]]; }
    QString cell(int row, int column) const;
    bool hasMetadata(int row) const;

    // Row ids and positions: order()[row] is the id shown at that row.
    const QList<int>& order() const { return order_; }
    int rowOfId(int id) const;  // -1 when no row has that id
    // Rename: the row at `row` takes new cells (the file renamed, read again) and keeps its
    // place until the next sort.
    void replaceRow(int row, GridRow replacement);
    // Delete: the rows at these positions go; every id above a removed one moves down.
    void removeRows(QList<int> rows);

    // A click on a column's header: sorts by that column; the sort column clicked again
    // reverses the direction.
    void sortByColumn(int column);
    // After a scan: the sort the user last chose in this grid, else the configuration's
    // "Sort" and "Up" ("Up" 1 = ascending) when "Sort" names a column of this grid.
    void applySavedSort();
    int sortColumn() const { return sortColumn_; }  // -1 before any sort
    bool sortUp() const { return sortUp_; }
    std::optional<SortMode> sortMode() const;

    // The grid's state as the configuration keeps it: "Largeur"n of every column (the
    // kept width), and "Sort" and "Up" once the grid has been sorted.
    SettingsChange stateChange() const;

    // "Display empty columns": cleared, every column but the document's whose data cells
    // are all empty is hidden and keeps its width; checked, the kept widths come back.
    void setDisplayEmptyColumns(bool display);
    bool displayEmptyColumns() const { return displayEmptyColumns_; }

    // "Surligner" and "SurlignerProprietesPersonnelles", changed from the menu.
    void setHighlightFilesWithMetadata(bool on) { surligner_ = on; }
    void setHighlightUserColumns(bool on) { surlignerProprietesPersonnelles_ = on; }
    bool highlightFilesWithMetadata() const { return surligner_; }
    bool highlightUserColumns() const { return surlignerProprietesPersonnelles_; }
    bool isHighlighted(int row, int column) const;

private:
    void sortRows();
    void hideEmptyColumns();
    void setHidden(int column, bool hidden);

    QList<Column> columns_;
    QList<int> widths_;
    QList<bool> hidden_;  // hidden as empty while empty columns are not displayed
    static constexpr int kSharedValueLength = 64;
    QList<QSet<QString>> shared_;  // per column: the short values the rows hold
    QList<GridRow> rows_;  // by id
    QList<int> order_;     // position -> id
    std::optional<int> savedSort_;
    std::optional<int> savedUp_;
    int sortColumn_ = -1;
    bool sortUp_ = true;
    bool displayEmptyColumns_ = true;
    bool surligner_ = true;
    bool surlignerProprietesPersonnelles_ = true;
};

}  // namespace brindar
