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

// The order dialog's moves: swaps position `index` with the one above (-1) or below (+1);
// nothing at either end.
void MoveColumn(QList<int>& order, int index, int step);

}  // namespace brindar
