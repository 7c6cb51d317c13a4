// The column order of the reports: the natural order, its stored form and the order dialog's moves.
#include "reports/columnorder.h"

#include "core/atomicfile.h"
#include "core/inifile.h"

namespace brindar {

QList<int> NaturalColumnOrder(int count)
{
    QList<int> order;
    for (int i = 0; i < count; ++i)
        order.append(i);
    return order;
}

std::optional<QString> WriteColumnOrder(const QString& configurationPath, const QList<int>& order)
{
    // Only a permutation reads back (anything else brings the natural order back at the
    // next start), so nothing else is stored.
    QList<bool> seen(order.size(), false);
    for (int column : order) {
        if (column < 0 || column >= order.size() || seen[column])
            return QStringLiteral("The column order is not an arrangement of the %1 columns of the grid.")
                .arg(order.size());
        seen[column] = true;
    }

    // Every key changes in one rewrite, so the section is never left half old, half new;
    // keys of a longer order stored before stay, as they are never read with this count.
    QString error;
    std::optional<IniDocument> document = IniDocument::LoadForChange(configurationPath, &error);
    if (!document)
        return error;
    const QString section = QStringLiteral("Columns");
    document->setValue(section, QStringLiteral("NbColumns"), QString::number(order.size()));
    for (int p = 0; p < order.size(); ++p)
        document->setValue(section, QString::number(p + 1), QString::number(order[p] + 1));
    return WriteFileAtomically(configurationPath, document->toBytes());
}

}  // namespace brindar
