// The CSV report, one line per grid row in the reports' column order.
#include "reports/csvreport.h"

#include "core/atomicfile.h"
#include "core/captionids.h"
#include "core/codepage.h"

namespace brindar {

QString CsvLine(const QStringList& cells, const GridModel& grid, const QList<int>& order)
{
    QString line;
    for (qsizetype p = 0; p < order.size(); ++p) {
        const int column = order[p];
        if (column < 0 || column >= grid.columnCount() || grid.width(column) == 0)
            continue;
        QString field = column < cells.size() ? cells[column] : QString();
        field.replace(u'"', QStringLiteral("\"\""));
        if (field.contains(u'"') || field.contains(u';'))
            field = u'"' + field + u'"';
        if (p != order.size() - 1)
            field += u';';
        line += field;
    }
    return line;
}

ReportOutcome WriteCsvReport(const GridModel& grid, const QList<int>& order, const QString& directory,
                             const ReportContext& context)
{
    ReportOutcome outcome = BeginReport(grid, directory, context, caption::NoFileNoCsvReport, QStringLiteral("csv"));
    if (outcome.error)
        return outcome;
    QStringList headers;
    for (int column = 0; column < grid.columnCount(); ++column)
        headers << grid.header(column);
    QByteArray bytes = EncodeWin1252(CsvLine(headers, grid, order)) + "\r\n";
    for (int row = 0; row < grid.rowCount(); ++row)
        bytes += EncodeWin1252(CsvLine(grid.row(row).cells, grid, order)) + "\r\n";
    outcome.error = WriteFileAtomically(outcome.path, bytes);
    return outcome;
}

}  // namespace brindar
