// The keys of the settings files, and writing a set of them at once: one table of names
// for every key the program reads or writes, used by the readers and the writers alike.
#pragma once

#include <QList>
#include <QString>
#include <optional>

namespace brindar {

struct FieldInfo;

// The file a key lives in: the configuration in use, or the chooser that names it.
enum class SettingsFile { Configuration, Chooser };

// One key: its file, its section and its name. An indexed key ("Largeur" 3, "chkPerso"
// 0, the column order's "1") has its number appended to its name.
struct SettingKey {
    SettingsFile file;
    const char* section;
    const char* name;

    QString sectionName() const { return QLatin1String(section); }
    QString keyName() const { return QLatin1String(name); }
    QString keyName(int index) const { return QLatin1String(name) + QString::number(index); }
};

namespace key {
constexpr SettingsFile kConf = SettingsFile::Configuration;
constexpr SettingsFile kChooser = SettingsFile::Chooser;

// The chooser, "ChoixConfiguration.ini".
inline constexpr SettingKey Nom{kChooser, "Configuration", "Nom"};
inline constexpr SettingKey NomConditions{kChooser, "Configuration", "NomConditions"};
inline constexpr SettingKey WindowState{kChooser, "MainWindow", "WindowState"};
inline constexpr SettingKey Left{kChooser, "MainWindow", "Left"};
inline constexpr SettingKey Top{kChooser, "MainWindow", "Top"};
inline constexpr SettingKey Width{kChooser, "MainWindow", "Width"};
inline constexpr SettingKey Height{kChooser, "MainWindow", "Height"};
inline constexpr SettingKey FullGrid{kChooser, "MainWindow", "FullGrid"};
inline constexpr SettingKey PanelWidth{kChooser, "MainWindow", "PanelWidth"};

// [Configuration] of a configuration file.
inline constexpr SettingKey Langue{kConf, "Configuration", "Langue"};
inline constexpr SettingKey Repertoire{kConf, "Configuration", "Repertoire"};
inline constexpr SettingKey InclureExtensions{kConf, "Configuration", "InclureExtensions"};
inline constexpr SettingKey ExtensionsSelected{kConf, "Configuration", "ExtensionsSelected"};
inline constexpr SettingKey ExtensionsExcluded{kConf, "Configuration", "ExtensionsExcluded"};
inline constexpr SettingKey ExtensionsSelectedForModification{kConf, "Configuration",
                                                              "ExtensionsSelectedForModification"};
inline constexpr SettingKey InclureTout{kConf, "Configuration", "InclureTout"};
inline constexpr SettingKey UseNTFSCache{kConf, "Configuration", "UseNTFSCache"};
inline constexpr SettingKey InclureOffice{kConf, "Configuration", "InclureOffice"};
inline constexpr SettingKey InclureOO{kConf, "Configuration", "InclureOO"};
inline constexpr SettingKey InclurePDF{kConf, "Configuration", "InclurePDF"};
inline constexpr SettingKey InclureHTML{kConf, "Configuration", "InclureHTML"};
inline constexpr SettingKey InclureJPEG{kConf, "Configuration", "InclureJPEG"};
inline constexpr SettingKey InclureXMP{kConf, "Configuration", "InclureXMP"};
inline constexpr SettingKey InclureCaches{kConf, "Configuration", "InclureCaches"};
inline constexpr SettingKey Surligner{kConf, "Configuration", "Surligner"};
inline constexpr SettingKey SurlignerProprietesPersonnelles{kConf, "Configuration",
                                                            "SurlignerProprietesPersonnelles"};
inline constexpr SettingKey CouleurSurlignage{kConf, "Configuration", "CouleurSurlignage"};
inline constexpr SettingKey ToolTips{kConf, "Configuration", "ToolTips"};
inline constexpr SettingKey Contextuel{kConf, "Configuration", "Contextuel"};
inline constexpr SettingKey DoubleClicProprietes{kConf, "Configuration", "DoubleClicProprietes"};
inline constexpr SettingKey BarreHorizontale{kConf, "Configuration", "BarreHorizontale"};
inline constexpr SettingKey LocalTime{kConf, "Configuration", "LocalTime"};
inline constexpr SettingKey LignesTexte{kConf, "Configuration", "LignesTexte"};
inline constexpr SettingKey Largeur{kConf, "Configuration", "Largeur"};  // + column number
inline constexpr SettingKey Sort{kConf, "Configuration", "Sort"};
inline constexpr SettingKey Up{kConf, "Configuration", "Up"};
inline constexpr SettingKey DisplayEmptyColumns{kConf, "Configuration", "DisplayEmptyColumns"};
inline constexpr SettingKey AutomaticUpdate{kConf, "Configuration", "AutomaticUpdate"};

// [HTML]: the reports.
inline constexpr SettingKey PrefixeTableau{kConf, "HTML", "PrefixeTableau"};
inline constexpr SettingKey AjouterDate{kConf, "HTML", "AjouterDate"};
inline constexpr SettingKey EffacerAnciensTableaux{kConf, "HTML", "EffacerAnciensTableaux"};
inline constexpr SettingKey ImagesSuivent{kConf, "HTML", "ImagesSuivent"};
inline constexpr SettingKey PathListeTableaux{kConf, "HTML", "PathListeTableaux"};
inline constexpr SettingKey IndexListes{kConf, "HTML", "IndexListes"};
inline constexpr SettingKey IndexType{kConf, "HTML", "IndexType"};
inline constexpr SettingKey TexteEnTete{kConf, "HTML", "TexteEnTete"};
inline constexpr SettingKey TexteEnTete2{kConf, "HTML", "TexteEnTete2"};
inline constexpr SettingKey ImageEnTete{kConf, "HTML", "ImageEnTete"};
inline constexpr SettingKey RenvoiALaLigne{kConf, "HTML", "RenvoiALaLigne"};
inline constexpr SettingKey CouleurTitre{kConf, "HTML", "CouleurTitre"};
inline constexpr SettingKey ImageFond{kConf, "HTML", "ImageFond"};
inline constexpr SettingKey ImageDebutTableau{kConf, "HTML", "ImageDebutTableau"};
inline constexpr SettingKey TotalDocuments{kConf, "HTML", "TotalDocuments"};
inline constexpr SettingKey DisplayDirectory{kConf, "HTML", "DisplayDirectory"};
inline constexpr SettingKey TextePied{kConf, "HTML", "TextePied"};
inline constexpr SettingKey TextePied2{kConf, "HTML", "TextePied2"};
inline constexpr SettingKey ImagePied{kConf, "HTML", "ImagePied"};

// [XML]: the XML export dialog and the Macintosh accents of IPTC texts.
inline constexpr SettingKey PrefixeXML{kConf, "XML", "PrefixeXML"};
inline constexpr SettingKey AjouterDateXML{kConf, "XML", "AjouterDateXML"};
inline constexpr SettingKey OfficeXML{kConf, "XML", "OfficeXML"};
inline constexpr SettingKey OOXML{kConf, "XML", "OOXML"};
inline constexpr SettingKey PDFXML{kConf, "XML", "PDFXML"};
inline constexpr SettingKey IPTCXML{kConf, "XML", "IPTCXML"};
inline constexpr SettingKey XMPXML{kConf, "XML", "XMPXML"};
inline constexpr SettingKey IPTCMacXML{kConf, "XML", "IPTCMacXML"};
inline constexpr SettingKey DirectoryXML{kConf, "XML", "DirectoryXML"};
inline constexpr SettingKey DirectoryFileXML{kConf, "XML", "DirectoryFileXML"};
inline constexpr SettingKey FileXSL{kConf, "XML", "FileXSL"};

// [Columns]: the column order of the reports, "NbColumns" then one key per position.
inline constexpr SettingKey NbColumns{kConf, "Columns", "NbColumns"};
inline constexpr SettingKey ColumnAt{kConf, "Columns", ""};  // + position, from 1

// [Personnelles]: the 14 user-defined slots.
inline constexpr SettingKey TextPerso{kConf, "Personnelles", "textPerso"};  // + slot
inline constexpr SettingKey ChkPerso{kConf, "Personnelles", "chkPerso"};    // + slot

// The family-specific labels of shared fields that the displayed-metadata dialog writes
// beside their shared switch; no column is built from them.
inline constexpr SettingKey PdfLabelKeys[] = {
    {kConf, "PDF", "PDFAuthor"}, {kConf, "PDF", "PDFCreationDate"}, {kConf, "PDF", "PDFModDate"},
    {kConf, "PDF", "PDFCreator"}, {kConf, "PDF", "PDFTitle"},       {kConf, "PDF", "PDFSubject"},
    {kConf, "PDF", "PDFKeywords"},
};
inline constexpr SettingKey IptcLabelKeys[] = {
    {kConf, "IPTC", "IPTCCategory"}, {kConf, "IPTC", "IPTCKeywords"}, {kConf, "IPTC", "IPTCCreatedDate"},
    {kConf, "IPTC", "IPTCByline"},   {kConf, "IPTC", "IPTCHeadline"}, {kConf, "IPTC", "IPTCCaption"},
};
}  // namespace key

// The switch of a field of the field table ("1" = displayed).
SettingKey FieldKey(const FieldInfo& field);

// A set of keys to write together: each file they live in is read again, changed and
// replaced once, so that either every key of a file is written or none is.
class SettingsChange {
public:
    SettingsChange& set(const SettingKey& key, const QString& value);
    SettingsChange& set(const SettingKey& key, int index, const QString& value);
    // Booleans are written "1" and "0", numbers in decimal.
    SettingsChange& setBool(const SettingKey& key, bool value);
    SettingsChange& setNumber(const SettingKey& key, qint64 value);
    SettingsChange& setNumber(const SettingKey& key, int index, qint64 value);
    // Every key of `other` after these.
    SettingsChange& add(const SettingsChange& other);

    struct Entry {
        SettingsFile file;
        QString section;
        QString key;
        QString value;
    };
    const QList<Entry>& entries() const { return entries_; }
    bool isEmpty() const { return entries_.isEmpty(); }
    bool touches(SettingsFile file) const;

private:
    QList<Entry> entries_;
};

// Writes `change` into the configuration file and the chooser at these paths. Writes
// are serialised across the whole process, and each file is read again under that lock,
// so two threads writing different keys lose neither. Returns the reason when a file
// cannot be written; that file is then as it was.
std::optional<QString> WriteSettings(const QString& configurationPath, const QString& chooserPath,
                                     const SettingsChange& change);

}  // namespace brindar
