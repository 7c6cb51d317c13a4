// The grid as Qt's views see it: a table model over the engine's GridModel, holding no
// rule of its own. Headers, cells, sorting, empty columns and highlighting are the
// engine's; this class turns them into roles and keeps persistent indexes (selection,
// current row) on their files through every sort.
#pragma once

#include "scan/gridmodel.h"

#include <QAbstractTableModel>
#include <QColor>
#include <QList>
#include <functional>

namespace brindar {

class GridTableModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit GridTableModel(QObject* parent = nullptr);

    // A new set of columns (a new configuration, language or displayed fields): the model
    // is reset. The grid's onColumnShown is the model's from now on.
    void reset(GridModel grid);
    const GridModel& grid() const { return grid_; }

    // Rows of a running scan, appended at the end.
    void appendRows(const QList<GridRow>& rows);
    void clearRows();
    // A header click; the selection follows the files (layoutChanged with the persistent
    // indexes moved).
    void sortByColumn(int column);
    // After a scan: the configuration's saved sort.
    void applySavedSort();
    void replaceRow(int row, GridRow replacement);
    void removeGridRows(const QList<int>& rows);  // grid positions
    void setWidth(int column, int width);
    void setDisplayEmptyColumns(bool display);

    // Display options of the Options menu.
    void setHighlightFilesWithMetadata(bool on);
    void setHighlightUserColumns(bool on);
    // "CouleurSurlignage" as the configuration stores it (a colour word, negative for the
    // system's highlight colour), and the palette's highlight for that case.
    void setHighlightColour(qint32 colourWord, const QColor& paletteHighlight);
    void setToolTips(bool on);
    void setHeaderToolTip(const QString& text);  // [Main] 91 on every header

    // The background of a highlighted cell: the colour (a tint of it for the system's
    // colour), or a lighter tint for user-defined columns while rows are highlighted too.
    QColor highlightBackground(bool userColumn) const;

signals:
    // A column hidden as empty, or shown again.
    void columnShown(int column, bool shown);

public:
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    void reorder(const std::function<void()>& sort);

    GridModel grid_;
    QString headerToolTip_;
    QColor colour_;  // the highlighting colour as painted
    bool systemColour_ = true;
    bool toolTips_ = true;
};

// A colour word of the configuration (red in the low byte, then green, then blue) and
// back; a negative word (high bit set) is a system colour, for which `systemColour` holds.
QColor ColourOfWord(qint32 word, const QColor& systemColour);
qint32 WordOfColour(const QColor& colour);

}  // namespace brindar
