// The HTML layout options (`frmOptionsHTML`): report file names, lists of reports,
// header, footer, images and colours.
#pragma once

#include "core/language.h"
#include "reports/htmloptions.h"

#include <QDateTime>
#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace brindar {

class Prompter;

class HtmlOptionsDialog final : public QDialog {
    Q_OBJECT
public:
    // Object names: "frmOptionsHTML", "txtPrefixeTableauHTML", "lblErrPrefixe", "lblExemple",
    // "chkAjouterDate", "chkEffacerAnciens", "chkImagesSuivent", "txtPathListeTableaux",
    // "cmdParcourirListeTableaux", "chkIndexListes", "optIndexListe", "optIndexNumerote",
    // "txtEnTete", "txtImageEnTete", "cmdParcourirEnTete", "chkRenvoi", "cmdCouleur",
    // "txtImageFond", "cmdParcourirFond", "txtImageDebutTableau", "cmdParcourirDebutTableau",
    // "chkTotalDocuments", "chkDisplayDirectory", "txtPied", "txtImagePied",
    // "cmdParcourirPied", "lblExempleEnTete", "lblExemplePied", "cmdAide", "cmdOK",
    // "cmdAnnuler".
    HtmlOptionsDialog(const HtmlOptions& options, const Captions& captions, Prompter& prompter,
                      QWidget* parent = nullptr);

    HtmlOptions options() const;

private:
    void prefixChanged();
    void showColour();

    const Captions& captions_;
    Prompter& prompter_;
    qint32 colour_;
    QLineEdit* prefix_;
    QLabel* prefixError_;
    QLabel* example_;
    QCheckBox* addDate_;
    QCheckBox* deleteOlder_;
    QCheckBox* imagesFollow_;
    QLineEdit* listsFolder_;
    QCheckBox* index_;
    QRadioButton* dropDown_;
    QRadioButton* numbered_;
    QLineEdit* header_;
    QLineEdit* headerImage_;
    QCheckBox* wrap_;
    QLabel* swatch_;
    QLineEdit* background_;
    QLineEdit* titleImage_;
    QCheckBox* total_;
    QCheckBox* directory_;
    QLineEdit* footer_;
    QLineEdit* footerImage_;
};

}  // namespace brindar
