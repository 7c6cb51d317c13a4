// The HTML reports: the page of the grid shown, and the page of a list of reports, both
// built from the same table writer.
#pragma once

#include "reports/reportcontext.h"
#include "scan/gridmodel.h"

#include <QLocale>
#include <QString>
#include <QStringList>
#include <atomic>
#include <functional>

namespace brindar {

// The header row's colour, "RRGGBB" from `CouleurTitre` (blue-green-red), with the
// one-time "00" padding of short values kept.
QString HeaderColour(qint32 couleurTitre);

// CR LF and the control characters 1, 2, 3, 12, 21, 27, 28 become blanks, code 150 "-",
// then & " < > are escaped.
QString EscapeCellText(QString text);

// The table of the grid (rows, cells, header colour, sort glyph, links, numbers), as
// lines, in the column order `order`.
QStringList ReportTableLines(const GridModel& grid, const QList<int>& order, const QString& outputDirectory,
                             const ReportContext& context);

// The HTML report of the grid of `directory`, written into that folder:
// "<PrefixeTableau>[ <date> - <time>].html". Older reports of the prefix go first.
ReportOutcome WriteHtmlReport(const GridModel& grid, const QList<int>& order, const QString& directory,
                              const ReportContext& context);

// Whether a cell reads as a number by the locale's number rules: digits with the locale's
// signs, group and decimal separators and exponent, nothing else ("nan" and "inf" are words).
bool IsLocaleNumber(const QString& text, const QLocale& locale);

struct ReportsListProgress {
    int done = 0;       // folders reported
    int total = 0;      // active folders that exist
    QString directory;  // the folder being scanned
};

// The page of the active reports of `list` in `PathListeTableaux`: index, one heading and
// one table per folder that still exists. `scan` gives the grid of a folder. Without an
// output folder nothing is written and the outcome says so. Setting `stop` ends the page
// before its next folder: nothing is written and no older report goes.
ReportOutcome WriteReportsListPage(const ReportsList& list, const QList<int>& order, const ReportContext& context,
                                   const std::function<GridModel(const QString& directory)>& scan,
                                   const std::function<void(const ReportsListProgress&)>& onProgress = {},
                                   const std::atomic<bool>* stop = nullptr);

}  // namespace brindar
