// Every message box, input box and colour, file or folder dialog of the window goes through
// one Prompter, and so does every dialog of the program's own: a test answers them from a
// script and records what was asked, so nothing modal ever waits for a hand during a test.
#pragma once

#include <QColor>
#include <QString>
#include <optional>

class QDialog;
class QWidget;

namespace brindar {

class Prompter {
public:
    enum class Icon { Information, Exclamation, Critical };

    virtual ~Prompter() = default;

    // A message box with an OK button, titled MessageTitle() unless `title` is given.
    virtual void message(QWidget* parent, Icon icon, const QString& text, const QString& title = {}) = 0;
    // A Yes/No question, titled MessageTitle() unless `title` is given; true for Yes.
    virtual bool question(QWidget* parent, const QString& text, const QString& title = {}) = 0;
    // An input box offering `value`, its first `selected` characters selected (-1: all).
    // Nothing when cancelled.
    virtual std::optional<QString> text(QWidget* parent, const QString& title, const QString& label,
                                        const QString& value, int selected = -1) = 0;
    virtual std::optional<QColor> colour(QWidget* parent, const QColor& initial) = 0;
    virtual std::optional<QString> folder(QWidget* parent, const QString& title, const QString& start) = 0;
    // `filter` as Qt's file dialogs take it ("XML files (*.xml)").
    virtual std::optional<QString> openFileName(QWidget* parent, const QString& title, const QString& start,
                                                const QString& filter) = 0;
    virtual std::optional<QString> saveFileName(QWidget* parent, const QString& title, const QString& start,
                                                const QString& filter) = 0;
    // Runs one of the program's own dialogs until it closes: QDialog::Accepted or Rejected.
    virtual int exec(QDialog& dialog) = 0;
};

// The real dialogs: QMessageBox, QInputDialog, QColorDialog, QFileDialog, QDialog::exec.
class WidgetPrompter final : public Prompter {
public:
    void message(QWidget* parent, Icon icon, const QString& text, const QString& title = {}) override;
    bool question(QWidget* parent, const QString& text, const QString& title = {}) override;
    std::optional<QString> text(QWidget* parent, const QString& title, const QString& label, const QString& value,
                                int selected = -1) override;
    std::optional<QColor> colour(QWidget* parent, const QColor& initial) override;
    std::optional<QString> folder(QWidget* parent, const QString& title, const QString& start) override;
    std::optional<QString> openFileName(QWidget* parent, const QString& title, const QString& start,
                                        const QString& filter) override;
    std::optional<QString> saveFileName(QWidget* parent, const QString& title, const QString& start,
                                        const QString& filter) override;
    int exec(QDialog& dialog) override;
};

}  // namespace brindar
