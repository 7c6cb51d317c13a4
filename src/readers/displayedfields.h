// The displayed-metadata dialog as data: which switch each tab shows under which label,
// read from and written to the configuration. A shared column is one switch on every tab
// whose reader fills it; its family label keys are written equal to it.
#pragma once

#include "core/inifile.h"
#include "core/settings.h"

#include <QHash>
#include <QList>
#include <QString>
#include <array>
#include <optional>

namespace brindar {

enum class MetadataTab { Office, UserDefined, OpenOffice, Html, Pdf, Iptc, Xmp };
inline constexpr int kMetadataTabCount = 7;
inline constexpr int kUserSlots = 14;

struct DisplayedFieldRow {
    MetadataTab tab;
    QString code;  // the column code whose switch the row shows
    int caption;   // its label on this tab, in the [Metadata] table
    bool shared;   // a cross-tabs column: the same switch on other tabs
};

// Every tab's rows but the user-defined slots, in field-table order within a tab.
const QList<DisplayedFieldRow>& DisplayedFieldsLayout();

// The switches of a configuration: by column code, the 14 slots, "Macintosh accents".
struct DisplayedFields {
    QHash<QString, bool> shown;
    std::array<QString, kUserSlots> names;
    std::array<bool, kUserSlots> slotShown{};
    bool macintoshAccents = false;
};
DisplayedFields DisplayedFieldsOf(const IniDocument& configuration);
// Every switch of the field table, the 14 slots, "IPTCMacXML" and the PDF and IPTC label
// keys (equal to their shared switch), to write in one replace.
SettingsChange DisplayedFieldsChange(const DisplayedFields& fields);
// The grid's columns these switches make, the document column included.
int ColumnCount(const DisplayedFields& fields);

}  // namespace brindar
