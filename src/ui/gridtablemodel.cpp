// The grid as Qt's views see it.
#include "ui/gridtablemodel.h"

#include "core/configuration.h"

#include <QBrush>

namespace brindar {
namespace {

// The system's highlight colour is the selection's colour too: painted as a tint over
// white, highlighted rows stay apart from selected ones.
constexpr double kSystemTint = 0.35;
// User-defined columns, when rows are highlighted as well, in a lighter tint of the colour.
constexpr double kUserColumnTint = 0.45;
constexpr int kToolTipWidth = 80;

QColor Tint(const QColor& colour, double amount)
{
    const auto mix = [amount](int value) { return int(255 - (255 - value) * amount + 0.5); };
    return QColor(mix(colour.red()), mix(colour.green()), mix(colour.blue()));
}

QColor ReadableOn(const QColor& background)
{
    const double luminance = 0.299 * background.redF() + 0.587 * background.greenF() + 0.114 * background.blueF();
    return luminance > 0.55 ? QColor(Qt::black) : QColor(Qt::white);
}

// A tooltip that wraps long values instead of running off the screen.
QString ToolTipText(const QString& text)
{
    QStringList lines;
    for (const QString& line : text.split(u'\n')) {
        QString rest = line;
        while (rest.size() > kToolTipWidth) {
            qsizetype cut = rest.lastIndexOf(u' ', kToolTipWidth);
            if (cut <= 0)
                cut = kToolTipWidth;
            lines << rest.left(cut);
            rest = rest.mid(cut).trimmed();
        }
        lines << rest;
    }
    return lines.join(u'\n');
}

}  // namespace

QColor ColourOfWord(qint32 word, const QColor& systemColour)
{
    if (word < 0)
        return systemColour;
    return QColor(word & 0xFF, (word >> 8) & 0xFF, (word >> 16) & 0xFF);
}

qint32 WordOfColour(const QColor& colour)
{
    const QColor rgb = colour.toRgb();
    return qint32(rgb.red() | (rgb.green() << 8) | (rgb.blue() << 16));
}

GridTableModel::GridTableModel(QObject* parent) : QAbstractTableModel(parent), grid_(ColumnSet{}, Configuration{}) {}

void GridTableModel::reset(GridModel grid)
{
    beginResetModel();
    grid_ = std::move(grid);
    grid_.onColumnShown = [this](int column, bool shown) { emit columnShown(column, shown); };
    endResetModel();
}

void GridTableModel::appendRows(const QList<GridRow>& rows)
{
    if (rows.isEmpty())
        return;
    const int first = grid_.rowCount();
    beginInsertRows(QModelIndex(), first, first + int(rows.size()) - 1);
    grid_.appendRows(rows);
    endInsertRows();
}

void GridTableModel::clearRows()
{
    // Rows go without a model reset: the header keeps its widths and hidden columns.
    if (grid_.rowCount() > 0) {
        beginRemoveRows(QModelIndex(), 0, grid_.rowCount() - 1);
        grid_.clearRows();
        endRemoveRows();
    } else {
        grid_.clearRows();
    }
}

void GridTableModel::sortByColumn(int column)
{
    if (column >= 0 && column < grid_.columnCount())
        reorder([this, column] { grid_.sortByColumn(column); });
}

void GridTableModel::applySavedSort()
{
    reorder([this] { grid_.applySavedSort(); });
}

// The rows change places: every persistent index (selection, current row) moves with the
// file it stood on.
void GridTableModel::reorder(const std::function<void()>& sort)
{
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QList<int> ids;
    ids.reserve(before.size());
    for (const QModelIndex& index : before)
        ids << grid_.order().value(index.row(), -1);
    sort();
    QList<int> positionOf(grid_.rowCount());
    for (int row = 0; row < grid_.rowCount(); ++row)
        positionOf[grid_.order()[row]] = row;
    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i)
        after << (ids[i] >= 0 ? index(positionOf[ids[i]], before[i].column()) : QModelIndex());
    changePersistentIndexList(before, after);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void GridTableModel::replaceRow(int row, GridRow replacement)
{
    grid_.replaceRow(row, std::move(replacement));
    emit dataChanged(index(row, 0), index(row, grid_.columnCount() - 1));
}

void GridTableModel::removeGridRows(const QList<int>& rows)
{
    beginResetModel();
    grid_.removeRows(rows);
    endResetModel();
}

void GridTableModel::setWidth(int column, int width) { grid_.setWidth(column, width); }

void GridTableModel::setDisplayEmptyColumns(bool display) { grid_.setDisplayEmptyColumns(display); }

void GridTableModel::setHighlightFilesWithMetadata(bool on)
{
    grid_.setHighlightFilesWithMetadata(on);
    if (grid_.rowCount() > 0)
        emit dataChanged(index(0, 0), index(grid_.rowCount() - 1, grid_.columnCount() - 1), {Qt::BackgroundRole});
}

void GridTableModel::setHighlightUserColumns(bool on)
{
    grid_.setHighlightUserColumns(on);
    if (grid_.rowCount() > 0)
        emit dataChanged(index(0, 0), index(grid_.rowCount() - 1, grid_.columnCount() - 1), {Qt::BackgroundRole});
}

void GridTableModel::setHighlightColour(qint32 colourWord, const QColor& paletteHighlight)
{
    systemColour_ = colourWord < 0;
    colour_ = ColourOfWord(colourWord, paletteHighlight);
    if (grid_.rowCount() > 0)
        emit dataChanged(index(0, 0), index(grid_.rowCount() - 1, grid_.columnCount() - 1), {Qt::BackgroundRole});
}

void GridTableModel::setToolTips(bool on) { toolTips_ = on; }

void GridTableModel::setHeaderToolTip(const QString& text) { headerToolTip_ = text; }

QColor GridTableModel::highlightBackground(bool userColumn) const
{
    if (userColumn)
        return Tint(colour_, systemColour_ ? kSystemTint / 2 : kUserColumnTint);
    return systemColour_ ? Tint(colour_, kSystemTint) : colour_;
}

int GridTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : grid_.rowCount(); }

int GridTableModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : grid_.columnCount(); }

QVariant GridTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= grid_.rowCount() || index.column() >= grid_.columnCount())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return grid_.cell(index.row(), index.column());
    case Qt::ToolTipRole: {
        if (!toolTips_)
            return {};
        const QString text = grid_.cell(index.row(), index.column());
        return text.isEmpty() ? QVariant() : QVariant(ToolTipText(text));
    }
    case Qt::BackgroundRole:
    case Qt::ForegroundRole: {
        if (!grid_.isHighlighted(index.row(), index.column()))
            return {};
        // User-defined columns stand apart from highlighted rows when both are painted.
        const bool lighter = grid_.isUserColumn(index.column()) && grid_.highlightUserColumns() &&
                             grid_.highlightFilesWithMetadata();
        const QColor background = highlightBackground(lighter);
        return role == Qt::BackgroundRole ? QVariant(QBrush(background)) : QVariant(QBrush(ReadableOn(background)));
    }
    default:
        return {};
    }
}

QVariant GridTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= grid_.columnCount())
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role == Qt::DisplayRole)
        return grid_.header(section);
    if (role == Qt::ToolTipRole && !headerToolTip_.isEmpty())
        return headerToolTip_;
    return {};
}

}  // namespace brindar
