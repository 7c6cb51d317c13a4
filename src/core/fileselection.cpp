// The displayed-files settings.
#include "core/fileselection.h"

#include "core/captionids.h"
#include "core/fieldtable.h"

#include <QStringList>

namespace brindar {
namespace {

struct FamilyInfo {
    GatheredFamily family;
    SettingKey key;
    bool Configuration::*value;
    int label;  // its place in the summary's labels
};

const FamilyInfo kFamilies[kFamilyCount] = {
    {GatheredFamily::Office, key::InclureOffice, &Configuration::inclureOffice, 0},
    {GatheredFamily::OpenOffice, key::InclureOO, &Configuration::inclureOO, 1},
    {GatheredFamily::Pdf, key::InclurePDF, &Configuration::inclurePdf, 3},
    {GatheredFamily::Html, key::InclureHTML, &Configuration::inclureHtml, 2},
    {GatheredFamily::Iptc, key::InclureJPEG, &Configuration::inclureJpeg, 4},
    {GatheredFamily::Xmp, key::InclureXMP, &Configuration::inclureXmp, 5},
};

QString WithoutBlanks(QString text)
{
    text.remove(u' ');
    text.remove(u'\t');
    return text;
}

}  // namespace

FileSelection FileSelectionOf(const Configuration& c)
{
    FileSelection selection;
    selection.inclureTout = c.inclureTout;
    selection.inclureExtensions = c.inclureExtensions;
    selection.extensionsSelected = c.extensionsSelected;
    selection.extensionsExcluded = c.extensionsExcluded;
    selection.inclureCaches = c.inclureCaches;
    for (int i = 0; i < kFamilyCount; ++i)
        selection.families[i] = c.*kFamilies[i].value;
    return selection;
}

bool GathersFamily(bool inclureTout, bool inclureExtensions, bool familySwitch)
{
    return inclureTout || inclureExtensions || familySwitch;
}

bool GathersFamily(const FileSelection& selection, GatheredFamily family)
{
    return GathersFamily(selection.inclureTout, selection.inclureExtensions, selection.families[int(family)]);
}

QString SelectionSummary(const FileSelection& selection)
{
    QStringList parts(kFamilyCount);
    for (const FamilyInfo& family : kFamilies)
        if (GathersFamily(selection, family.family))
            parts[family.label] = QLatin1String(kFamilyShortLabels[family.label]);
    parts.removeAll(QString());
    return parts.join(u'/');
}

std::optional<CaptionId> CheckFileSelection(const FileSelection& selection)
{
    if (selection.inclureExtensions && WithoutBlanks(selection.extensionsSelected).remove(u',').isEmpty() &&
        WithoutBlanks(selection.extensionsExcluded).remove(u',').isEmpty())
        return caption::TypeAnExtension;
    return std::nullopt;
}

SettingsChange FileSelectionChange(const FileSelection& selection)
{
    SettingsChange change;
    change.setBool(key::InclureExtensions, selection.inclureExtensions)
        .set(key::ExtensionsSelected, selection.extensionsSelected.trimmed())
        .set(key::ExtensionsExcluded, selection.extensionsExcluded.trimmed())
        .setBool(key::InclureTout, selection.inclureTout)
        .setBool(key::InclureCaches, selection.inclureCaches);
    for (const FamilyInfo& family : kFamilies)
        change.setBool(family.key, selection.families[int(family.family)]);
    return change;
}

}  // namespace brindar
