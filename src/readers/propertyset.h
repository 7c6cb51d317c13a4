// OLE property sets: the sections of a SummaryInformation-style stream and their values.
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QUuid>
#include <QVariant>
#include <optional>

namespace brindar {

// Property types the documents use.
enum VarType : quint16 {
    VT_EMPTY = 0, VT_I2 = 2, VT_I4 = 3, VT_R4 = 4, VT_R8 = 5, VT_DATE = 7, VT_BOOL = 11,
    VT_VARIANT = 12, VT_I1 = 16, VT_UI1 = 17, VT_UI2 = 18, VT_UI4 = 19, VT_I8 = 20, VT_UI8 = 21,
    VT_INT = 22, VT_UINT = 23, VT_LPSTR = 30, VT_LPWSTR = 31, VT_FILETIME = 64, VT_VECTOR = 0x1000,
};

struct PropertyValue {
    quint16 type = VT_EMPTY;
    // The value as stored (type, padding and data), kept so that a property set written
    // back holds every property it does not change byte for byte, thumbnails included.
    QByteArray raw;
    // QString for strings, qint64 for integers and file times (100 ns ticks since 1601,
    // as stored), bool, double (VT_R8, and VT_DATE as days since 1899-12-30), QStringList
    // for vectors of strings. Invalid for the types this reader does not decode.
    QVariant value;
};

struct PropertySection {
    QUuid formatId;
    QList<quint32> order;                   // the property ids in stored order
    int codePage = 1252;                    // property 1; strings of the section use it
    QMap<quint32, PropertyValue> values;    // by property id, in id order
    QList<std::pair<quint32, QString>> dictionary;  // property 0: ids and names, in stored order
};

inline const QUuid kSummaryInformation{0xF29F85E0, 0x4FF9, 0x1068, 0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9};
inline const QUuid kDocumentSummaryInformation{0xD5CDD502, 0x2E9C, 0x101B, 0x93, 0x97, 0x08, 0x00, 0x2B, 0x2C, 0xF9, 0xAE};
inline const QUuid kUserDefinedProperties{0xD5CDD505, 0x2E9C, 0x101B, 0x93, 0x97, 0x08, 0x00, 0x2B, 0x2C, 0xF9, 0xAE};

struct PropertySet {
    QByteArray header;  // byte order, version, system and class ids, as stored (24 bytes)
    QList<PropertySection> sections;
    PropertySection* section(const QUuid& id);
};

// Parses a property-set stream. Nothing when its header is not one; a section or value
// that is damaged is left out and the rest stands.
std::optional<PropertySet> ParsePropertySet(const QByteArray& stream);

// Writes a property set back. Values keep their stored bytes unless `raw` is empty, in
// which case they are encoded from `type` and `value` (strings in the section's code
// page when it holds them without loss, else as wide strings). The dictionary and the
// code page property are written from `dictionary` and `codePage`.
QByteArray SerializePropertySet(const PropertySet& set);

// A fresh property set holding empty sections of these format ids (code page 1252).
PropertySet NewPropertySet(const QList<QUuid>& sections);

}  // namespace brindar
