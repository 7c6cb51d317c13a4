// The hyperlink path substitutions (`frmSubstitutionsPaths`): the leading paths reports
// link under another address, edited as a list and saved to the ".pat" file.
#pragma once

#include "core/language.h"
#include "reports/substitutions.h"

#include <QDialog>

class QLineEdit;
class QPushButton;
class QTableWidget;

namespace brindar {

class Prompter;

class SubstitutionsDialog final : public QDialog {
    Q_OBJECT
public:
    // Object names: "frmSubstitutionsPaths", "gridPaths", "txtChemin", "txtRemplacement",
    // "cmdAjouter", "cmdModifier", "cmdSupprimer", "cmdSupprimerTout", "cmdMonter",
    // "cmdDescendre", "cmdOK", "cmdAnnuler".
    SubstitutionsDialog(const QString& file, const Captions& captions, Prompter& prompter, QWidget* parent = nullptr);

    Substitutions substitutions() const { return list_; }

private:
    void showList(int selected);
    void say(const std::optional<QString>& message);
    void confirm();

    QString file_;
    const Captions& captions_;
    Prompter& prompter_;
    Substitutions list_;
    QTableWidget* grid_;
    QLineEdit* path_;
    QLineEdit* replacement_;
    QPushButton* up_;
    QPushButton* down_;
};

}  // namespace brindar
