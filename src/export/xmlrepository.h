// The XML repository: the folder that holds the XML exports and the XSL files.
#pragma once

#include <QString>
#include <QStringList>

namespace brindar {

class IniDocument;

// The repository in use: `DirectoryFileXML` of section `XML` when it names an existing
// folder, else the folder "xml" of the settings folder (which may not exist yet).
QString XmlRepository(const IniDocument& configuration, const QString& settingsFolder);

// Creates the repository when missing and copies into it every XSL file shipped in
// `dataFolder`/xsl that it does not hold yet, so a new repository offers the shipped
// transformations at once. A file the user already has is never replaced. Returns one
// message per failure; empty when everything went well.
QStringList SeedXmlRepository(const QString& repository, const QString& dataFolder);

// The names of the repository's files with the given extension ("xml", "xsl"; letter case
// ignored), in directory order. Empty when the repository cannot be listed.
QStringList ListRepository(const QString& repository, const QString& extension);

// "Empty repository": deletes the exports and the transformed pages (*.xml, *.htm,
// *.html, *.txt, *.rtf, *.csv) of the repository; the XSL files, every other file and
// the sub-folders stay. Returns the names that could not be removed.
QStringList EmptyXmlRepository(const QString& repository);

}  // namespace brindar
