// The displayed-metadata dialog: one tab per family with a check box per column its
// reader fills, the user-defined slots, and a live count of the grid's columns.
#pragma once

#include "core/language.h"
#include "readers/displayedfields.h"

#include <QDialog>
#include <QHash>
#include <QList>
#include <array>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace brindar {

class DisplayedMetadataDialog final : public QDialog {
    Q_OBJECT
public:
    // Object names: "frmChoixMetadonnees", "tabFamilles"; a column's box "chk" + code
    // without its dot and a tab index ("chkTI_4" on the PDF tab); "chkPerso"n and
    // "textPerso"n; "chkIPTCMac"; "lblAvertissement" (a checked slot without name);
    // "lblColonnes"; per tab "cmdTout"n and "cmdRien"n; "cmdOK", "cmdAnnuler".
    DisplayedMetadataDialog(const DisplayedFields& fields, const Captions& captions, QWidget* parent = nullptr);

    DisplayedFields fields() const;

private:
    void changed();

    const Captions& captions_;
    DisplayedFields fields_;
    QHash<QString, QList<QCheckBox*>> boxes_;  // by column code, on every tab
    std::array<QCheckBox*, kUserSlots> slots_{};
    std::array<QLineEdit*, kUserSlots> names_{};
    QCheckBox* accents_;
    QLabel* warning_;
    QLabel* count_;
    bool syncing_ = false;
};

}  // namespace brindar
