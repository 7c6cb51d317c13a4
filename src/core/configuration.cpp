// Reading a configuration file: one table of keys with their types and defaults.
#include "core/configuration.h"

#include "core/inifile.h"
#include "core/paths.h"
#include "core/settings.h"

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
    const SettingKey& setting;
    std::variant<BoolKey, TextKey, ColourKey> kind;
};

using C = Configuration;

const KeyRow kKeys[] = {
    {key::Langue, TextKey{&C::langue, false}},
    {key::Repertoire, TextKey{&C::repertoire, false}},
    {key::InclureExtensions, BoolKey{&C::inclureExtensions, BoolRule::OnlyOneTurnsOn}},
    {key::ExtensionsSelected, TextKey{&C::extensionsSelected, true}},
    {key::ExtensionsExcluded, TextKey{&C::extensionsExcluded, true}},
    {key::ExtensionsSelectedForModification, TextKey{&C::extensionsSelectedForModification, true}},
    {key::InclureTout, BoolKey{&C::inclureTout, BoolRule::AnyButOneTurnsOff}},
    {key::UseNTFSCache, BoolKey{&C::useNtfsCache, BoolRule::OnlyOneTurnsOn}},
    {key::InclureOffice, BoolKey{&C::inclureOffice, BoolRule::OnlyOneTurnsOn}},
    {key::InclureOO, BoolKey{&C::inclureOO, BoolRule::OnlyOneTurnsOn}},
    {key::InclurePDF, BoolKey{&C::inclurePdf, BoolRule::OnlyOneTurnsOn}},
    {key::InclureHTML, BoolKey{&C::inclureHtml, BoolRule::OnlyOneTurnsOn}},
    {key::InclureJPEG, BoolKey{&C::inclureJpeg, BoolRule::OnlyOneTurnsOn}},
    {key::InclureXMP, BoolKey{&C::inclureXmp, BoolRule::OnlyOneTurnsOn}},
    {key::InclureCaches, BoolKey{&C::inclureCaches, BoolRule::OnlyZeroTurnsOff}},
    {key::Surligner, BoolKey{&C::surligner, BoolRule::OnlyZeroTurnsOff}},
    {key::SurlignerProprietesPersonnelles, BoolKey{&C::surlignerProprietesPersonnelles, BoolRule::OnlyZeroTurnsOff}},
    {key::CouleurSurlignage, ColourKey{&C::couleurSurlignage}},
    {key::ToolTips, BoolKey{&C::toolTips, BoolRule::CannotTurnOff}},
    {key::Contextuel, BoolKey{&C::contextuel, BoolRule::CannotTurnOff}},
    {key::DoubleClicProprietes, BoolKey{&C::doubleClicProprietes, BoolRule::OnlyOneTurnsOn}},
    {key::BarreHorizontale, BoolKey{&C::barreHorizontale, BoolRule::OnlyOneTurnsOn}},
    {key::LocalTime, BoolKey{&C::localTime, BoolRule::OnlyOneTurnsOn}},
    {key::DisplayEmptyColumns, BoolKey{&C::displayEmptyColumns, BoolRule::OnlyZeroTurnsOff}},
    {key::AutomaticUpdate, BoolKey{&C::automaticUpdate, BoolRule::OnlyOneTurnsOn}},
    {key::PrefixeTableau, TextKey{&C::prefixeTableau, false}},
    {key::AjouterDate, BoolKey{&C::ajouterDate, BoolRule::OnlyOneTurnsOn}},
    {key::EffacerAnciensTableaux, BoolKey{&C::effacerAnciensTableaux, BoolRule::CannotTurnOff}},
    {key::ImagesSuivent, BoolKey{&C::imagesSuivent, BoolRule::OnlyOneTurnsOn}},
    {key::PathListeTableaux, TextKey{&C::pathListeTableaux, false}},
    {key::IndexListes, BoolKey{&C::indexListes, BoolRule::OnlyZeroTurnsOff}},
    {key::IndexType, BoolKey{&C::indexType, BoolRule::OnlyZeroTurnsOff}},
    {key::TexteEnTete, TextKey{&C::texteEnTete, false}},
    {key::TexteEnTete2, TextKey{&C::texteEnTete2, false}},
    {key::ImageEnTete, TextKey{&C::imageEnTete, false}},
    {key::RenvoiALaLigne, BoolKey{&C::renvoiALaLigne, BoolRule::OnlyOneTurnsOn}},
    {key::CouleurTitre, ColourKey{&C::couleurTitre}},
    {key::ImageFond, TextKey{&C::imageFond, false}},
    {key::ImageDebutTableau, TextKey{&C::imageDebutTableau, false}},
    {key::TotalDocuments, BoolKey{&C::totalDocuments, BoolRule::OnlyZeroTurnsOff}},
    {key::DisplayDirectory, BoolKey{&C::displayDirectory, BoolRule::OnlyZeroTurnsOff}},
    {key::TextePied, TextKey{&C::textePied, false}},
    {key::TextePied2, TextKey{&C::textePied2, false}},
    {key::ImagePied, TextKey{&C::imagePied, false}},
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

std::optional<int> OptionalInt(const IniDocument& file, const SettingKey& setting, int index = -1)
{
    const QString value = file.value(setting.sectionName(), index < 0 ? setting.keyName() : setting.keyName(index));
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
        const QString value = file.value(row.setting.sectionName(), row.setting.keyName());
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

    const std::optional<int> lines = OptionalInt(file, key::LignesTexte);
    c.lignesTexte = lines && *lines >= 1 && *lines <= 5 ? *lines : 1;
    for (int column = 0; column < kMaxColumns; ++column)
        if (auto width = OptionalInt(file, key::Largeur, column))
            c.largeur.insert(column, *width);
    c.sort = OptionalInt(file, key::Sort);
    c.up = OptionalInt(file, key::Up);

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
    chooser.windowState = OptionalInt(file, key::WindowState);
    chooser.left = OptionalInt(file, key::Left);
    chooser.top = OptionalInt(file, key::Top);
    chooser.width = OptionalInt(file, key::Width);
    chooser.height = OptionalInt(file, key::Height);
    chooser.fullGrid = OptionalInt(file, key::FullGrid).value_or(0) == 1;
    chooser.panelWidth = OptionalInt(file, key::PanelWidth);
    // A name that could leave the settings folder ("../x") is not a configuration name.
    const auto name = [&](const SettingKey& setting, QString& into) {
        if (QString value = file.value(setting.sectionName(), setting.keyName());
            !value.isEmpty() && !HasForbiddenCharacters(value))
            into = value;
    };
    name(key::Nom, chooser.nom);
    name(key::NomConditions, chooser.nomConditions);
    return chooser;
}

}  // namespace brindar
