// The real dialogs behind the Prompter.
#include "ui/prompter.h"

#include "version.h"

#include <QColorDialog>
#include <QDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

namespace brindar {
namespace {

QString TitleOr(const QString& title) { return title.isEmpty() ? MessageTitle() : title; }

}  // namespace

void WidgetPrompter::message(QWidget* parent, Icon icon, const QString& text, const QString& title)
{
    const QMessageBox::Icon shown = icon == Icon::Information   ? QMessageBox::Information
                                    : icon == Icon::Exclamation ? QMessageBox::Warning
                                                                : QMessageBox::Critical;
    QMessageBox box(shown, TitleOr(title), text, QMessageBox::Ok, parent);
    box.exec();
}

bool WidgetPrompter::question(QWidget* parent, const QString& text, const QString& title)
{
    QMessageBox box(QMessageBox::Question, TitleOr(title), text, QMessageBox::Yes | QMessageBox::No, parent);
    box.setDefaultButton(QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes;
}

std::optional<QString> WidgetPrompter::text(QWidget* parent, const QString& title, const QString& label,
                                            const QString& value, int selected)
{
    QInputDialog dialog(parent);
    dialog.setWindowTitle(title);
    dialog.setLabelText(label);
    dialog.setTextValue(value);
    dialog.resize(std::max(dialog.sizeHint().width(), 420), dialog.sizeHint().height());
    // The line edit exists once the dialog is shown: the part to type over is selected then.
    if (selected >= 0)
        QTimer::singleShot(0, &dialog, [&dialog, selected] {
            if (auto* edit = dialog.findChild<QLineEdit*>())
                edit->setSelection(0, selected);
        });
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

std::optional<QColor> WidgetPrompter::colour(QWidget* parent, const QColor& initial)
{
    const QColor chosen = QColorDialog::getColor(initial, parent);
    if (!chosen.isValid())
        return std::nullopt;
    return chosen;
}

std::optional<QString> WidgetPrompter::folder(QWidget* parent, const QString& title, const QString& start)
{
    const QString chosen = QFileDialog::getExistingDirectory(parent, title, start);
    if (chosen.isEmpty())
        return std::nullopt;
    return chosen;
}

std::optional<QString> WidgetPrompter::openFileName(QWidget* parent, const QString& title, const QString& start,
                                                    const QString& filter)
{
    const QString chosen = QFileDialog::getOpenFileName(parent, title, start, filter);
    if (chosen.isEmpty())
        return std::nullopt;
    return chosen;
}

std::optional<QString> WidgetPrompter::saveFileName(QWidget* parent, const QString& title, const QString& start,
                                                    const QString& filter)
{
    const QString chosen = QFileDialog::getSaveFileName(parent, title, start, filter);
    if (chosen.isEmpty())
        return std::nullopt;
    return chosen;
}

int WidgetPrompter::exec(QDialog& dialog) { return dialog.exec(); }

}  // namespace brindar
