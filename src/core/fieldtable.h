// The fixed table of metadata fields: family, switch key, column code, caption.
#pragma once

#include <QString>
#include <QStringList>
#include <span>

namespace brindar {

enum class Family { Office, UserDefined, OpenOffice, Html, Pdf, Iptc };

enum FieldNote : unsigned {
    kNoteNone = 0,
    kNoteShared = 1u << 0,  // the "cross-tabs common metadata" columns
    kNoteNumeric = 1u << 1,
    kNoteDate = 1u << 2,
    kNoteNtOnly = 1u << 3,  // Macintosh comments exist on the NT platform only
};

struct FieldInfo {
    Family family;
    const char* section;  // INI section of the switch
    const char* key;      // INI key of the switch ("1" = displayed)
    const char* code;     // column code, ".TI"
    int caption;          // number in the [Metadata] caption table
    unsigned notes;       // FieldNote bits
};

// The Office fields, then the OpenOffice, HTML, PDF and IPTC ones, in grid order.
// The 14 user-defined slots stand between the Office and the OpenOffice fields.
std::span<const FieldInfo> FieldTable();

inline constexpr int kUserSlotCount = 14;
// Index in FieldTable() before which the user-defined slots stand.
int UserSlotsPosition();

// Captions compared exactly with a column's header to decide that it sorts as a number.
// Fixed text, not from the language file.
const QStringList& NumericCaptions();

// The family labels joined into the "Selection:" summary, in this order.
inline constexpr const char* kFamilyShortLabels[] = {"MS", "OOO", "HTML", "PDF", "IPTC", "XMP"};

}  // namespace brindar
