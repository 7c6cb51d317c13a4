// The settings dialogs as questions.
#include "ui/settingscommands.h"

#include "core/columnorder.h"
#include "core/configurationfiles.h"
#include "core/fileselection.h"
#include "ui/columnorderdialog.h"
#include "ui/displayedmetadatadialog.h"
#include "ui/fileselectiondialog.h"
#include "ui/htmloptionsdialog.h"
#include "ui/prompter.h"
#include "ui/reportslistdialogs.h"
#include "ui/substitutionsdialog.h"

namespace brindar {

std::optional<SettingsChange> AskFileSelection(QWidget* parent, Prompter& prompter, const Session& session)
{
    FileSelectionDialog dialog(FileSelectionOf(session.configuration), session.captions, prompter, parent);
    if (prompter.exec(dialog) != QDialog::Accepted)
        return std::nullopt;
    return FileSelectionChange(dialog.selection());
}

std::optional<SettingsChange> AskDisplayedMetadata(QWidget* parent, Prompter& prompter, const Session& session)
{
    DisplayedMetadataDialog dialog(DisplayedFieldsOf(session.configurationFile), session.captions, parent);
    if (prompter.exec(dialog) != QDialog::Accepted)
        return std::nullopt;
    return DisplayedFieldsChange(dialog.fields());
}

std::optional<SettingsChange> AskColumnOrder(QWidget* parent, Prompter& prompter, const Session& session)
{
    QStringList headers;
    for (const Column& column : session.columns.columns)
        headers << column.header;
    ColumnOrderDialog dialog(headers, session.columns.htmlOrder, session.captions, prompter, parent);
    if (prompter.exec(dialog) != QDialog::Accepted)
        return std::nullopt;
    return ColumnOrderChange(dialog.order());
}

void EditSubstitutions(QWidget* parent, Prompter& prompter, const Session& session)
{
    SubstitutionsDialog dialog(SubstitutionsPath(session.settingsFolder, session.chooser.nom), session.captions,
                               prompter, parent);
    prompter.exec(dialog);
}

std::optional<SettingsChange> AskHtmlOptions(QWidget* parent, Prompter& prompter, const Session& session)
{
    HtmlOptionsDialog dialog(HtmlOptionsOf(session.configuration), session.captions, prompter, parent);
    if (prompter.exec(dialog) != QDialog::Accepted)
        return std::nullopt;
    return HtmlOptionsChange(dialog.options());
}

std::optional<SettingsChange> AskReportsListFolder(QWidget* parent, Prompter& prompter, const Session& session)
{
    ReportsListFolderDialog dialog(session.configuration.pathListeTableaux, session.captions, prompter, parent);
    if (prompter.exec(dialog) != QDialog::Accepted)
        return std::nullopt;
    return SettingsChange().set(key::PathListeTableaux, dialog.folder());
}

std::optional<ReportsListEdit> EditReportsList(QWidget* parent, Prompter& prompter, const Session& session,
                                               const QString& shown)
{
    ReportsListDialog dialog(ReportsListPath(session.settingsFolder, session.chooser.nom), shown, session.captions,
                             prompter, parent);
    if (prompter.exec(dialog) != QDialog::Accepted)
        return std::nullopt;
    return ReportsListEdit{dialog.list(), dialog.goTo()};
}

}  // namespace brindar
