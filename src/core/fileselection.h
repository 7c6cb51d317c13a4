// The files a scan lists and the metadata it gathers: the displayed-files settings, the
// rule that opens a family's reader, their summary, their check and their writer.
#pragma once

#include "core/configuration.h"
#include "core/settings.h"

#include <QString>
#include <array>
#include <optional>

namespace brindar {

struct CaptionId;

// The six families of the displayed-files dialog, in its order.
enum class GatheredFamily { Office, OpenOffice, Pdf, Html, Iptc, Xmp };
inline constexpr int kFamilyCount = 6;

struct FileSelection {
    bool inclureTout = true;
    bool inclureExtensions = false;
    QString extensionsSelected;
    QString extensionsExcluded;
    bool inclureCaches = true;
    std::array<bool, kFamilyCount> families{};
};

FileSelection FileSelectionOf(const Configuration& configuration);

// Whether a family's metadata is gathered: "InclureTout" or the extension filter gather
// every family; else the family's own switch decides.
bool GathersFamily(bool inclureTout, bool inclureExtensions, bool familySwitch);
bool GathersFamily(const FileSelection& selection, GatheredFamily family);

// The gathered families joined with "/": "MS/OOO/HTML/PDF/IPTC/XMP" when all are.
QString SelectionSummary(const FileSelection& selection);

// The message to show instead of saving: the filter is on and both lists are empty.
std::optional<CaptionId> CheckFileSelection(const FileSelection& selection);

// The eleven keys of the displayed-files dialog, to write in one replace.
SettingsChange FileSelectionChange(const FileSelection& selection);

}  // namespace brindar
