// The HTML reports: the page of the grid shown, and the page of a list of reports, both
// built from the same table writer.
#pragma once

#include "core/configuration.h"
#include "core/language.h"
#include "platform/systeminfo.h"
#include "reports/reportslist.h"
#include "reports/substitutions.h"
#include "scan/gridmodel.h"

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace brindar {

// What every report reads besides the grid.
struct ReportContext {
    const Configuration& configuration;
    const Captions& captions;
    const SystemInfo& system;
    const Substitutions& substitutions;
    const ReportsList& reportsList;
    QDateTime now = QDateTime::currentDateTime();
    bool webdings = false;      // the "Webdings" font is installed (the window knows)
    QLocale locale = QLocale::system();  // the number rules of numeric cells
};

struct ReportOutcome {
    QString path;                  // the report written
    std::optional<QString> error;  // the message to show instead: no file, empty list, write error
    bool nothingToReport = false;  // the error is "no file" / "empty list", not a failure to write
};

// The output folder of a report: the folder without a trailing "/" (the root gives "").
QString ReportOutputDirectory(const QString& directory);

// Deletes "<folder>/<prefix>*.<extension>" when the prefix is not empty and
// `EffacerAnciensTableaux` is set; errors are ignored.
void DeleteOldReports(const QString& folder, const Configuration& configuration, const QString& extension);

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

// What every report of one folder does first: with no file in the grid, the outcome
// carries the caption `noFileMessage` of [Main]; else the older reports of the prefix
// with this extension are deleted and the path "<folder>/<base name>.<extension>" chosen.
ReportOutcome BeginReport(const GridModel& grid, const QString& directory, const ReportContext& context,
                          int noFileMessage, const QString& extension);

// The HTML report of the grid of `directory`, written into that folder:
// "<PrefixeTableau>[ <date> - <time>].html". Older reports of the prefix go first.
ReportOutcome WriteHtmlReport(const GridModel& grid, const QList<int>& order, const QString& directory,
                              const ReportContext& context);

// The page of the active reports of `list` in `PathListeTableaux`: index, one heading and
// one table per folder that still exists. `scan` gives the grid of a folder.
ReportOutcome WriteReportsListPage(const ReportsList& list, const QList<int>& order, const ReportContext& context,
                                   const std::function<GridModel(const QString& directory)>& scan);

}  // namespace brindar
