// The IPTC reader: the record 2 datasets of the Photoshop resource 0x0404 of a JPEG or TIFF.
#pragma once

#include <QString>

namespace brindar {

class PagedFile;

// What one image yields. A default-constructed value is the cleared result set. Each
// field holds the last value of its dataset, or for the datasets that may repeat every
// value joined with "; ".
struct IptcResult {
    QString objectName;                     // 2:05
    QString editStatus;                     // 2:07
    QString priority;                       // 2:10
    QString category;                       // 2:15
    QString supplementalCategory;           // 2:20, repeated
    QString fixtureIdentifier;              // 2:22
    QString keywords;                       // 2:25, repeated
    QString releaseDate;                    // 2:30
    QString releaseTime;                    // 2:35
    QString specialInstructions;            // 2:40
    QString referenceService;               // 2:45, repeated
    QString referenceDate;                  // 2:47, repeated
    QString referenceNumber;                // 2:50, repeated
    QString createdDate;                    // 2:55
    QString createdTime;                    // 2:60
    QString originatingProgram;             // 2:65
    QString programVersion;                 // 2:70
    QString objectCycle;                    // 2:75
    QString byline;                         // 2:80, repeated
    QString bylineTitle;                    // 2:85, repeated
    QString city;                           // 2:90
    QString provinceState;                  // 2:95
    QString countryCode;                    // 2:100
    QString country;                        // 2:101
    QString originalTransmissionReference;  // 2:103
    QString headline;                       // 2:105
    QString credit;                         // 2:110
    QString source;                         // 2:115
    QString copyright;                      // 2:116
    QString contact;                        // 2:118
    QString caption;                        // 2:120
    QString localCaption;                   // 2:121
    QString captionWriter;                  // 2:122, repeated
    QString imageType;                      // 2:130

    // The metadata fragment of the XML export: one element per dataset met, in file
    // order, one per occurrence, values escaped ("<keyword>sea</keyword>...").
    QString fragment;

    // A read failed part way (the file shrank or the disk failed): the caller shows
    // "Error reading file ..."; the values come from what could be read.
    bool shortRead = false;
    qint64 bytesRead = 0;  // how much of the file the reader needed
};

// Reads the datasets of the first image resource 0x0404 of the file at `path`: in a
// JPEG, looked for inside the APP13 segments; in any other file, anywhere. Values are
// taken byte for byte as Windows-1252 characters; with `macintoshAccents` on (the
// configuration's "IPTCMacXML"), the Mac OS Roman accents among them are converted.
// Never throws; a file without such a resource gives the cleared result.
IptcResult ReadIptc(const QString& path, bool macintoshAccents);
// The same for a file already open, which another reader may share.
IptcResult ReadIptc(PagedFile& file, bool macintoshAccents);

// The 0-based offset of the "8BIM" of the resource block that ReadIptc reads, or -1
// when the search finds none. Reads the file once at most, front to back.
qint64 FindIptcResource(PagedFile& file);

// With `macintoshAccents` off, the text unchanged. With it on, the characters that
// stand for Mac OS Roman accented letters and signs, read as Windows-1252, become the
// letters meant (byte 142, read as "Ž", becomes "é").
QString MacRomanToAnsi(const QString& text, bool macintoshAccents);

}  // namespace brindar
