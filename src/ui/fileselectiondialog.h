// The displayed-files dialog: all files, the extension filter, hidden files, and the
// families whose metadata the scan gathers.
#pragma once

#include "core/fileselection.h"
#include "core/language.h"

#include <QDialog>
#include <array>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace brindar {

class Prompter;

class FileSelectionDialog final : public QDialog {
    Q_OBJECT
public:
    // Object names: "frmSelectionFichiers"; "chkTout", "chkExtensions", "txtInclure",
    // "txtExclure", "chkCaches", "chkOffice", "chkOO", "chkPDF", "chkHTML", "chkJPEG",
    // "chkXMP", "lblSelection", "cmdOK", "cmdAnnuler".
    FileSelectionDialog(const FileSelection& selection, const Captions& captions, Prompter& prompter,
                        QWidget* parent = nullptr);

    // The settings as the controls show them.
    FileSelection selection() const;

private:
    void update();
    void confirm();

    const Captions& captions_;
    Prompter& prompter_;
    QCheckBox* all_;
    QCheckBox* filter_;
    QLineEdit* include_;
    QLineEdit* exclude_;
    QCheckBox* hidden_;
    std::array<QCheckBox*, kFamilyCount> families_{};
    QLabel* summary_;
};

}  // namespace brindar
