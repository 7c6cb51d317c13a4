// The reports-list dialogs: the folder of the lists of reports (`frmPathListeTableaux`),
// the list editor (`frmEnsembleTableaux`) and its add dialog (`frmAjouterTableau`).
#pragma once

#include "core/language.h"
#include "reports/reportslist.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace brindar {

class FolderPicker;
class Prompter;

// Object names: "frmPathListeTableaux", "lblChemin", "cmdOK", "cmdAnnuler"; the picker's
// "Lecteurs" and "Chemins".
class ReportsListFolderDialog final : public QDialog {
    Q_OBJECT
public:
    ReportsListFolderDialog(const QString& current, const Captions& captions, Prompter& prompter,
                            QWidget* parent = nullptr);
    QString folder() const;
    FolderPicker* picker() const { return picker_; }

private:
    FolderPicker* picker_;
    QLabel* chosen_;
};

// Object names: "frmAjouterTableau", "chkSousRepertoires", "cmdOK", "cmdAnnuler".
class AddReportsDialog final : public QDialog {
    Q_OBJECT
public:
    // Adds to `list` on OK; `start` is the folder shown first.
    AddReportsDialog(ReportsList& list, const QString& start, const Captions& captions, Prompter& prompter,
                     QWidget* parent = nullptr);
    FolderPicker* picker() const { return picker_; }

private:
    ReportsList& list_;
    FolderPicker* picker_;
    QCheckBox* subfolders_;
};

// Object names: "frmEnsembleTableaux", "gridTableaux", "txtLibelle", "cmdAjouter",
// "cmdSupprimer", "cmdSupprimerTout", "cmdMonter", "cmdDescendre", "cmdGoTo", "cmdOK",
// "cmdAnnuler".
class ReportsListDialog final : public QDialog {
    Q_OBJECT
public:
    // `file`: the configuration's ".txt"; `shown`: the folder the window shows.
    ReportsListDialog(const QString& file, const QString& shown, const Captions& captions, Prompter& prompter,
                      QWidget* parent = nullptr);
    const ReportsList& list() const { return list_; }
    // After "Go to directory": the folder to show (the dialog closed without saving).
    QString goTo() const { return goTo_; }

private:
    void showList(int selected);
    void confirm();

    QString file_;
    QString shown_;
    const Captions& captions_;
    Prompter& prompter_;
    ReportsList list_;
    QString goTo_;
    QTableWidget* grid_;
    QLineEdit* title_;
    QPushButton* up_;
    QPushButton* down_;
};

}  // namespace brindar
