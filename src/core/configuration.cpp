// Reading a configuration file: one table of keys with their types and defaults.
#include "core/configuration.h"

#include "core/configurationfiles.h"
#include "core/inifile.h"

#include <QFileInfo>
#include <limits>
#include <variant>

namespace brindar {
namespace {

// How a boolean key turns its option on or off; the defaults live in Configuration.
enum class BoolRule {
    OnlyOneTurnsOn,    // default off: on only for exactly "1"
    OnlyZeroTurnsOff,  // default on: off only for exactly "0"
    AnyButOneTurnsOff, // "InclureTout": when present, anything but "1" turns it off
    CannotTurnOff,     // set on before the key is read; the key can only set it on again
};

struct BoolKey {
    bool Configuration::*member;
    BoolRule rule;
};
struct TextKey {
    QString Configuration::*member;
    bool removeBlanks;  // extension lists
};
struct ColourKey {
    qint32 Configuration::*member;
};

struct KeyRow {
    const char* section;
    const char* key;
    std::variant<BoolKey, TextKey, ColourKey> kind;
};

using C = Configuration;
constexpr const char* kConf = "Configuration";
constexpr const char* kHtml = "HTML";

const KeyRow kKeys[] = {
    {kConf, "Langue", TextKey{&C::langue, false}},
    {kConf, "Repertoire", TextKey{&C::repertoire, false}},
    {kConf, "InclureExtensions", BoolKey{&C::inclureExtensions, BoolRule::OnlyOneTurnsOn}},
    {kConf, "ExtensionsSelected", TextKey{&C::extensionsSelected, true}},
    {kConf, "ExtensionsExcluded", TextKey{&C::extensionsExcluded, true}},
    {kConf, "ExtensionsSelectedForModification", TextKey{&C::extensionsSelectedForModification, true}},
    {kConf, "InclureTout", BoolKey{&C::inclureTout, BoolRule::AnyButOneTurnsOff}},
    {kConf, "UseNTFSCache", BoolKey{&C::useNtfsCache, BoolRule::OnlyOneTurnsOn}},
    {kConf, "InclureOffice", BoolKey{&C::inclureOffice, BoolRule::OnlyOneTurnsOn}},
    {kConf, "InclureOO", BoolKey{&C::inclureOO, BoolRule::OnlyOneTurnsOn}},
    {kConf, "InclurePDF", BoolKey{&C::inclurePdf, BoolRule::OnlyOneTurnsOn}},
    {kConf, "InclureHTML", BoolKey{&C::inclureHtml, BoolRule::OnlyOneTurnsOn}},
    {kConf, "InclureJPEG", BoolKey{&C::inclureJpeg, BoolRule::OnlyOneTurnsOn}},
    {kConf, "InclureXMP", BoolKey{&C::inclureXmp, BoolRule::OnlyOneTurnsOn}},
    {kConf, "InclureCaches", BoolKey{&C::inclureCaches, BoolRule::OnlyZeroTurnsOff}},
    {kConf, "Surligner", BoolKey{&C::surligner, BoolRule::OnlyZeroTurnsOff}},
    {kConf, "SurlignerProprietesPersonnelles", BoolKey{&C::surlignerProprietesPersonnelles, BoolRule::OnlyZeroTurnsOff}},
    {kConf, "CouleurSurlignage", ColourKey{&C::couleurSurlignage}},
    {kConf, "ToolTips", BoolKey{&C::toolTips, BoolRule::CannotTurnOff}},
    {kConf, "Contextuel", BoolKey{&C::contextuel, BoolRule::CannotTurnOff}},
    {kConf, "DoubleClicProprietes", BoolKey{&C::doubleClicProprietes, BoolRule::OnlyOneTurnsOn}},
    {kConf, "BarreHorizontale", BoolKey{&C::barreHorizontale, BoolRule::OnlyOneTurnsOn}},
    {kConf, "LocalTime", BoolKey{&C::localTime, BoolRule::OnlyOneTurnsOn}},
    {kHtml, "PrefixeTableau", TextKey{&C::prefixeTableau, false}},
    {kHtml, "AjouterDate", BoolKey{&C::ajouterDate, BoolRule::OnlyOneTurnsOn}},
    {kHtml, "EffacerAnciensTableaux", BoolKey{&C::effacerAnciensTableaux, BoolRule::CannotTurnOff}},
    {kHtml, "ImagesSuivent", BoolKey{&C::imagesSuivent, BoolRule::OnlyOneTurnsOn}},
    {kHtml, "PathListeTableaux", TextKey{&C::pathListeTableaux, false}},
    {kHtml, "IndexListes", BoolKey{&C::indexListes, BoolRule::OnlyZeroTurnsOff}},
    {kHtml, "IndexType", BoolKey{&C::indexType, BoolRule::OnlyZeroTurnsOff}},
    {kHtml, "TexteEnTete", TextKey{&C::texteEnTete, false}},
    {kHtml, "TexteEnTete2", TextKey{&C::texteEnTete2, false}},
    {kHtml, "ImageEnTete", TextKey{&C::imageEnTete, false}},
    {kHtml, "RenvoiALaLigne", BoolKey{&C::renvoiALaLigne, BoolRule::OnlyOneTurnsOn}},
    {kHtml, "CouleurTitre", ColourKey{&C::couleurTitre}},
    {kHtml, "ImageFond", TextKey{&C::imageFond, false}},
    {kHtml, "ImageDebutTableau", TextKey{&C::imageDebutTableau, false}},
    {kHtml, "TotalDocuments", BoolKey{&C::totalDocuments, BoolRule::OnlyZeroTurnsOff}},
    {kHtml, "DisplayDirectory", BoolKey{&C::displayDirectory, BoolRule::OnlyZeroTurnsOff}},
    {kHtml, "TextePied", TextKey{&C::textePied, false}},
    {kHtml, "TextePied2", TextKey{&C::textePied2, false}},
    {kHtml, "ImagePied", TextKey{&C::imagePied, false}},
};

// The widest column number a "Largeur" key is looked for: the document column, every
// field and every user-defined slot.
constexpr int kMaxColumns = 128;

void ApplyBool(bool& option, BoolRule rule, const QString& value)
{
    switch (rule) {
    case BoolRule::OnlyOneTurnsOn:
        if (value == u"1")
            option = true;
        break;
    case BoolRule::OnlyZeroTurnsOff:
        if (value == u"0")
            option = false;
        break;
    case BoolRule::AnyButOneTurnsOff:
        if (!value.isEmpty())
            option = value == u"1";
        break;
    case BoolRule::CannotTurnOff:
        option = true;
        break;
    }
}

std::optional<int> OptionalInt(const IniDocument& file, const char* section, const QString& key)
{
    const QString value = file.value(QLatin1String(section), key);
    if (value.isEmpty())
        return std::nullopt;
    const qint64 number = LeadingNumber(value);
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
        return std::nullopt;
    return int(number);
}

}  // namespace

qint64 LeadingNumber(const QString& text)
{
    qsizetype i = 0;
    while (i < text.size() && (text[i] == u' ' || text[i] == u'\t'))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+'))
        negative = text[i++] == u'-';
    qint64 number = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
        // Past 18 digits the value no longer fits; what was read stands.
        if (number > (std::numeric_limits<qint64>::max() - 9) / 10)
            break;
        number = number * 10 + (text[i].unicode() - u'0');
    }
    return negative ? -number : number;
}

QString ImageExtension(const QString& fileName)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    return dot < 0 ? QString() : fileName.mid(dot);
}

Configuration ReadConfiguration(const IniDocument& file, bool nt)
{
    Configuration c;
    for (const KeyRow& row : kKeys) {
        const QString value = file.value(QLatin1String(row.section), QLatin1String(row.key));
        if (const auto* b = std::get_if<BoolKey>(&row.kind)) {
            ApplyBool(c.*(b->member), b->rule, value);
        } else if (const auto* t = std::get_if<TextKey>(&row.kind)) {
            if (!value.isEmpty())
                c.*(t->member) = t->removeBlanks ? QString(value).remove(u' ') : value;
        } else if (const auto* colour = std::get_if<ColourKey>(&row.kind)) {
            // A colour is a 32-bit word; system colours keep their negative high-bit form.
            if (!value.isEmpty())
                c.*(colour->member) = qint32(quint32(quint64(LeadingNumber(value))));
        }
    }
    if (!nt)
        c.useNtfsCache = false;

    const std::optional<int> lines = OptionalInt(file, kConf, QStringLiteral("LignesTexte"));
    c.lignesTexte = lines && *lines >= 1 && *lines <= 5 ? *lines : 1;
    for (int column = 0; column < kMaxColumns; ++column)
        if (auto width = OptionalInt(file, kConf, QStringLiteral("Largeur") + QString::number(column)))
            c.largeur.insert(column, *width);
    c.sort = OptionalInt(file, kConf, QStringLiteral("Sort"));
    c.up = OptionalInt(file, kConf, QStringLiteral("Up"));

    if (!c.pathListeTableaux.isEmpty() && !QFileInfo(c.pathListeTableaux).isDir())
        c.pathListeTableaux.clear();
    c.imageEnTeteExtension = ImageExtension(c.imageEnTete);
    c.imageFondExtension = ImageExtension(c.imageFond);
    c.imageDebutTableauExtension = ImageExtension(c.imageDebutTableau);
    c.imagePiedExtension = ImageExtension(c.imagePied);
    return c;
}

Chooser ReadChooser(const IniDocument& file)
{
    Chooser chooser;
    const char* main = "MainWindow";
    chooser.windowState = OptionalInt(file, main, QStringLiteral("WindowState"));
    chooser.left = OptionalInt(file, main, QStringLiteral("Left"));
    chooser.top = OptionalInt(file, main, QStringLiteral("Top"));
    chooser.width = OptionalInt(file, main, QStringLiteral("Width"));
    chooser.height = OptionalInt(file, main, QStringLiteral("Height"));
    const QString section = QStringLiteral("Configuration");
    // A name that could leave the settings folder ("../x") is not a configuration name.
    if (QString nom = file.value(section, QStringLiteral("Nom")); !nom.isEmpty() && !HasForbiddenCharacters(nom))
        chooser.nom = nom;
    if (QString conditions = file.value(section, QStringLiteral("NomConditions"));
        !conditions.isEmpty() && !HasForbiddenCharacters(conditions))
        chooser.nomConditions = conditions;
    return chooser;
}

}  // namespace brindar
