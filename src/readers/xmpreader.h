// The XMP reader: the first XMP packet embedded in any file, and its properties cut out by text search.
#pragma once

#include <QString>

namespace brindar {

class PagedFile;

// What one file's XMP packet yields. A default-constructed value is the cleared result set.
struct XmpResult {
    bool hasXmp = false;  // at least one property below was found
    QString packet;       // the decoded, unescaped and cleaned packet the XML export writes

    QString authorsPosition;        // photoshop:AuthorsPosition
    QString captionWriter;          // photoshop:CaptionWriter
    QString headline;               // photoshop:Headline
    QString instructions;           // photoshop:Instructions
    QString credit;                 // photoshop:Credit
    QString source;                 // photoshop:Source
    QString city;                   // photoshop:City
    QString state;                  // photoshop:State
    QString country;                // photoshop:Country
    QString dateCreated;            // xap:CreateDate, then photoshop:DateCreated
    QString transmissionReference;  // photoshop:TransmissionReference
    QString author;                 // xap:Author, then pdf:Author
    QString baseUrl;                // pdf:BaseURL
    QString creationDate;           // pdf:CreationDate
    QString creator;                // pdf:Creator
    QString keywords;               // the items of xap:Keywords joined by "; ", then pdf:Keywords
    QString modificationDate;       // xap:ModifyDate, then pdf:ModDate
    QString pdfVersion;             // pdf:PDFVersion
    QString producer;               // pdf:Producer
    QString description;            // xap:Description (x-default), then pdf:Subject
    QString title;                  // xap:Title (x-default), then pdf:Title
    QString creatorTool;            // xap:CreatorTool, then pdf:CreatorTool
    QString dcTitle;                // dc:title (x-default)
    QString dcCreator;              // the items of dc:creator joined by "; "
    QString dcDescription;          // dc:description (x-default)
    QString rights;                 // xapRights:Copyright, then dc:rights (x-default)
    QString dcSubject;              // the items of dc:subject joined by "; "

    // A read failed part way: the caller shows "Error reading file ..."; the result holds
    // what the bytes that could be read gave.
    bool shortRead = false;
};

// Finds the first packet of the file at `path` that opens with "<?xpacket begin='" and
// closes with "<?xpacket end='", and reads its properties. Never throws; a file without
// such a packet gives the cleared result. Reads the file once, a page at a time.
XmpResult ReadXmp(const QString& path);
// The same for a file already open, which another reader may share.
XmpResult ReadXmp(PagedFile& file);

}  // namespace brindar
