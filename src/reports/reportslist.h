// The current reports list: the folders reported together into one page, each with a
// title and an active flag, kept in the configuration's ".txt" companion file.
#pragma once

#include "core/language.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace brindar {

struct ReportEntry {
    QString directory;  // the key, compared case-insensitively
    QString title;      // the directory itself when the file gives none
    bool active = true;
    bool operator==(const ReportEntry&) const = default;
};
using ReportsList = QList<ReportEntry>;

// Reads the reports-list file (a missing file is an empty list). Each line holds two
// fields in the sequential-file "write" form: "directory|title",#TRUE# (or #FALSE#).
ReportsList ReadReportsList(const QString& path);
// Rewrites the file whole (Windows-1252, CR LF, temporary file then rename). Returns the
// reason on failure.
std::optional<QString> WriteReportsList(const QString& path, const ReportsList& list);

// The index of the entry for `directory` (case-insensitive), or -1.
int FindReport(const ReportsList& list, const QString& directory);
// The title of the report of `directory` when the list holds one, else the directory.
QString ReportTitle(const ReportsList& list, const QString& directory);

// The main window's "add the current directory": appends it active, titled with itself;
// false (list unchanged) when it is already there.
bool AddCurrentDirectory(ReportsList& list, const QString& directory);
// "Remove the current directory": false when the list does not hold it.
bool RemoveCurrentDirectory(ReportsList& list, const QString& directory);
// Moves entry `index` one place up (-1) or down (+1); nothing at either end.
void MoveReport(ReportsList& list, int index, int step);

// The add dialog's OK: `directory` alone, or each of its immediate sub-folders (hidden
// ones included, links to folders left out) that the list does not hold yet. Returns the
// message to show ([List] 18 "Directory already in list", 19 "No sub-directories in"
// CR LF directory, 20 "All directories already in list", 21 "Path is invalid" for a path
// that is not absolute), or nothing when entries were added.
std::optional<QString> AddDirectories(ReportsList& list, const QString& directory, bool subdirectories,
                                      const Captions& captions);

}  // namespace brindar
