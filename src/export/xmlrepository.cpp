// The XML repository: where it is, what it lists, seeding it and emptying it.
#include "export/xmlrepository.h"

#include "core/atomicfile.h"
#include "core/inifile.h"
#include "platform/directory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

namespace brindar {

namespace {

// What "Empty repository" removes: the exports and what the viewer and the reports make
// of them; the XSL files are the user's work and stay.
constexpr const char* kRemovedExtensions[] = {"xml", "htm", "html", "txt", "rtf", "csv"};

bool HasExtension(const QString& name, QLatin1String extension)
{
    return name.size() > extension.size() && name.at(name.size() - extension.size() - 1) == u'.'
        && name.endsWith(extension, Qt::CaseInsensitive);
}

}  // namespace

QString XmlRepository(const IniDocument& configuration, const QString& settingsFolder)
{
    const QString stored = configuration.value(QStringLiteral("XML"), QStringLiteral("DirectoryFileXML"));
    // Only an absolute folder counts: a relative one would change with the folder the
    // program was started from.
    if (!stored.isEmpty() && QDir::isAbsolutePath(stored) && QFileInfo(stored).isDir())
        return QDir::cleanPath(stored);
    return QDir::cleanPath(settingsFolder + QStringLiteral("/xml"));
}

QStringList SeedXmlRepository(const QString& repository, const QString& dataFolder)
{
    if (!QDir().mkpath(repository))
        return {QStringLiteral("%1: cannot create the folder").arg(repository)};
    const QDir folder(repository);
    // Without a listing nothing can tell a user's file from a missing one, and a copy
    // could replace it.
    if (!folder.isReadable())
        return {QStringLiteral("%1: the folder cannot be listed").arg(repository)};
    const QString shippedFolder = dataFolder + QStringLiteral("/xsl");
    bool listed = false;
    const QList<DirectoryEntry> shipped = ListFiles(shippedFolder, &listed);
    if (!listed)
        return {QStringLiteral("%1: the shipped XSL files cannot be listed").arg(shippedFolder)};

    // Names are compared in upper case, as the repository's lists sort them: a user's
    // "table.xsl" already is the shipped "Table.xsl".
    QSet<QString> held;
    const QStringList present = folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& name : present)
        held.insert(name.toUpper());

    QStringList failures;
    for (const DirectoryEntry& entry : shipped) {
        if (!HasExtension(entry.name, QLatin1String("xsl")) || held.contains(entry.name.toUpper()))
            continue;
        QFile source(shippedFolder + u'/' + entry.name);
        if (!source.open(QIODevice::ReadOnly)) {
            failures.append(QStringLiteral("%1: %2").arg(source.fileName(), source.errorString()));
            continue;
        }
        const QByteArray bytes = source.readAll();
        if (source.error() != QFileDevice::NoError) {
            failures.append(QStringLiteral("%1: %2").arg(source.fileName(), source.errorString()));
            continue;
        }
        // Written rather than copied: the shipped file is read-only, the user's copy is
        // meant to be edited ("Edit XSL").
        if (const auto error = WriteFileAtomically(repository + u'/' + entry.name, bytes))
            failures.append(*error);
    }
    return failures;
}

QStringList ListRepository(const QString& repository, const QString& extension)
{
    QStringList names;
    bool listed = false;
    const QByteArray latin = extension.toLatin1();
    for (const DirectoryEntry& entry : ListFiles(repository, &listed)) {
        if (HasExtension(entry.name, QLatin1String(latin)))
            names.append(entry.name);
    }
    return names;
}

QStringList EmptyXmlRepository(const QString& repository)
{
    QStringList notRemoved;
    bool listed = false;
    // Sub-folders are never listed here, so nothing below the repository is touched.
    for (const DirectoryEntry& entry : ListFiles(repository, &listed)) {
        bool removable = false;
        for (const char* extension : kRemovedExtensions)
            removable = removable || HasExtension(entry.name, QLatin1String(extension));
        if (removable && !QFile::remove(repository + u'/' + entry.name))
            notRemoved.append(entry.name);
    }
    return notRemoved;
}

}  // namespace brindar
