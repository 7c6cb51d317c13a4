// One data row of the grid: its cell texts and whether the file has any metadata.
#pragma once

#include <QStringList>

namespace brindar {

struct GridRow {
    QStringList cells;  // in grid order; cell 0 is the file name
    bool hasMetadata = false;
};

}  // namespace brindar
