// The settings of one configuration file and the chooser that names it.
#pragma once

#include <QMap>
#include <QString>
#include <optional>

namespace brindar {

class IniDocument;

// The numeric conversion of the configuration files: optional blanks and sign, then the
// leading digits; text without digits reads as 0.
qint64 LeadingNumber(const QString& text);

// The system colour "highlight" in its stored form (0x8000000D as a signed 32-bit word).
inline constexpr qint32 kSystemHighlightColour = qint32(0x8000000D - 0x100000000LL);

struct Configuration {
    // [Configuration]
    QString langue = QStringLiteral("English");
    QString repertoire;
    bool inclureExtensions = false;
    QString extensionsSelected;
    QString extensionsExcluded;
    QString extensionsSelectedForModification;
    bool inclureTout = true;
    bool useNtfsCache = false;
    bool inclureOffice = false;
    bool inclureOO = false;
    bool inclurePdf = false;
    bool inclureHtml = false;
    bool inclureJpeg = false;
    bool inclureXmp = false;
    bool inclureCaches = true;
    bool surligner = true;
    bool surlignerProprietesPersonnelles = true;
    qint32 couleurSurlignage = kSystemHighlightColour;
    bool toolTips = true;
    bool contextuel = true;
    bool doubleClicProprietes = false;
    bool barreHorizontale = false;
    bool localTime = false;
    int lignesTexte = 1;
    QMap<int, int> largeur;  // column -> width, only the columns the file names
    std::optional<int> sort;
    std::optional<int> up;
    bool displayEmptyColumns = true;  // the grid's check boxes
    bool automaticUpdate = false;

    // [HTML]
    QString prefixeTableau = QStringLiteral("Brindar");
    bool ajouterDate = false;
    bool effacerAnciensTableaux = true;
    bool imagesSuivent = false;
    QString pathListeTableaux;
    bool indexListes = true;
    bool indexType = true;
    QString texteEnTete;
    QString texteEnTete2;
    QString imageEnTete;
    bool renvoiALaLigne = false;
    qint32 couleurTitre = 65535;
    QString imageFond;
    QString imageDebutTableau;
    bool totalDocuments = true;
    bool displayDirectory = true;
    QString textePied;
    QString textePied2;
    QString imagePied;

    // The extension of each image file, which the report writer needs when it copies
    // the image beside a report.
    QString imageEnTeteExtension;
    QString imageFondExtension;
    QString imageDebutTableauExtension;
    QString imagePiedExtension;
};

// Reads every key with its default and reading rule. `nt` is the NT-platform flag:
// without it the metadata cache is forced off.
Configuration ReadConfiguration(const IniDocument& file, bool nt);

// The file name's extension with its dot (".gif"), as copied images are named after it;
// empty when there is none.
QString ImageExtension(const QString& fileName);

// "ChoixConfiguration.ini": the configuration in use and the main window's placement.
struct Chooser {
    QString nom = QStringLiteral("Brindar");
    QString nomConditions = QStringLiteral("Brindar");
    std::optional<int> windowState;
    std::optional<int> left;
    std::optional<int> top;
    std::optional<int> width;
    std::optional<int> height;
    bool fullGrid = false;  // the grid alone, without the panel
    std::optional<int> panelWidth;
};

Chooser ReadChooser(const IniDocument& file);

}  // namespace brindar
