// Report date and time texts, report base names and template variables.
#include "reports/templatevariables.h"

#include "version.h"

namespace brindar {

QString ReportBaseName(const Configuration& configuration, const Captions& captions, const QDateTime& now)
{
    if (!configuration.ajouterDate)
        return configuration.prefixeTableau;
    return configuration.prefixeTableau + u' ' + ReportDateText(captions, now.date()) + QStringLiteral(" - ")
           + ReportTimeText(now.time());
}

QString ReplaceTemplateVariables(QString text, const Captions& captions, const QDateTime& now,
                                 const SystemInfo& system)
{
    const std::pair<const char*, QString> variables[] = {
        {"Date", ReportDateText(captions, now.date())},
        {"Time", ReportTimeText(now.time())},
        {"User", system.userName},
        {"Computer", system.computerName},
        {"Version", QLatin1String(kProgramVersion)},
    };
    for (const auto& [name, value] : variables) {
        const QString capitalised = u'%' + QLatin1String(name);
        text.replace(capitalised, value, Qt::CaseSensitive);
        text.replace(capitalised.toLower(), value, Qt::CaseSensitive);
    }
    return text;
}

}  // namespace brindar
