// The configuration-file dialog: create or select a configuration, remove one, or choose
// the conditions file of the property modification.
#pragma once

#include "core/language.h"

#include <QDialog>
#include <QString>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace brindar {

class Prompter;

class ConfigurationDialog final : public QDialog {
    Q_OBJECT
public:
    enum class Mode {
        Select,      // "*.ini": OK selects, creating the file after a question when it is new
        Remove,      // "*.ini": Remove deletes the file after a question
        Conditions,  // "*.prp": OK chooses the conditions file, creating it when it is new
    };

    // `current` is the name in use (the chooser's "Nom", or "NomConditions").
    ConfigurationDialog(Mode mode, const QString& settingsFolder, const QString& current, const Captions& captions,
                        Prompter& prompter, QWidget* parent = nullptr);

    // After Accepted: the name selected or created, or the name removed.
    QString chosenName() const;

    // Object names: "frmConfiguration"; "txtNom" (name), "lstConfigurations", "lblErreur"
    // (forbidden characters), "lblRepertoire" (the named file's "Repertoire"), "cmdOK",
    // "cmdSupprimer" (Remove), "cmdAnnuler" (Cancel).

private:
    void nameChanged();
    void confirm();
    void remove();

    Mode mode_;
    QString folder_;
    QString current_;
    const Captions& captions_;
    Prompter& prompter_;
    QString chosen_;
    QLineEdit* name_;
    QListWidget* list_;
    QLabel* error_;
    QLabel* directoryCaption_;
    QLabel* directory_;
    QPushButton* ok_;
    QPushButton* remove_;
};

}  // namespace brindar
