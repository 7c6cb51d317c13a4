// The directory scan: readers routed by extension and switches, rows in listing order.
#include "scan/directoryscan.h"

#include "core/configurationfiles.h"
#include "core/fieldtable.h"
#include "platform/namedstreams.h"
#include "readers/officeproperties.h"
#include "readers/text.h"
#include "scan/columnvalues.h"
#include "scan/metadatacache.h"

#include <QStringDecoder>
#include <QThread>
#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace brindar {
namespace {

const QStringList kOpenOfficeExtensions = {QStringLiteral("SXW"), QStringLiteral("SXC"), QStringLiteral("SXD"),
                                           QStringLiteral("SXI"), QStringLiteral("SXM"), QStringLiteral("SXG")};
const QStringList kHtmlExtensions = {QStringLiteral("HTM"), QStringLiteral("HTML")};
const QStringList kIptcExtensions = {QStringLiteral("JPG"), QStringLiteral("JPEG"), QStringLiteral("TIF"),
                                     QStringLiteral("TIFF")};
// The layout formats whose XMP packets the scan reads, as the file-selection dialog
// lists them.
const QStringList kXmpExtensions = {QStringLiteral("EPS"), QStringLiteral("INDD"), QStringLiteral("PM7"),
                                    QStringLiteral("PSD"), QStringLiteral("AI"),   QStringLiteral("FM")};

// A row being filled: a value lands only in a displayed column that is still empty, so
// the first reader (and the first row of its table) with a value wins.
class RowBuilder {
public:
    RowBuilder(const ScanContext& context, const QString& name)
        : context_(context), cells_(context.columnCount)
    {
        cells_[0] = name;
    }
    int column(const char* code) const { return context_.column(code); }
    void put(const char* code, const QString& value)
    {
        const int c = column(code);
        if (c > 0 && cells_[c].isEmpty() && !value.isEmpty())
            cells_[c] = CleanForGrid(value);
    }
    template <class Result>
    void fill(std::span<const ColumnSource<Result>> sources, const Result& result)
    {
        for (const auto& source : sources)
            put(source.code, result.*(source.field));
    }
    // The user-defined pending, looked up by name among the file's custom properties.
    void putUserDefined(const QString& name, const QString& value)
    {
        const auto& columns = context_.session.columns;
        for (int slot = 0; slot < kUserSlotCount; ++slot)
            if (columns.userChecked[slot] && !columns.userNames[slot].isEmpty()
                && columns.userNames[slot].compare(name.trimmed(), Qt::CaseInsensitive) == 0)
                put(qPrintable(QStringLiteral(".P%1").arg(slot)), value.trimmed());
    }
    QStringList& cells() { return cells_; }

private:
    const ScanContext& context_;
    QStringList cells_;
};

bool Gate(const Configuration& c, bool familySwitch)
{
    return c.inclureTout || c.inclureExtensions || familySwitch;
}

// The extension filter, a plain substring test on the comma-separated lists: with the
// selection DOC,XLS a file ending in .OC is included too.
bool PassesExtensionFilter(const Configuration& c, const QString& extension, bool hasExtension)
{
    if (!c.inclureExtensions)
        return true;
    if (!hasExtension)
        return false;
    if (!c.extensionsSelected.isEmpty() && !c.extensionsSelected.toUpper().contains(extension))
        return false;
    if (!c.extensionsExcluded.isEmpty() && c.extensionsExcluded.toUpper().contains(extension))
        return false;
    return true;
}

QString MacintoshComments(const QString& path)
{
    // The stream a Macintosh client writes on NTFS, UTF-16; else the desktop comment.
    if (auto bytes = ReadNamedStream(path, QStringLiteral("Comments"))) {
        QString text = QStringDecoder(QStringDecoder::Utf16LE).decode(*bytes);
        const qsizetype nul = text.indexOf(QChar(0));
        return nul >= 0 ? text.left(nul) : text;
    }
    if (auto bytes = ReadNamedStream(path, QStringLiteral("xdg.comment")))
        return QString::fromUtf8(*bytes);
    return QString();
}

void ReadOffice(const QString& path, const ScanContext& context, RowBuilder& row, bool otherFamily)
{
    OfficeProperties office;
    const bool opened = otherFamily ? office.openNamedStreams(path, OfficeProperties::kModeRead)
                                    : office.open(path, OfficeProperties::kModeRead);
    if (!opened)
        return;
    const bool localTime = context.session.configuration.localTime;
    for (const OfficeField& field : OfficeFields()) {
        if (row.column(field.code) < 0)
            continue;
        const std::optional<QVariant> value = field.get(office);
        if (!value)
            continue;
        if (qstrcmp(field.code, ".ED") == 0)
            row.put(field.code, EditingTime(value->toLongLong()));
        else if (value->typeId() == QMetaType::LongLong)
            row.put(field.code, value->toLongLong() == 0 ? QString() : value->toString());
        else
            row.put(field.code, CellText(*value, localTime));
    }
    for (int i = 0; i < office.userDefinedCount(); ++i)
        row.putUserDefined(office.userDefinedName(i).value_or(QString()),
                           CellText(office.userDefinedValue(i).value_or(QVariant()), localTime));
}

}  // namespace

namespace {

int LetterIndex(const char* code)
{
    const auto upper = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (code[0] == '.' && upper(code[1]) && upper(code[2]) && code[3] == 0)
        return (code[1] - 'A') * 26 + (code[2] - 'A');
    return -1;
}

}  // namespace

int ScanContext::column(const char* code) const
{
    const int letters = LetterIndex(code);
    return letters >= 0 ? byLetters_[size_t(letters)] : columnOf.value(QLatin1String(code), -1);
}

ScanContext::ScanContext(const Session& s) : session(s)
{
    const ColumnSet& columns = s.columns;
    columnCount = int(columns.columns.size());
    byLetters_.fill(-1);
    for (int i = 1; i < columnCount; ++i) {
        columnOf.insert(columns.columns[i].code, i);
        if (const int letters = LetterIndex(columns.columns[i].code.toLatin1().constData()); letters >= 0)
            byLetters_[size_t(letters)] = i;
    }
    for (const OfficeField& field : OfficeFields())
        officeWanted = officeWanted || columnOf.contains(QLatin1String(field.code));
    for (int slot = 0; slot < kUserSlotCount; ++slot)
        officeWanted = officeWanted || columnOf.contains(QStringLiteral(".P%1").arg(slot));
}

GridRow ScanFile(const QString& directory, const DirectoryEntry& entry, const ScanContext& context,
                 QStringList* messages)
{
    const Configuration& c = context.session.configuration;
    const unsigned flags = context.session.columns.readerFlags;
    const QString path = directory == u"/" ? u'/' + entry.name : directory + u'/' + entry.name;
    const qsizetype dot = entry.name.lastIndexOf(u'.');
    const QString extension = dot < 0 ? QString() : entry.name.mid(dot + 1).toUpper();
    RowBuilder row(context, entry.name);
    auto shortRead = [&](bool failed) {
        if (failed)
            messages->append(context.session.captions.text(CaptionSection::Main, 70) + u' ' + path);
    };

    if (kOpenOfficeExtensions.contains(extension) && Gate(c, c.inclureOO) && (flags & kReaderOpenOffice)) {
        const OpenOfficeResult r = ReadOpenOfficeMeta(path);
        shortRead(r.shortRead);
        row.fill(OpenOfficeColumns(), r);
        row.put(".ED", EditingTime(DurationMinutes(r.editingDuration)));
        for (const auto& [name, value] : r.userDefined)
            row.putUserDefined(name, value);
    }
    if (extension == u"PDF" && Gate(c, c.inclurePdf) && (flags & kReaderPdf)) {
        const PdfInfo r = ReadPdfInfo(path);
        shortRead(r.shortRead);
        row.fill(PdfColumns(), r);
        if (r.encrypted)
            row.put(".EN", QStringLiteral("true"));
    }
    if (kHtmlExtensions.contains(extension) && Gate(c, c.inclureHtml) && (flags & kReaderHtml)) {
        const HtmlMetaResult r = ReadHtmlMeta(path);
        shortRead(r.shortRead);
        row.fill(HtmlColumns(), r);
        for (const auto& [name, value] : r.metaTags)
            row.putUserDefined(name, value);
    }
    if (kIptcExtensions.contains(extension) && Gate(c, c.inclureJpeg) && (flags & kReaderIptc)) {
        const IptcResult r = ReadIptc(path, context.session.columns.macintoshAccents);
        shortRead(r.shortRead);
        row.fill(IptcColumns(), r);
    }
    if (kXmpExtensions.contains(extension) && Gate(c, c.inclureXmp) && (flags & kReaderXmp)) {
        const XmpResult r = ReadXmp(path);
        shortRead(r.shortRead);
        row.fill(XmpColumns(), r);
    }
    if (Gate(c, c.inclureOffice) && context.officeWanted) {
        // A file in which another family's reader found its metadata is that family's
        // file, not a compound document: only its named streams can hold property sets,
        // and the file is not opened a second time.
        const QStringList& cells = row.cells();
        const bool otherFamily = std::any_of(cells.cbegin() + 1, cells.cend(), [](const QString& v) { return !v.isEmpty(); });
        ReadOffice(path, context, row, otherFamily);
    }
    if (const int mc = row.column(".MC"); mc > 0)
        row.put(".MC", MacintoshComments(path));

    QStringList& cells = row.cells();
    // Dates of every family in one form, which sorts in date order.
    for (const char* code : {".CD", ".MD", ".PD"})
        if (const int col = row.column(code); col > 0)
            cells[col] = GridDate(cells[col]);
    // A count of zero says nothing: shown empty, like a zero date.
    const auto fields = FieldTable();
    for (int i = 0; i < int(fields.size()); ++i)
        if (const int col = row.column(fields[i].code); col > 0 && (fields[i].notes & kNoteNumeric) && cells[col] == u"0")
            cells[col].clear();
    // An application named "Microsoft Word" shows as "Word".
    if (const int ap = row.column(".AP"); ap > 0 && cells[ap].startsWith(u"Microsoft "))
        cells[ap].remove(0, 10);

    GridRow result;
    result.hasMetadata = std::any_of(cells.cbegin() + 1, cells.cend(), [](const QString& v) { return !v.isEmpty(); });
    result.cells = std::move(cells);
    return result;
}

ScanResult ScanDirectory(const Session& session, const ScanRequest& request,
                         const std::function<void(const GridRow&)>& onRow,
                         const std::function<void(const ScanProgress&)>& onProgress, const std::atomic<bool>* stop)
{
    ScanResult result;
    const QString directory = request.directory;
    if (auto error = SaveOption(session.configurationPath, QStringLiteral("Configuration"),
                                QStringLiteral("Repertoire"), directory))
        result.messages.append(session.captions.text(CaptionSection::Main, 99) + u' ' + *error);

    const Configuration& c = session.configuration;
    const QString codeList = session.columns.codeList;
    const bool cacheOn = c.useNtfsCache && session.system.nt;
    auto stopped = [&] { return stop && stop->load(); };
    auto deliver = [&](const GridRow& row) {
        ++result.files;
        result.documents += row.hasMetadata;
        onRow(row);
    };

    if (cacheOn && !request.rescan) {
        if (auto rows = ReadMetadataCache(directory, codeList, session.captions, &result.cacheStatus)) {
            result.fromCache = true;
            for (const GridRow& row : *rows)
                deliver(row);
            return result;
        }
    } else {
        // Off, or a Refresh: the cache of this column set never outlives a scan without it.
        InvalidateMetadataCache(directory, codeList);
    }

    bool listed = false;
    QList<DirectoryEntry> entries = ListFiles(directory, &listed);
    result.listed = listed;
    entries.removeIf([&](const DirectoryEntry& e) {
        const qsizetype dot = e.name.lastIndexOf(u'.');
        return (e.hidden && !c.inclureCaches)
               || !PassesExtensionFilter(c, dot < 0 ? QString() : e.name.mid(dot + 1).toUpper(), dot >= 0);
    });

    const ScanContext context(session);
    const int total = int(entries.size());
    struct Slot {
        std::optional<GridRow> row;
        QStringList messages;
    };
    std::vector<Slot> pending(static_cast<size_t>(total));
    std::mutex mutex;
    std::condition_variable ready;
    std::atomic<int> next{0};
    // Workers take files a batch at a time and hand a batch over at once: one lock and
    // one wake-up per batch, not per file.
    constexpr int kBatch = 32;
    auto work = [&] {
        std::vector<Slot> done;
        for (int first; (first = next.fetch_add(kBatch)) < total && !stopped();) {
            const int last = std::min(total, first + kBatch);
            done.clear();
            for (int i = first; i < last; ++i) {
                Slot slot;
                slot.row = ScanFile(directory, entries[i], context, &slot.messages);
                done.push_back(std::move(slot));
            }
            std::lock_guard lock(mutex);
            for (int i = first; i < last; ++i)
                pending[size_t(i)] = std::move(done[size_t(i - first)]);
            ready.notify_all();
        }
        std::lock_guard lock(mutex);
        ready.notify_all();
    };
    const int threads = std::clamp(request.threads > 0 ? request.threads : QThread::idealThreadCount(), 1,
                                   std::max(1, total));
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back(work);

    QList<GridRow> cached;
    for (int i = 0; i < total; ++i) {
        Slot slot;
        {
            std::unique_lock lock(mutex);
            ready.wait(lock, [&] { return pending[size_t(i)].row.has_value() || stopped(); });
            if (!pending[size_t(i)].row)
                break;
            slot = std::move(pending[size_t(i)]);
        }
        result.messages.append(slot.messages);
        deliver(*slot.row);
        if (onProgress)
            onProgress(ScanProgress{i + 1, total, entries[i].name});
        if (cacheOn)
            cached.append(std::move(*slot.row));
        if (stopped())
            break;
    }
    next = total;  // no new file is started once the caller stops listening
    for (std::thread& worker : workers)
        worker.join();
    result.stopped = result.files < total;
    if (cacheOn && !result.stopped)
        result.cacheStatus = WriteMetadataCache(directory, codeList, cached, session.captions);
    return result;
}

QString CountsText(const Captions& captions, int files, int documents)
{
    return QStringLiteral("%1 %2 - %3 %4")
        .arg(files)
        .arg(captions.text(CaptionSection::Main, files > 1 ? 43 : 42))
        .arg(documents)
        .arg(captions.text(CaptionSection::Main, documents > 1 ? 45 : 44));
}

GridModel ScanIntoGrid(const Session& session, const QString& directory, ScanResult* result)
{
    GridModel grid(session.columns, session.configuration);
    QList<GridRow> rows;
    const ScanResult scanned =
        ScanDirectory(session, ScanRequest{directory, false, 0}, [&](const GridRow& row) { rows.append(row); });
    grid.appendRows(rows);
    grid.applySavedSort();
    if (result)
        *result = scanned;
    return grid;
}

}  // namespace brindar
