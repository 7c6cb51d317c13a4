// The File menu's commands.
#include "ui/filecommands.h"

#include "core/captionids.h"
#include "core/paths.h"
#include "platform/fileactions.h"
#include "ui/desktop.h"
#include "ui/prompter.h"
#include "ui/propertiesdialog.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

namespace brindar {
namespace {

constexpr int kOpenWithoutAsking = 10;
constexpr int kNamesShown = 10;
const QString kCrLf = QStringLiteral("\r\n");

QString Main(const Captions& captions, int number) { return captions.text(CaptionSection::Main, number); }

}  // namespace

QString NamesMessage(const Captions& captions, const QString& heading, const QStringList& names, int shown)
{
    QStringList lines;
    if (!heading.isEmpty())
        lines << heading;
    lines += names.mid(0, shown);
    if (names.size() > shown)
        lines << captions.text(caption::AndMore).arg(names.size() - shown);
    return lines.join(kCrLf);
}

void OpenFiles(const FileCommandContext& context, const QStringList& names)
{
    if (names.size() > kOpenWithoutAsking &&
        !context.prompter.question(context.parent, context.captions.text(caption::OpenAllSelected) +
                                                       QStringLiteral(" (%1)").arg(names.size())))
        return;
    QStringList failures;
    for (const QString& name : names)
        if (auto error = context.desktop.openFile(JoinPath(context.folder, name)))
            failures << *error;
    if (!failures.isEmpty())
        context.prompter.message(context.parent, Prompter::Icon::Exclamation,
                                 NamesMessage(context.captions, context.captions.text(caption::UnableToOpenFile),
                                              failures, kNamesShown));
}

void OpenInTextEditor(const FileCommandContext& context, const QStringList& names)
{
    for (const QString& name : names)
        if (auto error = context.desktop.openInTextEditor(JoinPath(context.folder, name))) {
            context.prompter.message(context.parent, Prompter::Icon::Exclamation,
                                     context.captions.text(caption::NoTextEditor) + kCrLf + kCrLf + *error);
            return;
        }
}

void ShowProperties(const FileCommandContext& context, const QStringList& names,
                    const QList<std::pair<QString, QString>>& metadata)
{
    if (names.isEmpty())
        return;
    QStringList paths;
    for (const QString& name : names)
        paths << JoinPath(context.folder, name);
    if (!context.desktop.showProperties(paths))
        return;
    PropertiesDialog dialog(paths.front(), metadata, context.captions, context.parent);
    context.prompter.exec(dialog);
}

std::optional<QString> RenameFile(const FileCommandContext& context, const QString& name)
{
    // The base name is selected, so typing replaces it and keeps the extension.
    const qsizetype dot = name.lastIndexOf(u'.');
    const auto answer = context.prompter.text(context.parent, Main(context.captions, 87), Main(context.captions, 66),
                                              name, dot > 0 ? int(dot) : -1);
    if (!answer || answer->isEmpty() || *answer == name)
        return std::nullopt;
    if (HasForbiddenCharacters(*answer)) {
        context.prompter.message(context.parent, Prompter::Icon::Exclamation, Main(context.captions, 69));
        return std::nullopt;
    }
    const QString from = JoinPath(context.folder, name);
    if (auto error = RenameNoReplace(from, JoinPath(context.folder, *answer))) {
        context.prompter.message(context.parent, Prompter::Icon::Information,
                                 Main(context.captions, 63) + kCrLf + from + kCrLf + Main(context.captions, 64) +
                                     kCrLf + kCrLf + *error);
        return std::nullopt;
    }
    return answer;
}

bool DeleteFiles(const FileCommandContext& context, const QStringList& names)
{
    if (names.isEmpty() ||
        !context.prompter.question(context.parent, NamesMessage(context.captions,
                                                                context.captions.text(caption::TrashConfirmation),
                                                                names, kNamesShown)))
        return false;
    QStringList failures;
    for (const QString& name : names) {
        const TrashOutcome outcome = context.desktop.moveToTrash(JoinPath(context.folder, name));
        if (outcome.error)
            failures << name + QStringLiteral(": ") + *outcome.error;
    }
    if (!failures.isEmpty())
        context.prompter.message(context.parent, Prompter::Icon::Exclamation,
                                 NamesMessage(context.captions, context.captions.text(caption::TrashFailures), failures,
                                              kNamesShown));
    return true;
}

QString RowsAsText(const GridModel& grid, const QList<int>& rows)
{
    const QList<int> columns = grid.visibleColumns();
    QStringList lines;
    for (int row : rows) {
        QStringList cells;
        for (int column : columns)
            cells << grid.cell(row, column);
        lines << cells.join(u'\t');
    }
    return lines.join(u'\n') + (lines.isEmpty() ? QString() : QStringLiteral("\n"));
}

void AddMetadataEntries(QMenu& menu, const GridModel& grid, int row, const Captions& captions)
{
    menu.addSection(Main(captions, 92) + u' ' + grid.cell(row, 0));
    const auto metadata = RowMetadata(grid, row);
    if (metadata.isEmpty())
        menu.addAction(Main(captions, 77))->setEnabled(false);
    for (const auto& [caption, value] : metadata) {
        QString text = caption.trimmed() + QStringLiteral(": ") + value;
        text.replace(u'\n', u' ').replace(u'\r', u' ').replace(u'&', QStringLiteral("&&"));
        QAction* entry = menu.addAction(text.size() > 120 ? text.left(117) + QStringLiteral("...") : text);
        entry->setToolTip(captions.text(caption::CopyValue));
        QObject::connect(entry, &QAction::triggered, [copied = value] { QGuiApplication::clipboard()->setText(copied); });
    }
    menu.addSeparator();
}

QList<std::pair<QString, QString>> RowMetadata(const GridModel& grid, int row)
{
    QList<std::pair<QString, QString>> metadata;
    for (int column = 1; column < grid.columnCount(); ++column)
        if (const QString value = grid.cell(row, column); !value.isEmpty())
            metadata.append({grid.caption(column), value});
    return metadata;
}

}  // namespace brindar
