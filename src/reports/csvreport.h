// The CSV report: the grid as semicolon-separated text, for spreadsheets.
#pragma once

#include "reports/reportcontext.h"
#include "scan/gridmodel.h"

namespace brindar {

// The text of one grid row: fields in the column order, hidden columns left out, a ";"
// after every field that does not stand at the order's last position (so a hidden last
// column leaves every line ending with ";"). Quotes are doubled, and a field holding a
// quote or a ";" is enclosed in quotes; line breaks stay as they are.
QString CsvLine(const QStringList& cells, const GridModel& grid, const QList<int>& order);

// "<PrefixeTableau>[ <date> - <time>].csv" in `directory`; older CSV reports of the
// prefix go first.
ReportOutcome WriteCsvReport(const GridModel& grid, const QList<int>& order, const QString& directory,
                             const ReportContext& context);

}  // namespace brindar
