// The column order of the reports: the natural order, and its stored form read and written.
#include "core/columnorder.h"

#include "core/configuration.h"
#include "core/inifile.h"

namespace brindar {

QList<int> NaturalColumnOrder(int count)
{
    QList<int> order;
    for (int i = 0; i < count; ++i)
        order.append(i);
    return order;
}

QList<int> ReadColumnOrder(const IniDocument& configuration, int count)
{
    const QList<int> natural = NaturalColumnOrder(count);
    if (!configuration.contains(key::NbColumns) || LeadingNumber(configuration.value(key::NbColumns)) != count)
        return natural;
    QList<int> order(count);
    QList<bool> seen(count, false);
    for (int p = 0; p < count; ++p) {
        const qint64 column = LeadingNumber(configuration.value(key::ColumnAt, p + 1)) - 1;
        // A hand-edited section that is not a permutation would make reports skip or
        // repeat columns: the natural order is shown instead.
        if (column < 0 || column >= count || seen[column])
            return natural;
        seen[column] = true;
        order[p] = int(column);
    }
    return order;
}

std::optional<SettingsChange> ColumnOrderChange(const QList<int>& order)
{
    QList<bool> seen(order.size(), false);
    for (int column : order) {
        if (column < 0 || column >= order.size() || seen[column])
            return std::nullopt;
        seen[column] = true;
    }
    // Keys of a longer order stored before stay: they are never read with this count.
    SettingsChange change;
    change.setNumber(key::NbColumns, order.size());
    for (int p = 0; p < order.size(); ++p)
        change.setNumber(key::ColumnAt, p + 1, order[p] + 1);
    return change;
}

}  // namespace brindar
