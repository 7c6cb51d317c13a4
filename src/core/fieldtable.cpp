// The field table as data: one row per field, read by everything that needs a column.
#include "core/fieldtable.h"

#include <iterator>

namespace brindar {
namespace {

constexpr unsigned SH = kNoteShared, NU = kNoteNumeric, DA = kNoteDate;

constexpr FieldInfo kFields[] = {
    // family, section, key, code, caption, notes
    {Family::Office, "Proprietes", "NomCourt", ".SN", 2, 0},
    {Family::Office, "Proprietes", "Application", ".AP", 3, SH},
    {Family::Office, "Proprietes", "Titre", ".TI", 4, SH},
    {Family::Office, "Proprietes", "Auteur", ".AU", 5, SH},
    {Family::Office, "Proprietes", "Sujet", ".SU", 6, SH},
    {Family::Office, "Proprietes", "MotsCles", ".KW", 7, SH},
    {Family::Office, "Proprietes", "Modele", ".TE", 8, 0},
    {Family::Office, "Proprietes", "Commentaires", ".CM", 9, SH},
    {Family::Office, "Proprietes", "CommentairesMacintosh", ".MC", 28, kNoteNtOnly},
    {Family::Office, "Proprietes", "DernierAuteur", ".LA", 10, SH},
    {Family::Office, "Proprietes", "Revision", ".RV", 11, SH | NU},
    {Family::Office, "Proprietes", "Pages", ".PA", 31, NU},
    {Family::Office, "Proprietes", "Paragraphes", ".PG", 32, NU},
    {Family::Office, "Proprietes", "Lignes", ".LI", 33, SH | NU},
    {Family::Office, "Proprietes", "Mots", ".WO", 34, NU},
    {Family::Office, "Proprietes", "Caracteres", ".CH", 35, NU},
    {Family::Office, "Proprietes", "Octets", ".BY", 36, NU},
    {Family::Office, "Proprietes", "Notes", ".NO", 37, NU},
    {Family::Office, "Proprietes", "Diapositives", ".SL", 38, NU},
    {Family::Office, "Proprietes", "Responsable", ".MA", 20, 0},
    {Family::Office, "Proprietes", "Compagnie", ".CY", 21, 0},
    {Family::Office, "Proprietes", "Categorie", ".CA", 22, SH},
    {Family::Office, "Proprietes", "Securite", ".SE", 23, NU},
    {Family::Office, "Proprietes", "Cree", ".CD", 39, SH | DA},
    {Family::Office, "Proprietes", "DerniereSauvegarde", ".MD", 40, SH | DA},
    {Family::Office, "Proprietes", "DerniereImpression", ".PD", 41, DA},
    {Family::Office, "Proprietes", "TempsEdition", ".ED", 27, SH},
    // The user-defined slots ".P0" to ".P13" stand here.
    {Family::OpenOffice, "OpenOffice", "OOPrintedBy", ".PB", 46, 0},
    {Family::OpenOffice, "OpenOffice", "OOLanguage", ".LG", 48, 0},
    {Family::OpenOffice, "OpenOffice", "OOTables", ".TA", 58, 0},
    {Family::OpenOffice, "OpenOffice", "OODraws", ".DR", 59, 0},
    {Family::OpenOffice, "OpenOffice", "OOOle", ".OL", 60, 0},
    {Family::OpenOffice, "OpenOffice", "OOCells", ".CE", 61, 0},
    {Family::OpenOffice, "OpenOffice", "OOObjects", ".OB", 62, 0},
    {Family::Html, "HTMLMeta", "Publisher", ".PU", 113, 0},
    {Family::Html, "HTMLMeta", "Contributor", ".HC", 114, 0},
    {Family::Html, "HTMLMeta", "Type", ".TY", 116, 0},
    {Family::Html, "HTMLMeta", "Format", ".FO", 117, 0},
    {Family::Html, "HTMLMeta", "Identifier", ".ID", 118, 0},
    {Family::Html, "HTMLMeta", "Source", ".SO", 119, 0},
    {Family::Html, "HTMLMeta", "Relation", ".RE", 121, 0},
    {Family::Html, "HTMLMeta", "Coverage", ".CV", 122, 0},
    {Family::Pdf, "PDF", "PDFEncrypted", ".EN", 63, 0},
    {Family::Pdf, "PDF", "PDFVersion", ".VE", 64, 0},
    {Family::Pdf, "PDF", "PDFProducer", ".PR", 66, 0},
    {Family::Iptc, "IPTC", "IPTCEditStatus", ".ST", 68, 0},
    {Family::Iptc, "IPTC", "IPTCPriority", ".PY", 69, 0},
    {Family::Iptc, "IPTC", "IPTCSupplementalCategory", ".SC", 71, 0},
    {Family::Iptc, "IPTC", "IPTCFixtureIdentifier", ".FI", 72, 0},
    {Family::Iptc, "IPTC", "IPTCReleaseDate", ".LD", 74, 0},
    {Family::Iptc, "IPTC", "IPTCReleaseTime", ".LT", 75, 0},
    {Family::Iptc, "IPTC", "IPTCSpecialInstructions", ".SI", 76, 0},
    {Family::Iptc, "IPTC", "IPTCReferenceService", ".RS", 77, 0},
    {Family::Iptc, "IPTC", "IPTCReferenceDate", ".RD", 78, 0},
    {Family::Iptc, "IPTC", "IPTCReferenceNumber", ".RN", 79, 0},
    {Family::Iptc, "IPTC", "IPTCCreatedTime", ".CT", 81, 0},
    {Family::Iptc, "IPTC", "IPTCOriginatingProgram", ".OP", 82, 0},
    {Family::Iptc, "IPTC", "IPTCProgramVersion", ".PV", 83, 0},
    {Family::Iptc, "IPTC", "IPTCObjectCycle", ".OC", 84, 0},
    {Family::Iptc, "IPTC", "IPTCBylineTitle", ".BT", 86, 0},
    {Family::Iptc, "IPTC", "IPTCCity", ".CI", 87, 0},
    {Family::Iptc, "IPTC", "IPTCProvinceState", ".PS", 88, 0},
    {Family::Iptc, "IPTC", "IPTCCountryCode", ".CC", 89, 0},
    {Family::Iptc, "IPTC", "IPTCCountry", ".CO", 90, 0},
    {Family::Iptc, "IPTC", "IPTCOriginalTransmissionReference", ".TR", 91, 0},
    {Family::Iptc, "IPTC", "IPTCCredit", ".CR", 93, 0},
    {Family::Iptc, "IPTC", "IPTCSource", ".SR", 94, 0},
    {Family::Iptc, "IPTC", "IPTCCopyright", ".CP", 95, 0},
    {Family::Iptc, "IPTC", "IPTCContact", ".CN", 96, 0},
    {Family::Iptc, "IPTC", "IPTCLocalCaption", ".LC", 98, 0},
    {Family::Iptc, "IPTC", "IPTCCaptionWriter", ".CW", 99, 0},
    {Family::Iptc, "IPTC", "IPTCImageType", ".IT", 100, 0},
};

constexpr int kFirstOpenOfficeField = 27;
static_assert(kFields[kFirstOpenOfficeField - 1].family == Family::Office);
static_assert(kFields[kFirstOpenOfficeField].family == Family::OpenOffice);

}  // namespace

std::span<const FieldInfo> FieldTable() { return kFields; }

int UserSlotsPosition() { return kFirstOpenOfficeField; }

const QStringList& NumericCaptions()
{
    static const QStringList captions = {
        QStringLiteral("Revision"),    QStringLiteral("Révision"),   QStringLiteral("Pages"),
        QStringLiteral("Lignes"),      QStringLiteral("Lines"),      QStringLiteral("Mots"),
        QStringLiteral("Words"),       QStringLiteral("Caractères"), QStringLiteral("Characters"),
        QStringLiteral("Octets"),      QStringLiteral("Bytes"),      QStringLiteral("Notes"),
        QStringLiteral("Paragraphes"), QStringLiteral("Paragraphs"), QStringLiteral("Diapositives"),
        QStringLiteral("Slides"),      QStringLiteral("Sécurité"),   QStringLiteral("Security"),
    };
    return captions;
}

}  // namespace brindar
