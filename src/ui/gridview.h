// The grid widget: a table view over a GridTableModel with fixed row heights of
// "LignesTexte" text lines, wrapped cells, the widths of the engine's grid both ways, and
// the horizontal scrollbar option.
#pragma once

#include <QList>
#include <QTableView>

namespace brindar {

class GridTableModel;

class GridView final : public QTableView {
    Q_OBJECT
public:
    explicit GridView(QWidget* parent = nullptr);  // objectName "gridFiles"

    void setGridModel(GridTableModel* model);
    GridTableModel* gridModel() const { return model_; }

    void setLinesPerRow(int lines);          // 1..5
    void setHorizontalScrollBarShown(bool);  // "BarreHorizontale"
    // Column widths from the engine's grid (after a reset); user resizing goes back to it.
    void applyWidths();

    // Selected data rows, as grid positions, in grid order.
    QList<int> selectedRows() const;
    // Selects these rows (grid positions), the first one current.
    void selectRows(const QList<int>& rows);

signals:
    // A click on a header section: the window sorts (through the model).
    void sortRequested(int column);
    void rowActivated(int row);                    // double click or Enter
    void contextMenuRequested(int row, QPoint globalPos);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void applyRowHeight();

    GridTableModel* model_ = nullptr;
    int lines_ = 1;
    bool applying_ = false;  // widths set from the grid, not by the user
};

}  // namespace brindar
