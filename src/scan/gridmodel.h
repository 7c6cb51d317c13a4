// The main grid without its widgets: columns, rows, widths, sorting, empty columns and
// highlighting, as the window shows them and the reports read them.
#pragma once

#include "core/columnbuilder.h"
#include "scan/gridrow.h"

#include <QList>
#include <QString>
#include <optional>

namespace brindar {

struct Configuration;

// The grid's sort modes, in its own numbering.
enum class SortMode { NumericAscending = 3, NumericDescending = 4, TextAscending = 7, TextDescending = 8 };

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

    // Rows. Each row gets exactly one cell per column: missing cells are empty, extra
    // ones are dropped. Appended rows go to the end, whatever the sort.
    int rowCount() const { return int(rows_.size()); }
    void appendRow(GridRow row);
    void appendRows(const QList<GridRow>& rows);
    void clearRows();
    const QList<GridRow>& rows() const { return rows_; }
    QString cell(int row, int column) const;
    bool hasMetadata(int row) const;

    // A click on a column's header: sorts by that column; the sort column clicked again
    // reverses the direction.
    void sortByColumn(int column);
    // After a scan: the configuration's "Sort" and "Up" ("Up" 1 = ascending), when "Sort"
    // names a column of this grid.
    void applySavedSort();
    int sortColumn() const { return sortColumn_; }  // -1 before any sort
    bool sortUp() const { return sortUp_; }
    std::optional<SortMode> sortMode() const;

    // "Display empty columns": cleared, every column but the document's whose data cells
    // are all empty is hidden and keeps its width; checked, the kept widths come back.
    void setDisplayEmptyColumns(bool display);
    bool displayEmptyColumns() const { return displayEmptyColumns_; }

    // "Surligner" and "SurlignerProprietesPersonnelles", changed from the menu.
    void setHighlightFilesWithMetadata(bool on) { surligner_ = on; }
    void setHighlightUserColumns(bool on) { surlignerProprietesPersonnelles_ = on; }
    bool isHighlighted(int row, int column) const;

private:
    void sortRows();
    void hideEmptyColumns();

    QList<Column> columns_;
    QList<int> widths_;
    QList<bool> hidden_;  // hidden as empty while empty columns are not displayed
    QList<GridRow> rows_;
    std::optional<int> savedSort_;
    std::optional<int> savedUp_;
    int sortColumn_ = -1;
    bool sortUp_ = true;
    bool displayEmptyColumns_ = true;
    bool surligner_ = true;
    bool surlignerProprietesPersonnelles_ = true;
};

}  // namespace brindar
