// The HTML layout options.
#include "reports/htmloptions.h"

#include "version.h"

#include <QStringList>

namespace brindar {
namespace {

QString Html(const Captions& captions, int number) { return captions.text(CaptionSection::Html, number); }

}  // namespace

HtmlOptions HtmlOptionsOf(const Configuration& c)
{
    HtmlOptions o;
    o.prefixeTableau = c.prefixeTableau;
    o.ajouterDate = c.ajouterDate;
    o.effacerAnciensTableaux = c.effacerAnciensTableaux;
    o.imagesSuivent = c.imagesSuivent;
    o.pathListeTableaux = c.pathListeTableaux;
    o.indexListes = c.indexListes;
    o.indexType = c.indexType;
    o.texteEnTete = c.texteEnTete + c.texteEnTete2;
    o.imageEnTete = c.imageEnTete;
    o.renvoiALaLigne = c.renvoiALaLigne;
    o.couleurTitre = c.couleurTitre;
    o.imageFond = c.imageFond;
    o.imageDebutTableau = c.imageDebutTableau;
    o.totalDocuments = c.totalDocuments;
    o.displayDirectory = c.displayDirectory;
    o.textePied = c.textePied + c.textePied2;
    o.imagePied = c.imagePied;
    return o;
}

SettingsChange HtmlOptionsChange(const HtmlOptions& o)
{
    const QString header = o.texteEnTete.left(kHtmlTextLength);
    const QString footer = o.textePied.left(kHtmlTextLength);
    SettingsChange change;
    change.set(key::PrefixeTableau, o.prefixeTableau)
        .setBool(key::AjouterDate, o.ajouterDate)
        .setBool(key::EffacerAnciensTableaux, o.effacerAnciensTableaux)
        .setBool(key::ImagesSuivent, o.imagesSuivent)
        .set(key::PathListeTableaux, o.pathListeTableaux)
        .setBool(key::IndexListes, o.indexListes)
        .setBool(key::IndexType, o.indexType)
        .set(key::TexteEnTete, header.left(kHtmlValueLength))
        .set(key::TexteEnTete2, header.mid(kHtmlValueLength))
        .set(key::ImageEnTete, o.imageEnTete)
        .setBool(key::RenvoiALaLigne, o.renvoiALaLigne)
        .setNumber(key::CouleurTitre, o.couleurTitre)
        .set(key::ImageFond, o.imageFond)
        .set(key::ImageDebutTableau, o.imageDebutTableau)
        .setBool(key::TotalDocuments, o.totalDocuments)
        .setBool(key::DisplayDirectory, o.displayDirectory)
        .set(key::TextePied, footer.left(kHtmlValueLength))
        .set(key::TextePied2, footer.mid(kHtmlValueLength))
        .set(key::ImagePied, o.imagePied);
    return change;
}

QString CleanPrefix(QString prefix)
{
    for (QChar c : u"\\/:*?\"<>|")
        prefix.remove(c);
    return prefix;
}

QString SampleHeaderText(const Captions& captions)
{
    return QStringLiteral("<center><h2>") + Html(captions, 26) + QStringLiteral("</h2><h3><i>%Date</i></h3></center>");
}

QString SampleFooterText(const Captions& captions)
{
    // The closing tags of the middle line stand in this order on purpose.
    return QStringLiteral("<br><marquee style=\"color:#0000FF\"><i>") + Html(captions, 27) +
           QStringLiteral(" <b>%Time</b> ") + Html(captions, 28) + QStringLiteral(" </i><b>%User</b><i> ") +
           Html(captions, 29) + QStringLiteral(" </i><b>%Computer</b><i> ") + Html(captions, 30) +
           QStringLiteral(" </i><b>%Version</b></marquee>") + QStringLiteral("<br><center><h3>") +
           Html(captions, 31) + QStringLiteral("</center></h3>") + QStringLiteral("<center><small>") +
           Html(captions, 32) + QStringLiteral("<a style=\"cursor:help\">") + QLatin1String(kProgramTitle) +
           QStringLiteral("</a></small></center>");
}

QString HtmlSummaryText(const Captions& captions)
{
    const struct {
        const char* tag;
        int explanation;
    } lines[] = {{"<h1> ... <h6>", 34}, {"<b>", 35},     {"<i>", 36},     {"<u>", 37},     {"<br>", 38},
                 {"<hr>", 39},          {"%Date", 40},  {"%Time", 41},   {"%User", 42},   {"%Computer", 43},
                 {"%Version", 44}};
    QStringList text{Html(captions, 33)};
    for (const auto& line : lines)
        text << QLatin1String(line.tag) + QStringLiteral(" -> ") + Html(captions, line.explanation);
    return text.join(QStringLiteral("\r\n"));
}

}  // namespace brindar
