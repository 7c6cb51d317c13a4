// Values as text: the grid's dates and editing times, report dates, application names.
#include "core/language.h"
#include "core/valuetext.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;

TEST(ValueText, DatesAndDurationsAsTheGridShowsThem)
{
    for (const auto& [in, out] : {std::pair{"2026-02-01T10:15:00", "2026/02/01 10:15:00"},
                                  {"2026-02-01T10:15", "2026/02/01 10:15:00"}, {"2026-02-01", "2026/02/01"},
                                  {"20260201", "2026/02/01"}, {"yesterday", "yesterday"}})
        EXPECT_EQ(GridDate(QLatin1String(in)), QLatin1String(out)) << in;
    EXPECT_EQ(GridDate(QDateTime(QDate(2003, 6, 26), QTime(13, 19), Qt::UTC), false), u"2003/06/26 13:19:00");
    EXPECT_EQ(GridDate(QDateTime(), false), QString());
    for (const auto& [minutes, text] : {std::pair{65, "1 h 05 min"}, {600, "10 h 00 min"}, {70, "1 h 10 min"}, {0, ""}})
        EXPECT_EQ(EditingTime(minutes), QLatin1String(text)) << minutes;
    for (const auto& [iso, minutes] : {std::pair{"PT1H5M", 65}, {"PT9M30S", 9}, {"P1DT2H", 1560}, {"soon", -1}, {"P", -1},
                                     // too many minutes for a count, or a count too long for a number
                                     {"P6405119470038039D", -1}, {"PT99999999999999999999M", -1}})
        EXPECT_EQ(DurationMinutes(QLatin1String(iso)), minutes) << iso;
}

TEST(ValueText, ReportDatesAndApplicationNames)
{
    const Captions french = LoadLanguage(QStringLiteral("French"), QString(), test::SourceFile(QStringLiteral("share")));
    EXPECT_EQ(ReportDateText(Captions::English(), QDate(2026, 3, 5)), u"March 5, 2026");
    EXPECT_EQ(ReportDateText(french, QDate(2026, 11, 15)), u"15 novembre 2026");
    EXPECT_EQ(ReportTimeText(QTime(9, 30)), u"09 h 30");
    // The grid, the export and the reports drop the same prefix: the blank belongs to it,
    // the case must match, and a name that is nothing but the prefix stays.
    for (const auto& [in, out] : {std::pair{"Microsoft Excel", "Excel"}, {"MicrosoftX", "MicrosoftX"},
                                  {"microsoft Word", "microsoft Word"}, {"Microsoft ", "Microsoft "}})
        EXPECT_EQ(WithoutMicrosoftPrefix(QLatin1String(in)), QLatin1String(out)) << in;
}
