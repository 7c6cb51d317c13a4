// The settings dialogs as questions: each opens its dialog through the Prompter and
// returns the keys to write when it is confirmed.
#pragma once

#include "core/session.h"
#include "core/settings.h"
#include "reports/reportslist.h"

#include <optional>

class QWidget;

namespace brindar {

class Prompter;

// The displayed-files dialog: the eleven keys of the file selection.
std::optional<SettingsChange> AskFileSelection(QWidget* parent, Prompter& prompter, const Session& session);
// The displayed-metadata dialog: every switch of the field table, the user-defined slots,
// "IPTCMacXML" and the PDF and IPTC label keys.
std::optional<SettingsChange> AskDisplayedMetadata(QWidget* parent, Prompter& prompter, const Session& session);
// The order of the columns in reports: "NbColumns" and the positions.
std::optional<SettingsChange> AskColumnOrder(QWidget* parent, Prompter& prompter, const Session& session);

// The hyperlink path substitutions, saved to the configuration's ".pat" file when
// confirmed (the reports read that file each time).
void EditSubstitutions(QWidget* parent, Prompter& prompter, const Session& session);

// The HTML layout options: the nineteen keys of section "HTML", in their order.
std::optional<SettingsChange> AskHtmlOptions(QWidget* parent, Prompter& prompter, const Session& session);
// The folder of the lists of reports: "PathListeTableaux".
std::optional<SettingsChange> AskReportsListFolder(QWidget* parent, Prompter& prompter, const Session& session);

// The reports-list editor, its list saved to the ".txt" file when confirmed; `shown` is the
// folder the window shows. `goTo`: the folder to show after "Go to directory".
struct ReportsListEdit {
    ReportsList list;
    QString goTo;
};
std::optional<ReportsListEdit> EditReportsList(QWidget* parent, Prompter& prompter, const Session& session,
                                               const QString& shown);

}  // namespace brindar
