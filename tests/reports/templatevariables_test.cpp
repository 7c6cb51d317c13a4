// Report dates, times, base names and template variables in English and in French.
#include "reports/templatevariables.h"

#include "support/tempfolder.h"
#include "version.h"

#include <gtest/gtest.h>

using namespace brindar;

namespace {

const QDateTime kNow(QDate(2026, 11, 15), QTime(14, 5, 59));

Captions French()
{
    return LoadLanguage(QStringLiteral("French"), QString(), brindar::test::SourceFile(QStringLiteral("share")));
}

}  // namespace

TEST(TemplateVariables, BaseNameAndVariables)
{
    Configuration configuration;
    EXPECT_EQ(ReportBaseName(configuration, French(), kNow), u"Brindar");
    configuration.ajouterDate = true;
    EXPECT_EQ(ReportBaseName(configuration, French(), kNow), u"Brindar 15 novembre 2026 - 14 h 05");

    SystemInfo system;
    system.userName = QStringLiteral("anne");
    system.computerName = QStringLiteral("poste-12");
    struct Row { const char* text; QString expected; };
    const Row rows[] = {
        {"Made on %Date at %time by %USER", QStringLiteral("Made on 15 novembre 2026 at 14 h 05 by %USER")},
        {"%user@%Computer %dAte", QStringLiteral("anne@poste-12 %dAte")},
        {"%date %Version", QStringLiteral("15 novembre 2026 ") + QLatin1String(brindar::kProgramVersion)},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ReplaceTemplateVariables(QLatin1String(row.text), French(), kNow, system), row.expected) << row.text;
}
