// The word-processor report: the grid as a table of an Office Open XML document.
#pragma once

#include "reports/reportcontext.h"
#include "scan/gridmodel.h"

#include <QList>
#include <QString>
#include <optional>

namespace brindar {

// Writes `path` (temporary file then rename): `title` (the report date text) as the
// document's title paragraph and core property, then one table holding the header row
// (emphasised, repeated on each page) and every grid row, in `order` (position -> grid
// column), skipping the columns whose width is 0. The page turns landscape when the
// table has more than kPortraitColumns columns. Returns the reason on failure.
inline constexpr int kPortraitColumns = 6;
std::optional<QString> WriteDocxReport(const QString& path, const QString& title, const GridModel& grid,
                                       const QList<int>& order);

// The word-processor report of the grid of `directory`, written into that folder as
// "<PrefixeTableau>[ <date> - <time>].docx", titled with the report date text.
ReportOutcome WriteWordReport(const GridModel& grid, const QList<int>& order, const QString& directory,
                              const ReportContext& context);

}  // namespace brindar
