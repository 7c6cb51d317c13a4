// The OpenOffice.org reader: the meta data of OpenOffice.org 1.x documents whose meta.xml is stored uncompressed.
#pragma once

#include <QList>
#include <QString>
#include <utility>

namespace brindar {

class PagedFile;

// How many user-defined fields a document yields at most; later ones are not read. The
// table is the one the scan looks the user-defined columns up in by name.
inline constexpr int kUserDefinedTableSize = 256;

// What one document yields. A default-constructed value is the cleared result set.
struct OpenOfficeResult {
    // Elements of office:meta, the text between the first opening tag and its closing tag.
    QString generator;        // meta:generator
    QString title;            // dc:title
    QString description;      // dc:description
    QString subject;          // dc:subject
    QString keyword;          // meta:keyword (the first one only)
    QString initialCreator;   // meta:initial-creator
    QString creator;          // dc:creator
    QString printedBy;        // meta:printed-by
    QString creationDate;     // meta:creation-date
    QString date;             // dc:date
    QString printDate;        // meta:print-date
    QString templateName;     // meta:template
    QString language;         // dc:language
    QString editingCycles;    // meta:editing-cycles
    QString editingDuration;  // meta:editing-duration

    // Attributes of meta:document-statistic.
    QString pageCount;       // meta:page-count
    QString tableCount;      // meta:table-count
    QString drawCount;       // meta:draw-count
    QString oleObjectCount;  // meta:ole-object-count
    QString paragraphCount;  // meta:paragraph-count
    QString wordCount;       // meta:word-count
    QString characterCount;  // meta:character-count
    QString rowCount;        // meta:row-count
    QString cellCount;       // meta:cell-count
    QString objectCount;     // meta:object-count

    // The meta:user-defined fields as (name, value), in document order, at most
    // kUserDefinedTableSize of them; a field with an empty name is kept too.
    QList<std::pair<QString, QString>> userDefined;

    // The metadata fragment of the XML export: one element per value found, each
    // followed by CR LF, in the order above.
    QString fragment;
    // The same elements split as the XML export places them: the dates (creation,
    // lastsave, lastprint, totaledit) go inside <datetime>, everything else inside
    // <summary>.
    QString dateFragment;
    QString summaryFragment;

    // A read failed part way: the caller shows "Error reading file ..."; the result holds
    // what the bytes that could be read gave.
    bool shortRead = false;
};

// Reads the file at `path`: a file whose first byte is "P" or whose second is "K" is
// searched for the text of an uncompressed meta.xml. Never throws; any other file, or
// one whose meta.xml is compressed, gives the cleared result.
OpenOfficeResult ReadOpenOfficeMeta(const QString& path);
// The same for a file already open, which another reader may share.
OpenOfficeResult ReadOpenOfficeMeta(PagedFile& file);

}  // namespace brindar
