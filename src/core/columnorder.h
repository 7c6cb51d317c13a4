// The column order of the reports, kept in section "Columns" of the configuration.
#pragma once

#include "core/settings.h"

#include <QList>
#include <QString>
#include <optional>

namespace brindar {

class IniDocument;

// 0, 1, ... count - 1: the grid's own order.
QList<int> NaturalColumnOrder(int count);

// The saved order (position -> grid column) when "NbColumns" equals `count` and the
// position keys form a permutation of the columns; the natural order otherwise.
QList<int> ReadColumnOrder(const IniDocument& configuration, int count);

// The keys that store `order`: "NbColumns" and one key per position ("1" = the grid
// column of position 1, both counted from 1). Nothing when `order` is not an
// arrangement of its columns, which would never read back.
std::optional<SettingsChange> ColumnOrderChange(const QList<int>& order);

// The list editors' "Move up" (-1) and "Move down" (+1): swaps item `index` with its
// neighbour; nothing at either end, nothing for any other step.
template <typename T>
void MoveItem(QList<T>& list, int index, int step)
{
    const qsizetype other = qsizetype(index) + step;
    if ((step == -1 || step == 1) && index >= 0 && index < list.size() && other >= 0 && other < list.size())
        list.swapItemsAt(index, other);
}

}  // namespace brindar
