// The HTML meta reader: the title and the META / Dublin Core tags of an HTML page's head.
#pragma once

#include <QList>
#include <QString>
#include <utility>

namespace brindar {

class PagedFile;

// What one HTML page yields. A default-constructed value is the cleared result set.
struct HtmlMetaResult {
    QString title;  // <TITLE>, cleaned and entity-decoded

    // One value per recognised META name, in the order the names are tested; the first
    // matching row of that order wins for a tag.
    QString metaTitle;        // NAME="TITLE" or NAME="DC.TITLE...
    QString creator;          // NAME="AUTHOR" or NAME="DC.CREATOR...
    QString subjectKeywords;  // NAME="KEYWORDS" or NAME="DC.SUBJECT.KEYWORDS"
    QString subject;          // NAME="SUBJECT" or NAME="DC.SUBJECT...
    QString description;
    QString publisher;
    QString contributor;
    QString date;
    QString type;
    QString format;
    QString identifier;
    QString source;
    QString language;
    QString relation;
    QString coverage;
    QString rights;
    QString generator;  // NAME="GENERATOR"
    QString category;   // NAME="CATEGORY"

    // Every META tag of the head that has a NAME="..." and a CONTENT="..." attribute:
    // the name as written between its quotes and the cleaned content, in file order.
    // The scan looks user-defined properties up here by name.
    QList<std::pair<QString, QString>> metaTags;

    // The metadata fragment of the XML export: one element per value found.
    QString fragment;

    // A read failed part way: the caller shows "Error reading file ..."; the result holds
    // what was read before.
    bool shortRead = false;
};

// Reads the head of the page at `path` (up to "</HEAD>" or "<BODY>"). Never throws; an
// unreadable file gives the cleared result.
HtmlMetaResult ReadHtmlMeta(const QString& path);
// The same for a file already open, which another reader may share.
HtmlMetaResult ReadHtmlMeta(PagedFile& file);

// The cleaned value of the CONTENT="..." attribute of one tag, given as written and as
// its upper-case copy (same length); empty when there is none.
QString MetaContent(const QString& tag, const QString& upperTag);

// Replaces the entity names of accented letters and "&nbsp;"; other entities stay.
QString HtmlEntityDecode(const QString& text);

}  // namespace brindar
