// The XML export writer: folders, files and, by family, what the readers find in them.
#include "export/xmlexport.h"

#include "core/captionids.h"
#include "core/codepage.h"
#include "core/valuetext.h"
#include "readers/commentstream.h"
#include "readers/readertable.h"
#include "platform/filereplace.h"
#include "readers/text.h"
#include "version.h"


namespace brindar {

namespace {

// The export's switch of a file's family: HTML pages go with the Office documents, and
// a file of no family reader is an Office candidate.
bool Switched(ReaderBit reader, const XmlFamilies& on)
{
    switch (reader) {
    case kReaderOpenOffice: return on.openOffice;
    case kReaderPdf: return on.pdf;
    case kReaderIptc: return on.iptc;
    case kReaderXmp: return on.xmp;
    default: return on.office;
    }
}

QString Element(QStringView name, const QString& text)
{
    QString line;
    line.reserve(text.size() + 2 * name.size() + 5);
    line.append(u'<').append(name).append(u'>').append(text).append(u"</").append(name).append(u'>');
    return line;
}

QString TwoDigits(qint64 n) { return n < 10 ? u'0' + QString::number(n) : QString::number(n); }

// "02:05" from 125 minutes, "25:00" from 1,500.
QString TotalEditText(qint64 minutes)
{
    const qint64 hours = minutes / 60;
    return TwoDigits(hours) + u':' + TwoDigits(minutes - 60 * hours);
}

// The comment of a file or folder as the export writes it: at most 255 bytes of its
// comment stream, tabs as "-", escaped.
QString CommentStream(const QString& path)
{
    QString text = ReadComment(path, 255).value_or(QString());
    return text.isEmpty() ? text : XmlEscape(text.replace(u'\t', u'-'));
}

}  // namespace

QString RepairUtf8Accents(QString text)
{
    text.remove(CharOfCode(194));
    const QChar tilde = CharOfCode(195);
    for (qsizetype at = text.indexOf(tilde); at >= 0; at = text.indexOf(tilde, at)) {
        if (at == text.size() - 1) {
            text.chop(1);
            break;
        }
        // The character after "Ã" stands for the second byte of a UTF-8 pair: its code in
        // the 8-bit code page plus 64 is the letter meant ("Ã‰" is "É").
        const int code = static_cast<unsigned char>(EncodeWin1252(QStringView(text).sliced(at + 1, 1)).at(0)) + 64;
        if (code > 0xFF) {
            ++at;  // no UTF-8 pair: left as it is
            continue;
        }
        text.replace(at, 2, CharOfCode(static_cast<unsigned char>(code)));
    }
    return text;
}

QString FileSystemDate(const LocalTime& t)
{
    if (!t.valid())
        return QString();
    return QString::number(t.year) + u'/' + TwoDigits(t.month) + u'/' + TwoDigits(t.day) + u' ' + TwoDigits(t.hour)
           + u':' + TwoDigits(t.minute) + u':' + TwoDigits(t.second);
}

QStringList XmlDocumentHead(const QString& volumeLabel, const QString& fileSystem, const QString& dateText,
                            const QTime& time)
{
    return {
        QStringLiteral("<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>"),
        QStringLiteral("<!-- Created with %1 version %2 [Quorvane] -->")
            .arg(QLatin1String(kProgramTitle), QLatin1String(kProgramVersion)),
        QStringLiteral("<involume name=\"%1\" filesystem=\"%2\" dategeneration = \"%3 %4\">")
            .arg(CutAtNul(volumeLabel), CutAtNul(fileSystem), dateText,
                 time.toString(QStringLiteral("HH:mm"))),
    };
}

QString ExportStartPath(const QString& directory)
{
    return directory + u'/';
}

XmlExport::XmlExport(QIODevice& out, const XmlExportOptions& options, const Captions& captions)
    : out_(out), options_(options), captions_(captions)
{
}

void XmlExport::writeLine(const QString& line)
{
    QByteArray bytes = EncodeWin1252(line);
    bytes.append("\r\n", 2);
    out_.write(bytes);
}

bool XmlExport::shouldStop()
{
    if (!stopped_ && stopRequested && stopRequested->load(std::memory_order_relaxed))
        stopped_ = true;
    return stopped_;
}

void XmlExport::readFailed(bool failed, const QString& path)
{
    if (failed)
        messages.append(captions_.text(caption::ErrorReadingFile) + u' ' + path);
}

void XmlExport::ExportXmlDirectory(const QString& path)
{
    exportDirectory(path, FolderHandle::Open(path));
}

void XmlExport::exportDirectory(const QString& path, const FolderHandle& folder)
{
    if (shouldStop())
        return;
    const QString full = XmlEscape(path.chopped(1));
    const QString name = full.mid(full.lastIndexOf(u'/') + 1);
    writeLine(QStringLiteral("<dir>"));
    ++elementId;
    writeLine(QStringLiteral("<id>") + QString::number(elementId) + QStringLiteral("</id><name>") + name + QStringLiteral("</name><fullname>") + full
              + QStringLiteral("</fullname>"));
    ++directoryCount;
    if (onProgress)
        onProgress({directoryCount, fileCount, path, QString()});
    if (options_.nt)
        if (const QString comment = CommentStream(folder.openablePath(path + u'.')); !comment.isEmpty())
            writeLine(QStringLiteral("<maccomments>") + comment + QStringLiteral("</maccomments>"));

    // Only the names of the subfolders outlive the files' loop: memory follows the depth
    // of the tree, not its size.
    QStringList subfolders;
    {
        bool listed = false;
        const QList<FolderEntry> entries = folder.list(options_.ntfsVolume, &listed);
        for (const FolderEntry& entry : entries) {
            if (entry.directory) {
                if (!entry.name.startsWith(u'.'))
                    subfolders.append(entry.name);
            } else {
                writeFile(path, entry, folder);
            }
            if (shouldStop())
                return;
        }
    }
    for (const QString& subfolder : std::as_const(subfolders)) {
        exportDirectory(path + subfolder + u'/', folder.openChild(subfolder));
        if (stopped_)
            return;
    }
    if (!shouldStop())
        writeLine(QStringLiteral("</dir>"));
}

void XmlExport::writeFile(const QString& path, const FolderEntry& entry, const FolderHandle& folder)
{
    const QString& longName = entry.name;
    const QString& shortName = entry.shortName.isEmpty() ? longName : entry.shortName;
    const QString fullPath = path + longName;
    const QString source = folder.openablePath(fullPath);
    writeLine(QStringLiteral("<file>"));
    ++elementId;
    writeLine(QStringLiteral("<id>") + QString::number(elementId) + QStringLiteral("</id>"));
    QString extension;
    if (const qsizetype dot = longName.lastIndexOf(u'.'); dot >= 0) {
        extension = longName.mid(dot + 1);
        writeLine(QStringLiteral("<extension>") + XmlEscape(extension) + QStringLiteral("</extension>"));
        extension = extension.toUpper();
    }
    writeLine(QStringLiteral("<name>") + XmlEscape(longName) + QStringLiteral("</name>"));
    // PDF files keep their blanks in <fullname>; every other file has them as %20.
    const QString escapedPath = XmlEscape(fullPath);
    writeLine(QStringLiteral("<fullname>") + (extension == u"PDF" ? escapedPath : QString(escapedPath).replace(u' ', QStringLiteral("%20")))
              + QStringLiteral("</fullname>"));
    writeLine(QStringLiteral("<shortname>") + XmlEscape(shortName) + QStringLiteral("</shortname>"));
    writeLine(QStringLiteral("<size>") + QString::number(qint32(quint32(quint64(entry.size) & 0xFFFFFFFFu))) + QStringLiteral("</size>"));
    if (!entry.attributes.isEmpty())
        writeLine(QStringLiteral("<attributes>") + entry.attributes + QStringLiteral("</attributes>"));

    QString summary;
    const ReaderBit family = ReaderOfExtension(extension);
    const XmlFamilies& on = options_.families;
    if (Switched(family, on)) {
        switch (family) {
        case kReaderHtml: {
            WriteFileSystemDatetime(entry);
            const HtmlMetaResult html = ReadHtmlMeta(source);
            readFailed(html.shortRead, fullPath);
            if (!html.fragment.isEmpty())
                writeLine(QStringLiteral("<html>") + html.fragment + QStringLiteral("</html>"));
            break;
        }
        case kReaderOpenOffice: {
            const OpenOfficeResult meta = ReadOpenOfficeMeta(source);
            readFailed(meta.shortRead, fullPath);
            if (!meta.dateFragment.isEmpty()) {
                writeLine(QStringLiteral("<datetime>"));
                writeLine(meta.dateFragment);
                writeLine(QStringLiteral("</datetime>"));
            }
            summary = meta.summaryFragment;
            break;
        }
        case kReaderPdf:
            WriteFileSystemDatetime(entry);
            pdfBlock(source, fullPath);
            if (on.xmp)
                xmpBlock(source, fullPath);
            break;
        case kReaderIptc: {
            WriteFileSystemDatetime(entry);
            const IptcResult iptc = ReadIptc(source, options_.macintoshAccents);
            readFailed(iptc.shortRead, fullPath);
            if (!iptc.fragment.isEmpty())
                writeLine(QStringLiteral("<iptc>") + iptc.fragment + QStringLiteral("</iptc>"));
            if (on.xmp)
                xmpBlock(source, fullPath);
            break;
        }
        case kReaderXmp:
            WriteFileSystemDatetime(entry);
            xmpBlock(source, fullPath);
            break;
        default:
            summary = officeBlock(source, entry);
            break;
        }
    } else if (family == kReaderNone) {
        WriteFileSystemDatetime(entry);
    }
    if (!summary.isEmpty())
        writeLine(QStringLiteral("<summary>") + summary + QStringLiteral("</summary>"));
    if (options_.nt)
        if (const QString comment = CommentStream(source); !comment.isEmpty())
            writeLine(QStringLiteral("<maccomments>") + comment + QStringLiteral("</maccomments>"));
    writeLine(QStringLiteral("</file>"));
    ++fileCount;
    if (onProgress)
        onProgress({directoryCount, fileCount, path, longName});
}

void XmlExport::WriteFileSystemDatetime(const FolderEntry& entry)
{
    writeLine(QStringLiteral("<datetime>"));
    const std::pair<const char16_t*, const LocalTime*> times[] = {
        {u"creation", &entry.created}, {u"lastsave", &entry.written}, {u"lastaccess", &entry.accessed}};
    for (const auto& [element, time] : times)
        if (const QString text = FileSystemDate(*time); !text.isEmpty())
            writeLine(Element(element, XmlEscape(text)));
    writeLine(QStringLiteral("</datetime>"));
}

void XmlExport::xmpBlock(const QString& source, const QString& fullPath)
{
    const XmpResult xmp = ReadXmp(source);
    readFailed(xmp.shortRead, fullPath);
    if (!xmp.packet.isEmpty())
        writeLine(QStringLiteral("<xmp>") + xmp.packet + QStringLiteral("</xmp>"));
}

void XmlExport::pdfBlock(const QString& source, const QString& fullPath)
{
    const PdfInfo pdf = ReadPdfInfo(source);
    readFailed(pdf.shortRead, fullPath);
    if (pdf.version.isEmpty())
        return;
    writeLine(QStringLiteral("<pdf><version>") + pdf.version + QStringLiteral("</version>"));
    if (pdf.encrypted) {
        writeLine(QStringLiteral("<encrypted>true</encrypted>"));
        writeLine(QStringLiteral("</pdf>"));
        return;
    }
    writeLine(QStringLiteral("<encrypted>false</encrypted>"));
    const std::pair<const char16_t*, const QString*> fields[] = {
        {u"author", &pdf.author},     {u"creationdate", &pdf.creationDate}, {u"moddate", &pdf.modificationDate},
        {u"creator", &pdf.creator},   {u"producer", &pdf.producer},         {u"title", &pdf.title},
        {u"subject", &pdf.subject},   {u"keywords", &pdf.keywords},
    };
    for (const auto& [element, value] : fields)
        if (!value->isEmpty())
            writeLine(Element(element, XmlEscape(*value)));
    if (!pdf.pages.isEmpty())
        writeLine(QStringLiteral("<pages>") + pdf.pages + QStringLiteral("</pages>"));
    writeLine(QStringLiteral("</pdf>"));
}

QString XmlExport::officeBlock(const QString& source, const FolderEntry& entry)
{
    OfficeProperties office;
    const int mode = options_.ntfs ? OfficeProperties::kModeRead : OfficeProperties::kModeReadTransacted;
    const int groups = office.open(source, mode) ? office.propertyGroups() : 0;
    const int count = (groups & OfficeProperties::kUserDefinedGroup) ? office.userDefinedCount() : 0;
    if (!(groups & (OfficeProperties::kSummaryGroup | OfficeProperties::kDocumentSummaryGroup
                    | OfficeProperties::kUserDefinedGroup))) {
        WriteFileSystemDatetime(entry);
        return QString();
    }

    const auto date = [&](const std::optional<QDateTime>& value) {
        return value && value->isValid() ? GridDate(*value, options_.localTime) : QString();
    };
    writeLine(QStringLiteral("<datetime>"));
    QString creation = date(office.created());
    if (creation.isEmpty())
        creation = FileSystemDate(entry.created);
    QString lastSave = date(office.lastSaved());
    if (lastSave.isEmpty())
        lastSave = FileSystemDate(entry.written);
    const QString lastAccess = FileSystemDate(entry.accessed);
    const QString lastPrint = date(office.lastPrinted());
    const qint64 edit = office.totalEditingMinutes().value_or(0);
    const std::pair<const char16_t*, QString> dates[] = {
        {u"creation", creation},
        {u"lastsave", lastSave},
        {u"lastaccess", lastAccess},
        {u"lastprint", lastPrint},
        {u"totaledit", edit != 0 ? TotalEditText(edit) : QString()},
    };
    for (const auto& [name, text] : dates)
        if (!text.isEmpty())
            writeLine(Element(name, XmlEscape(text)));
    writeLine(QStringLiteral("</datetime>"));

    QString summary;
    const auto text = [&](QStringView name, const std::optional<QString>& value) {
        const QString trimmed = value ? TrimBlanks(*value).toString() : QString();
        if (!trimmed.isEmpty())
            summary += Element(name, XmlEscape(trimmed));
    };
    const auto number = [&](QStringView name, const std::optional<qint64>& value) {
        if (value && *value != 0)
            summary += Element(name, QString::number(*value));
    };
    text(u"application", WithoutMicrosoftPrefix(office.applicationName().value_or(QString())));
    text(u"title", office.title());
    text(u"author", office.author());
    text(u"subject", office.subject());
    text(u"keywords", office.keywords());
    text(u"template", office.templateName());
    text(u"comments", office.comments());
    text(u"lastauthor", office.lastAuthor());
    text(u"revisions", office.revisionNumber());
    number(u"pages", office.pageCount());
    number(u"paragraphs", office.paragraphCount());
    number(u"lines", office.lineCount());
    number(u"words", office.wordCount());
    number(u"chars", office.characterCount());
    number(u"notes", office.noteCount());
    number(u"slides", office.slideCount());
    text(u"manager", office.manager());
    text(u"company", office.company());
    text(u"category", office.category());
    number(u"security", office.security());

    for (int i = 0; i < count; ++i) {
        const QString name = TrimBlanks(office.userDefinedName(i).value_or(QString())).toString();
        QString value =
            TrimBlanks(CellText(office.userDefinedValue(i).value_or(QVariant()), options_.localTime)).toString();
        if (options_.nt)
            value = RepairUtf8Accents(value);
        value.replace(QChar(0), u' ').replace(CharOfCode(150), u'-');
        if (!name.isEmpty())
            summary += QStringLiteral("<userprop><nameprop>") + XmlEscape(name) + QStringLiteral("</nameprop><valueprop>") + XmlEscape(value)
                       + QStringLiteral("</valueprop></userprop>");
    }
    return summary;
}

XmlExportResult WriteXmlExport(const QString& directory, const QString& outputPath, const XmlExportOptions& options,
                               const Captions& captions, const QDateTime& now,
                               const std::function<void(const XmlExportProgress&)>& onProgress,
                               const std::atomic<bool>* stopRequested)
{
    XmlExportResult result;
    // One handle per level of the tree is open at a time.
    RaiseOpenFileLimit();
    const VolumeInfo volume = VolumeOf(directory);
    XmlExportOptions walk = options;
    walk.ntfsVolume = volume.ntfs();
    // Written beside the target and put in its place when the walk ends, stopped or not.
    result.writeError = ReplaceFile(outputPath, [&](QFile& file) {
        XmlExport writer(file, walk, captions);
        writer.onProgress = onProgress;
        writer.stopRequested = stopRequested;
        for (const QString& line : XmlDocumentHead(volume.label, volume.fileSystem,
                                                   ReportDateText(captions, now.date()), now.time()))
            writer.writeLine(line);
        writer.elementId = 0;
        writer.ExportXmlDirectory(ExportStartPath(directory));
        if (!writer.stopped())
            writer.writeLine(QString::fromUtf16(kXmlDocumentFoot));
        result.stopped = writer.stopped();
        result.directories = writer.directoryCount;
        result.files = writer.fileCount;
        result.messages = writer.messages;
        return file.error() == QFileDevice::NoError;
    });
    return result;
}

}  // namespace brindar
