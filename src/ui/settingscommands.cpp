// The settings dialogs as questions.
#include "ui/settingscommands.h"

#include "core/columnorder.h"
#include "core/configurationfiles.h"
#include "core/fileselection.h"
#include "ui/columnorderdialog.h"
#include "ui/fileselectiondialog.h"
#include "ui/prompter.h"
#include "ui/substitutionsdialog.h"

namespace brindar {

std::optional<SettingsChange> AskFileSelection(QWidget* parent, Prompter& prompter, const Session& session)
{
    FileSelectionDialog dialog(FileSelectionOf(session.configuration), session.captions, prompter, parent);
    if (prompter.exec(dialog) != QDialog::Accepted)
        return std::nullopt;
    return FileSelectionChange(dialog.selection());
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

}  // namespace brindar
