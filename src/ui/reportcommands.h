// The report commands' questions and answers around the engine's report writers: the CSV
// question, the outcome shown or opened, the reports list grown or shrunk from the window.
#pragma once

#include "core/session.h"
#include "reports/reportcontext.h"

#include <QString>

class QWidget;

namespace brindar {

class Desktop;
class Prompter;

struct ReportCommandContext {
    QWidget* parent;
    Prompter& prompter;
    Desktop& desktop;
    const Captions& captions;
    QString folder;  // the folder shown
};

// "Create the CSV report 'name.csv' in the directory 'folder'": true for Yes.
bool ConfirmCsvReport(const ReportCommandContext& context, const ReportContext& report);
// A report written is opened with its application when `open` is set; a report that could
// not be written is said, with the reason; "no file" and "empty list" are said as they are.
// `cannotOpen` is the message when nothing opens the report.
void ShowReportOutcome(const ReportCommandContext& context, const ReportOutcome& outcome, bool open,
                       const QString& cannotOpen);
// "Add current directory to reports list" (add = true) or "Remove ...": the list file is
// rewritten; returns the new list, or nothing when it did not change (the reason shown).
std::optional<ReportsList> ChangeReportsList(const ReportCommandContext& context, const QString& listPath, bool add);

}  // namespace brindar
