// The program's own properties dialog of one file, shown when no file manager answers:
// its name, folder, size, times and permissions, then every metadata value of its row.
#pragma once

#include "core/language.h"

#include <QDialog>
#include <QList>
#include <QString>
#include <utility>

namespace brindar {

class PropertiesDialog final : public QDialog {
    Q_OBJECT
public:
    // `metadata`: (caption, value) of every non-empty cell of the file's row but the name.
    PropertiesDialog(const QString& path, const QList<std::pair<QString, QString>>& metadata,
                     const Captions& captions, QWidget* parent = nullptr);
    // Object names: "frmProprietes", "tblFaits" (the facts and values), "cmdFermer".
};

}  // namespace brindar
