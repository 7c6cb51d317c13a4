// The XML export: the metadata of a whole directory tree in one document, written line
// by line as the tree is walked.
#pragma once

#include "core/language.h"
#include "platform/fileinfo.h"

#include <QDateTime>
#include <QIODevice>
#include <QString>
#include <QStringList>
#include <atomic>
#include <functional>
#include <optional>

namespace brindar {

// Which families get their metadata block (`OfficeXML` also switches HTML files).
struct XmlFamilies {
    bool office = true;      // OfficeXML
    bool openOffice = true;  // OOXML
    bool pdf = true;         // PDFXML
    bool iptc = true;        // IPTCXML
    bool xmp = true;         // XMPXML
};

struct XmlExportOptions {
    XmlFamilies families;
    bool macintoshAccents = false;  // IPTCMacXML
    bool nt = true;                 // comment streams and the accent repair of user properties
    bool ntfs = false;              // the NTFS flag: the Office open mode
    bool ntfsVolume = false;        // the tree is on NTFS: attributes and short names to read
    bool localTime = false;         // Office dates as local time, as the grid shows them
};

struct XmlExportProgress {
    int directories = 0;
    int files = 0;
    QString directory;  // the path of the folder being written
    QString file;       // the long name of the file just written
};

// The recursive writer and its state: one object per export.
class XmlExport {
public:
    XmlExport(QIODevice& out, const XmlExportOptions& options, const Captions& captions);

    // Writes the <dir> element of `path` (a folder path ending with "/"), its files and,
    // after them, its subfolders. Folders whose name begins with "." are not entered.
    void ExportXmlDirectory(const QString& path);

    // Set from another thread to stop: the walk returns at once and leaves every open
    // <dir> unclosed, so a stopped document is, by design, not well-formed.
    const std::atomic<bool>* stopRequested = nullptr;
    std::function<void(const XmlExportProgress&)> onProgress;

    int elementId = 0;
    int directoryCount = 0;
    int fileCount = 0;
    bool stopped() const { return stopped_; }
    // Read errors of the readers, in the caller's words ("Error reading file ... path").
    QStringList messages;

    // One line of the document, ended by CR LF, in the export's code page.
    void writeLine(const QString& line);

private:
    void WriteFileSystemDatetime(const FolderEntry& entry);
    void exportDirectory(const QString& path, const FolderHandle& folder);
    // `source` opens the file (a path through its folder's handle in a deep tree),
    // `fullPath` names it.
    void writeFile(const QString& path, const FolderEntry& entry, const FolderHandle& folder);
    QString officeBlock(const QString& source, const FolderEntry& entry);
    void xmpBlock(const QString& source, const QString& fullPath);
    void pdfBlock(const QString& source, const QString& fullPath);
    bool shouldStop();
    void readFailed(bool failed, const QString& path);

    QIODevice& out_;
    XmlExportOptions options_;
    const Captions& captions_;
    bool stopped_ = false;
};

// UTF-8 encoded Latin-1 letters back to single characters: every "Â" removed, each "Ã"
// and the character after it made one character of code 64 higher.
QString RepairUtf8Accents(QString text);

// "2004/03/07 09:05:00"; empty for a time the system could not give.
QString FileSystemDate(const LocalTime& time);

// The prolog, the program comment and the <involume> line.
QStringList XmlDocumentHead(const QString& volumeLabel, const QString& fileSystem, const QString& dateText,
                            const QTime& time);
inline constexpr char16_t kXmlDocumentFoot[] = u"</involume>";

// A whole export of `directory` to the file `outputPath`: head, tree, foot. The file is
// written beside the target and renamed over it when the walk ends, stopped or not.
struct XmlExportResult {
    bool stopped = false;
    int directories = 0;
    int files = 0;
    std::optional<QString> writeError;  // the reason the file could not be written
    QStringList messages;
};
XmlExportResult WriteXmlExport(const QString& directory, const QString& outputPath, const XmlExportOptions& options,
                               const Captions& captions, const QDateTime& now,
                               const std::function<void(const XmlExportProgress&)>& onProgress = {},
                               const std::atomic<bool>* stopRequested = nullptr);

// The folder path the walk starts from: the folder followed by "/", so the root gives
// "//" and a root <dir> with an empty name.
QString ExportStartPath(const QString& directory);

}  // namespace brindar
