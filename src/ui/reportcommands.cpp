// The report commands' questions and answers.
#include "ui/reportcommands.h"

#include "core/captionids.h"
#include "reports/reportslist.h"
#include "reports/templatevariables.h"
#include "ui/desktop.h"
#include "ui/prompter.h"

namespace brindar {
namespace {
const QString kCrLf = QStringLiteral("\r\n");
}

bool ConfirmCsvReport(const ReportCommandContext& context, const ReportContext& report)
{
    const QString name = ReportBaseName(report.configuration, report.captions, report.now) + QStringLiteral(".csv");
    return context.prompter.question(context.parent, context.captions.text(CaptionSection::Main, 67) +
                                                         QStringLiteral(" '") + name + u'\'' + kCrLf +
                                                         context.captions.text(CaptionSection::Main, 68) +
                                                         QStringLiteral(" '") + context.folder + u'\'');
}

void ShowReportOutcome(const ReportCommandContext& context, const ReportOutcome& outcome, bool open,
                       const QString& cannotOpen)
{
    if (outcome.stopped)
        return;
    if (outcome.error) {
        if (outcome.nothingToReport)
            context.prompter.message(context.parent, Prompter::Icon::Exclamation, *outcome.error);
        else
            context.prompter.message(context.parent, Prompter::Icon::Exclamation,
                                     context.captions.text(caption::UnableToWriteReport) + kCrLf + *outcome.error);
        return;
    }
    if (!open)
        return;
    if (auto error = context.desktop.openFile(outcome.path))
        context.prompter.message(context.parent, Prompter::Icon::Exclamation, cannotOpen + kCrLf + *error);
}

std::optional<ReportsList> ChangeReportsList(const ReportCommandContext& context, const QString& listPath, bool add)
{
    ReportsList list = ReadReportsList(listPath);
    const bool changed = add ? AddCurrentDirectory(list, context.folder) : RemoveCurrentDirectory(list, context.folder);
    if (!changed) {
        context.prompter.message(context.parent, Prompter::Icon::Exclamation,
                                 context.captions.text(add ? caption::DirectoryAlreadyInList
                                                           : caption::DirectoryNotInList));
        return std::nullopt;
    }
    if (auto error = WriteReportsList(listPath, list)) {
        context.prompter.message(context.parent, Prompter::Icon::Exclamation, *error);
        return std::nullopt;
    }
    return list;
}

}  // namespace brindar
