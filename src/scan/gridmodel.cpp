// The main grid's engine: rows, widths, sorting, empty columns and highlighting.
#include "scan/gridmodel.h"

#include "core/configuration.h"

#include <algorithm>

namespace brindar {

GridModel::GridModel(const ColumnSet& columns, const Configuration& configuration)
    : columns_(columns.columns),
      savedSort_(configuration.sort),
      savedUp_(configuration.up),
      surligner_(configuration.surligner),
      surlignerProprietesPersonnelles_(configuration.surlignerProprietesPersonnelles)
{
    for (int c = 0; c < columnCount(); ++c) {
        const int fallback = c == 0 ? kDefaultDocumentWidth : kDefaultWidth;
        // A negative width stands for the grid's default width.
        const int saved = configuration.largeur.value(c, -1);
        widths_.append(saved < 0 ? fallback : saved);
    }
    hidden_.fill(false, columnCount());
    shared_.resize(columnCount());
}

QString GridModel::header(int column) const
{
    return column >= 0 && column < columnCount() ? columns_[column].header : QString();
}

QString GridModel::caption(int column) const
{
    return column >= 0 && column < columnCount() ? columns_[column].caption : QString();
}

bool GridModel::isNumeric(int column) const
{
    return column >= 0 && column < columnCount() && columns_[column].numeric;
}

bool GridModel::isUserColumn(int column) const
{
    return column >= 0 && column < columnCount() && columns_[column].userSlot >= 0;
}

int GridModel::width(int column) const
{
    if (column < 0 || column >= columnCount() || hidden_[column])
        return 0;
    return widths_[column];
}

int GridModel::keptWidth(int column) const
{
    return column >= 0 && column < columnCount() ? widths_[column] : 0;
}

void GridModel::setWidth(int column, int width)
{
    if (column >= 0 && column < columnCount())
        widths_[column] = std::max(0, width);
}

QList<int> GridModel::visibleColumns() const
{
    QList<int> visible;
    for (int c = 0; c < columnCount(); ++c)
        if (width(c) > 0)
            visible.append(c);
    return visible;
}

void GridModel::setHidden(int column, bool hidden)
{
    if (hidden_[column] == hidden)
        return;
    hidden_[column] = hidden;
    if (onColumnShown)
        onColumnShown(column, !hidden);
}

void GridModel::appendRow(GridRow row)
{
    row.cells.resize(columnCount());
    // A folder repeats its values (the same application, author, producer on file after
    // file): each short value is kept once and shared by every row that holds it.
    for (int c = 1; c < columnCount(); ++c) {
        QString& cell = row.cells[c];
        if (cell.isEmpty() || cell.size() > kSharedValueLength)
            continue;
        const auto known = shared_[c].constFind(cell);
        if (known != shared_[c].cend())
            cell = *known;
        else
            shared_[c].insert(cell);
    }
    // While empty columns are hidden, a column that receives a value is empty no longer.
    if (!displayEmptyColumns_)
        for (int c = 1; c < columnCount(); ++c)
            if (hidden_[c] && !row.cells[c].isEmpty())
                setHidden(c, false);
    order_.append(int(rows_.size()));
    rows_.append(std::move(row));
}

void GridModel::appendRows(const QList<GridRow>& rows)
{
    for (const GridRow& row : rows)
        appendRow(row);
}

void GridModel::clearRows()
{
    rows_.clear();
    order_.clear();
    for (QSet<QString>& values : shared_)
        values.clear();
    if (!displayEmptyColumns_)
        hideEmptyColumns();
}

QString GridModel::cell(int row, int column) const
{
    if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount())
        return QString();
    return rows_[order_[row]].cells[column];
}

bool GridModel::hasMetadata(int row) const { return row >= 0 && row < rowCount() && rows_[order_[row]].hasMetadata; }

int GridModel::rowOfId(int id) const { return int(order_.indexOf(id)); }

void GridModel::replaceRow(int row, GridRow replacement)
{
    if (row < 0 || row >= rowCount())
        return;
    replacement.cells.resize(columnCount());
    rows_[order_[row]] = std::move(replacement);
    if (!displayEmptyColumns_)
        hideEmptyColumns();
}

void GridModel::removeRows(QList<int> rows)
{
    QList<bool> removed(rows_.size(), false);
    for (int row : rows)
        if (row >= 0 && row < rowCount())
            removed[order_[row]] = true;
    // Each id moves down by the number of removed ids below it.
    QList<int> newId(rows_.size(), -1);
    QList<GridRow> kept;
    for (int id = 0; id < rows_.size(); ++id) {
        if (removed[id])
            continue;
        newId[id] = int(kept.size());
        kept.append(std::move(rows_[id]));
    }
    QList<int> order;
    for (int id : std::as_const(order_))
        if (newId[id] >= 0)
            order.append(newId[id]);
    rows_ = std::move(kept);
    order_ = std::move(order);
    if (!displayEmptyColumns_)
        hideEmptyColumns();
}

SettingsChange GridModel::stateChange() const
{
    SettingsChange change;
    for (int c = 0; c < columnCount(); ++c)
        change.setNumber(key::Largeur, c, keptWidth(c));
    if (sortColumn_ >= 0) {
        change.setNumber(key::Sort, sortColumn_);
        change.setNumber(key::Up, sortUp_ ? 1 : 0);
    }
    return change;
}

void GridModel::sortByColumn(int column)
{
    if (column < 0 || column >= columnCount())
        return;
    // A new sort column keeps the current direction; only the sort column clicked again
    // reverses it.
    if (column == sortColumn_)
        sortUp_ = !sortUp_;
    sortColumn_ = column;
    sortRows();
}

void GridModel::applySavedSort()
{
    // A sort the user chose since the grid was made outlives the rows it sorted: the next
    // folder comes sorted the same way.
    if (sortColumn_ >= 0) {
        sortRows();
        return;
    }
    if (!savedSort_ || *savedSort_ < 0 || *savedSort_ >= columnCount())
        return;
    sortColumn_ = *savedSort_;
    // Without a saved "Up" the grid sorts ascending.
    sortUp_ = !savedUp_ || *savedUp_ == 1;
    sortRows();
}

std::optional<SortMode> GridModel::sortMode() const
{
    if (sortColumn_ < 0)
        return std::nullopt;
    if (isNumeric(sortColumn_))
        return sortUp_ ? SortMode::NumericAscending : SortMode::NumericDescending;
    return sortUp_ ? SortMode::TextAscending : SortMode::TextDescending;
}

void GridModel::sortRows()
{
    const int column = sortColumn_;
    QList<int>& order = order_;
    // Stable either way: rows that compare equal keep their order, in both directions.
    if (isNumeric(column)) {
        // The number the text begins with; an empty or wordy cell counts as 0.
        QList<qint64> keys(rows_.size());
        for (int id = 0; id < rows_.size(); ++id)
            keys[id] = LeadingNumber(rows_[id].cells[column]);
        if (sortUp_)
            std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return keys[a] < keys[b]; });
        else
            std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return keys[b] < keys[a]; });
    } else {
        // Case-sensitive, in character-code order, the same on every machine.
        auto less = [&](int a, int b) {
            return QString::compare(rows_[a].cells[column], rows_[b].cells[column], Qt::CaseSensitive) < 0;
        };
        if (sortUp_)
            std::stable_sort(order.begin(), order.end(), less);
        else
            std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return less(b, a); });
    }
}

void GridModel::setDisplayEmptyColumns(bool display)
{
    displayEmptyColumns_ = display;
    if (display)
        for (int c = 0; c < columnCount(); ++c)
            setHidden(c, false);
    else
        hideEmptyColumns();
}

void GridModel::hideEmptyColumns()
{
    // The document column is never hidden: every row has a file name.
    for (int c = 1; c < columnCount(); ++c)
        setHidden(c, std::all_of(rows_.cbegin(), rows_.cend(), [c](const GridRow& row) { return row.cells[c].isEmpty(); }));
}

bool GridModel::isHighlighted(int row, int column) const
{
    if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount())
        return false;
    return (surligner_ && rows_[order_[row]].hasMetadata) || (surlignerProprietesPersonnelles_ && isUserColumn(column));
}

}  // namespace brindar
