// The order of the columns in reports (`frmColonnesHTML`): the grid's columns in a list,
// moved up and down, reset to the grid's order.
#pragma once

#include "core/language.h"

#include <QDialog>
#include <QList>
#include <QStringList>

class QLabel;
class QListWidget;
class QPushButton;

namespace brindar {

class Prompter;

class ColumnOrderDialog final : public QDialog {
    Q_OBJECT
public:
    // `headers`: the grid's header texts, by grid column; `order`: position -> grid column.
    // Object names: "frmColonnesHTML", "lstColonnes", "lblPosition", "cmdMonter",
    // "cmdDescendre", "cmdSupprimerOrdre", "cmdOK", "cmdAnnuler".
    ColumnOrderDialog(const QStringList& headers, const QList<int>& order, const Captions& captions,
                      Prompter& prompter, QWidget* parent = nullptr);

    // Position -> grid column, as the list shows it.
    QList<int> order() const;

private:
    void fill(const QList<int>& order);
    void selectionChanged();
    void move(int step);

    QStringList headers_;
    const Captions& captions_;
    Prompter& prompter_;
    QListWidget* list_;
    QLabel* position_;
    QPushButton* up_;
    QPushButton* down_;
};

}  // namespace brindar
