// The grid widget.
#include "ui/gridview.h"

#include "ui/gridtablemodel.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

namespace brindar {

GridView::GridView(QWidget* parent) : QTableView(parent)
{
    setObjectName(QStringLiteral("gridFiles"));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setWordWrap(true);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    // Fixed heights: the view never measures a row, so 200,000 of them scroll freely.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->hide();
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &GridView::sortRequested);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (!applying_ && model_ && !isColumnHidden(column))
            model_->setWidth(column, width);
    });
    connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.isValid())
            emit rowActivated(index.row());
    });
    applyRowHeight();
}

void GridView::setGridModel(GridTableModel* model)
{
    model_ = model;
    setModel(model);
    connect(model, &GridTableModel::columnShown, this, [this](int column, bool shown) {
        applying_ = true;
        setColumnHidden(column, !shown);
        if (shown)
            setColumnWidth(column, model_->grid().width(column));
        applying_ = false;
    });
    connect(model, &QAbstractItemModel::modelReset, this, &GridView::applyWidths);
    applyWidths();
    connect(model, &QAbstractItemModel::layoutChanged, this, [this] {
        const int column = model_->grid().sortColumn();
        horizontalHeader()->setSortIndicatorShown(column >= 0);
        if (column >= 0)
            horizontalHeader()->setSortIndicator(column, model_->grid().sortUp() ? Qt::AscendingOrder
                                                                                 : Qt::DescendingOrder);
    });
}

void GridView::applyWidths()
{
    if (!model_)
        return;
    applying_ = true;
    const GridModel& grid = model_->grid();
    for (int column = 0; column < grid.columnCount(); ++column) {
        const int width = grid.width(column);
        setColumnHidden(column, width == 0);
        if (width > 0)
            setColumnWidth(column, width);
    }
    applying_ = false;
}

void GridView::setLinesPerRow(int lines)
{
    lines_ = std::clamp(lines, 1, 5);
    applyRowHeight();
}

void GridView::applyRowHeight()
{
    verticalHeader()->setDefaultSectionSize(lines_ * fontMetrics().lineSpacing() + 6);
    verticalHeader()->setMinimumSectionSize(fontMetrics().lineSpacing());
}

void GridView::setHorizontalScrollBarShown(bool shown)
{
    setHorizontalScrollBarPolicy(shown ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
}

QList<int> GridView::selectedRows() const
{
    QList<int> rows;
    if (!selectionModel())
        return rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows << index.row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

void GridView::selectRows(const QList<int>& rows)
{
    if (!selectionModel() || !model_)
        return;
    QItemSelection selection;
    for (int row : rows)
        if (row >= 0 && row < model_->rowCount())
            selection.select(model_->index(row, 0), model_->index(row, model_->columnCount() - 1));
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!rows.isEmpty() && rows.front() >= 0 && rows.front() < model_->rowCount()) {
        selectionModel()->setCurrentIndex(model_->index(rows.front(), 0), QItemSelectionModel::NoUpdate);
        scrollTo(model_->index(rows.front(), 0));
    }
}

void GridView::contextMenuEvent(QContextMenuEvent* event)
{
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid())
        emit contextMenuRequested(index.row(), event->globalPos());
}

void GridView::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && event->modifiers() == Qt::NoModifier &&
        currentIndex().isValid()) {
        emit rowActivated(currentIndex().row());
        return;
    }
    QTableView::keyPressEvent(event);
}

}  // namespace brindar
