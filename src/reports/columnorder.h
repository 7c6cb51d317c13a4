// The column order of the reports: kept in section "Columns" of the configuration.
#pragma once

#include <QList>
#include <QString>
#include <optional>

namespace brindar {

// 0, 1, ... count - 1: the grid's own order.
QList<int> NaturalColumnOrder(int count);

// Writes "NbColumns" and one key per position ("1" = grid column of position 1, both
// counted from 1) to the configuration file. Returns the reason on failure. Reading is
// ReadColumnOrder (core/columnbuilder.h).
std::optional<QString> WriteColumnOrder(const QString& configurationPath, const QList<int>& order);

// The list editors' "Move up" (-1) and "Move down" (+1): swaps item `index` with its
// neighbour; nothing at either end, nothing for any other step.
template <typename T>
void MoveItem(QList<T>& list, int index, int step)
{
    const qsizetype other = qsizetype(index) + step;
    if ((step == -1 || step == 1) && index >= 0 && index < list.size() && other >= 0 && other < list.size())
        list.swapItemsAt(index, other);
}

// The order dialog's moves.
inline void MoveColumn(QList<int>& order, int index, int step) { MoveItem(order, index, step); }

}  // namespace brindar
