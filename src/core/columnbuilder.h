// Building the grid's columns from the field table and the configuration's switches.
#pragma once

#include "core/fieldtable.h"

#include <QList>
#include <QString>
#include <array>
#include <vector>

namespace brindar {

class IniDocument;
class Captions;

struct Column {
    QString code;     // ".TI", ".P3"; empty for the document column
    QString caption;  // the caption itself, or the user-defined property's name
    QString header;   // as shown: the caption with its leading padding blanks
    int field = -1;   // row of FieldTable(), or -1
    int userSlot = -1;
    bool numeric = false;  // the caption is one of NumericCaptions()
};

struct ColumnSet {
    QList<Column> columns;  // column 0 is the document column
    // ":meta" and the codes of the columns in grid order; names the metadata cache.
    QString codeList = QStringLiteral(":meta");
    std::vector<bool> displayed;  // per row of FieldTable()
    std::array<QString, kUserSlotCount> userNames;
    std::array<bool, kUserSlotCount> userChecked{};
    bool macintoshAccents = false;
    QList<int> htmlOrder;  // position -> grid column, a permutation of the columns

    bool isDisplayed(const char* code) const;
    int columnOf(const QString& code) const;  // -1 when not displayed
};

// Reads the switches of `configuration` and builds the columns, their headers from
// `captions`. `nt` says whether the Macintosh comments column may exist.
ColumnSet BuildColumns(const IniDocument& configuration, const Captions& captions, bool nt);

}  // namespace brindar
