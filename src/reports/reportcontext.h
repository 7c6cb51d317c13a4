// What every report of a folder reads besides the grid, and how every report begins:
// the no-file message, the older reports of the prefix, the file name.
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
#include <optional>

namespace brindar {

struct CaptionId;
struct Session;

// A snapshot: reports may be written on another thread while the window goes on.
struct ReportContext {
    Configuration configuration;
    Captions captions = Captions::English();
    SystemInfo system;
    Substitutions substitutions;
    ReportsList reportsList;
    QDateTime now = QDateTime::currentDateTime();
    bool webdings = false;               // the "Webdings" font is installed (the window knows)
    QLocale locale = QLocale::system();  // the number rules of numeric cells
};

// The context of the session's configuration, with its reports list and substitutions
// read from the configuration's companion files.
ReportContext ReportContextOf(const Session& session);

struct ReportOutcome {
    QString path;                  // the report written
    std::optional<QString> error;  // the message to show instead: no file, empty list, write error
    bool nothingToReport = false;  // the error is "no file" / "empty list", not a failure to write
    bool stopped = false;          // the user stopped it: nothing was written
};

// The output folder of a report: the folder without a trailing "/" (the root gives "").
QString ReportOutputDirectory(const QString& directory);

// Deletes the older reports of the prefix in `folder`: the files whose name is the prefix
// as typed (compared without regard to case, no character of it a wildcard), then
// anything, then "." and `extension`. Nothing when the prefix is empty or
// `EffacerAnciensTableaux` is off; errors are ignored.
void DeleteOldReports(const QString& folder, const Configuration& configuration, const QString& extension);

// What every report of one folder does first: with no file in the grid, the outcome
// carries the text `noFileMessage`; else the older reports of the prefix with this
// extension are deleted and the path "<folder>/<base name>.<extension>" chosen.
ReportOutcome BeginReport(const GridModel& grid, const QString& directory, const ReportContext& context,
                          const CaptionId& noFileMessage, const QString& extension);

}  // namespace brindar
