// The report context of a session, and the first steps shared by every report.
#include "reports/reportcontext.h"

#include "core/captionids.h"
#include "core/configurationfiles.h"
#include "core/paths.h"
#include "core/session.h"
#include "platform/fileinfo.h"
#include "platform/filenames.h"
#include "reports/templatevariables.h"

#include <QFile>
#include <QFileInfo>

namespace brindar {

ReportContext ReportContextOf(const Session& session)
{
    const QString folder = QFileInfo(session.configurationPath).absolutePath();
    ReportContext context;
    context.configuration = session.configuration;
    context.captions = session.captions;
    context.system = session.system;
    context.substitutions = ReadSubstitutions(SubstitutionsPath(folder, session.chooser.nom));
    context.reportsList = ReadReportsList(ReportsListPath(folder, session.chooser.nom));
    return context;
}

QString ReportOutputDirectory(const QString& directory)
{
    return directory.endsWith(u'/') ? directory.chopped(1) : directory;
}

void DeleteOldReports(const QString& folder, const Configuration& configuration, const QString& extension)
{
    const QString& prefix = configuration.prefixeTableau;
    if (prefix.isEmpty() || !configuration.effacerAnciensTableaux)
        return;
    const QString ending = u'.' + extension;
    bool listed = false;
    const QString where = folder.isEmpty() ? QStringLiteral("/") : folder;
    for (const FolderEntry& entry : ListFolder(where, false, &listed)) {
        const QString& name = entry.name;
        if (entry.directory || name.size() < prefix.size() + ending.size()
            || !name.startsWith(prefix, Qt::CaseInsensitive) || !name.endsWith(ending, Qt::CaseInsensitive))
            continue;
        RemoveFile(JoinPath(where, name));
    }
}

ReportOutcome BeginReport(const GridModel& grid, const QString& directory, const ReportContext& context,
                          const CaptionId& noFileMessage, const QString& extension)
{
    ReportOutcome outcome;
    if (grid.rowCount() < 1) {
        outcome.error = context.captions.text(noFileMessage);
        outcome.nothingToReport = true;
        return outcome;
    }
    const QString output = ReportOutputDirectory(directory);
    DeleteOldReports(output, context.configuration, extension);
    outcome.path =
        JoinPath(output, ReportBaseName(context.configuration, context.captions, context.now) + u'.' + extension);
    return outcome;
}

}  // namespace brindar
