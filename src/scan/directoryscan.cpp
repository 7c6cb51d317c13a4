// The directory scan: readers routed by extension and switches, rows in listing order.
#include "scan/directoryscan.h"

#include "core/captionids.h"
#include "core/fieldtable.h"
#include "core/fileselection.h"
#include "core/paths.h"
#include "core/valuetext.h"
#include "platform/fileinfo.h"
#include "readers/commentstream.h"
#include "readers/compoundfile.h"
#include "readers/pagedfile.h"
#include "readers/readertable.h"
#include "readers/text.h"
#include "scan/metadatacache.h"

#include <QThread>
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace brindar {
namespace {

// A batch delivered holds at most this many rows, so that a caller showing them is never
// handed a whole folder at once, from the readers or from the cache.
constexpr int kMaxDelivery = 256;

// A row being filled: a value lands only in a displayed column that is still empty, so
// the first reader (and the first row of its table) with a value wins.
class RowBuilder {
public:
    RowBuilder(const ScanContext& context, const QString& name) : context_(context), cells_(context.columnCount)
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
            if (column(source.code) > 0)
                put(source.code, source.value(result));
    }
    // The user-defined properties, looked up by name among the file's custom properties.
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
    return GathersFamily(c.inclureTout, c.inclureExtensions, familySwitch);
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

// The Office component, asked of every file. `compound` says whether the file can be a
// compound document; when it cannot, only its named streams may hold property sets.
void ReadOffice(const QString& path, bool compound, const ScanContext& context, RowBuilder& row)
{
    OfficeProperties office;
    const bool opened = compound ? office.open(path, OfficeProperties::kModeRead)
                                 : office.openNamedStreams(path, OfficeProperties::kModeRead);
    if (!opened)
        return;
    const bool localTime = context.session.configuration.localTime;
    for (const OfficeColumn& column : OfficeColumns())
        if (row.column(column.code) > 0)
            row.put(column.code, column.text(office, localTime));
    for (int i = 0; i < office.userDefinedCount(); ++i)
        row.putUserDefined(office.userDefinedName(i).value_or(QString()),
                           CellText(office.userDefinedValue(i).value_or(QVariant()), localTime));
}

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
    return letters >= 0 ? byLetters_[size_t(letters)] : columnOf_.value(QLatin1String(code), -1);
}

ScanContext::ScanContext(const Session& s) : session(s), readers(ReadersFilling(s.columns))
{
    const ColumnSet& columns = s.columns;
    columnCount = int(columns.columns.size());
    byLetters_.fill(-1);
    for (int i = 1; i < columnCount; ++i) {
        columnOf_.insert(columns.columns[i].code, i);
        if (const int letters = LetterIndex(columns.columns[i].code.toLatin1().constData()); letters >= 0)
            byLetters_[size_t(letters)] = i;
    }
}

GridRow ScanFile(const QString& directory, const DirectoryEntry& entry, const ScanContext& context,
                 QStringList* messages)
{
    const Configuration& c = context.session.configuration;
    const QString path = JoinPath(directory, entry.name);
    const qsizetype dot = entry.name.lastIndexOf(u'.');
    const ReaderBit family = ReaderOfExtension(dot < 0 ? QString() : entry.name.mid(dot + 1).toUpper());
    RowBuilder row(context, entry.name);
    row.put(".SN", entry.shortName);
    auto shortRead = [&](bool failed) {
        if (failed)
            messages->append(context.session.captions.text(caption::ErrorReadingFile) + u' ' + path);
    };
    // One open per file: the family reader and the Office component's signature test
    // share it.
    std::optional<PagedFile> file;
    auto opened = [&]() -> PagedFile& {
        if (!file)
            file.emplace(path);
        return *file;
    };
    const auto wanted = [&](ReaderBit reader, bool familySwitch) {
        return family == reader && Gate(c, familySwitch) && (context.readers & reader);
    };

    if (wanted(kReaderOpenOffice, c.inclureOO)) {
        const OpenOfficeResult r = ReadOpenOfficeMeta(opened());
        shortRead(r.shortRead);
        row.fill(OpenOfficeColumns(), r);
        for (const auto& [name, value] : r.userDefined)
            row.putUserDefined(name, value);
    }
    if (wanted(kReaderPdf, c.inclurePdf)) {
        const PdfInfo r = ReadPdfInfo(opened());
        shortRead(r.shortRead);
        row.fill(PdfColumns(), r);
    }
    if (wanted(kReaderHtml, c.inclureHtml)) {
        const HtmlMetaResult r = ReadHtmlMeta(opened());
        shortRead(r.shortRead);
        row.fill(HtmlColumns(), r);
        for (const auto& [name, value] : r.metaTags)
            row.putUserDefined(name, value);
    }
    if (wanted(kReaderIptc, c.inclureJpeg)) {
        const IptcResult r = ReadIptc(opened(), context.session.columns.macintoshAccents);
        shortRead(r.shortRead);
        row.fill(IptcColumns(), r);
    }
    if (wanted(kReaderXmp, c.inclureXmp)) {
        const XmpResult r = ReadXmp(opened());
        shortRead(r.shortRead);
        row.fill(XmpColumns(), r);
    }
    if (Gate(c, c.inclureOffice) && (context.readers & kReaderOffice)) {
        // A file a family reader has opened is tested for the compound-file signature in
        // the bytes that reader already has; any other file is opened by the component.
        const bool compound = !file || CompoundFile::HasSignature(file->head(8));
        ReadOffice(path, compound, context, row);
    }
    if (row.column(".MC") > 0)
        row.put(".MC", ReadComment(path).value_or(QString()));

    QStringList& cells = row.cells();
    // Dates of every family in one form, which sorts in date order.
    for (const char* code : {".CD", ".MD", ".PD"})
        if (const int col = row.column(code); col > 0)
            cells[col] = GridDate(cells[col]);
    // A count of zero says nothing: shown empty, like a zero date.
    for (const FieldInfo& field : FieldTable())
        if (const int col = row.column(field.code); col > 0 && (field.notes & kNoteNumeric) && cells[col] == u"0")
            cells[col].clear();
    if (const int ap = row.column(".AP"); ap > 0)
        cells[ap] = WithoutMicrosoftPrefix(cells[ap]);

    GridRow result;
    result.hasMetadata = std::any_of(cells.cbegin() + 1, cells.cend(), [](const QString& v) { return !v.isEmpty(); });
    result.cells = std::move(cells);
    return result;
}

ScanResult ScanDirectory(Session session, const ScanRequest& request, const ScanCallbacks& callbacks,
                         const std::atomic<bool>* stop)
{
    ScanResult result;
    const QString directory = request.directory;
    const Configuration& c = session.configuration;
    const QString codeList = session.columns.codeList;
    const bool cacheOn = c.useNtfsCache && session.system.nt;
    auto stopped = [&] { return stop && stop->load(); };
    auto deliver = [&](const QList<GridRow>& rows, const QString& lastName, int total) {
        for (const GridRow& row : rows) {
            ++result.files;
            result.documents += row.hasMetadata;
        }
        if (callbacks.onRows)
            callbacks.onRows(rows);
        if (callbacks.onProgress)
            callbacks.onProgress(ScanProgress{result.files, total, lastName});
    };

    if (cacheOn && !request.rescan) {
        if (auto rows = ReadMetadataCache(directory, codeList, session.captions, &result.cacheStatus)) {
            result.fromCache = true;
            const int total = int(rows->size());
            for (int first = 0; first < total && !stopped(); first += kMaxDelivery) {
                const QList<GridRow> batch = rows->mid(first, kMaxDelivery);
                deliver(batch, batch.last().cells.value(0), total);
            }
            result.stopped = result.files < total;
            return result;
        }
    } else {
        // Off, or a Refresh: the cache of this column set never outlives a scan without it.
        InvalidateMetadataCache(directory, codeList);
    }

    const ScanContext context(session);
    // Short names exist only where an NTFS volume keeps them; nobody asks otherwise.
    const bool shortNames = context.column(".SN") > 0 && VolumeOf(directory).ntfs();
    bool listed = false;
    QList<DirectoryEntry> entries = ListFiles(directory, &listed, shortNames);
    result.listed = listed;
    entries.removeIf([&](const DirectoryEntry& e) {
        const qsizetype dot = e.name.lastIndexOf(u'.');
        return (e.hidden && !c.inclureCaches)
               || !PassesExtensionFilter(c, dot < 0 ? QString() : e.name.mid(dot + 1).toUpper(), dot >= 0);
    });

    const int total = int(entries.size());
    struct Slot {
        std::optional<GridRow> row;
        QStringList messages;
    };
    std::vector<Slot> pending(static_cast<size_t>(total));
    std::mutex mutex;
    std::condition_variable ready;
    std::atomic<int> next{0};
    // Workers take files a batch at a time and hand a batch over at once (one lock and one
    // wake-up per batch), but look at the stop before every file.
    constexpr int kBatch = 32;
    auto work = [&] {
        std::vector<Slot> done;
        for (int first; !stopped() && (first = next.fetch_add(kBatch)) < total;) {
            const int last = std::min(total, first + kBatch);
            done.clear();
            for (int i = first; i < last && !stopped(); ++i) {
                Slot slot;
                slot.row = ScanFile(directory, entries[i], context, &slot.messages);
                done.push_back(std::move(slot));
            }
            std::lock_guard lock(mutex);
            for (size_t k = 0; k < done.size(); ++k)
                pending[size_t(first) + k] = std::move(done[k]);
            ready.notify_all();
        }
    };
    const int threads = std::clamp(request.threads > 0 ? request.threads : QThread::idealThreadCount(), 1,
                                   std::max(1, total));
    std::vector<std::thread> workers;
    for (int t = 0; t < threads && total > 0; ++t)
        workers.emplace_back(work);

    QList<GridRow> cached;
    for (int i = 0; i < total && !stopped();) {
        QList<GridRow> batch;
        QStringList messages;
        {
            std::unique_lock lock(mutex);
            // The stop is a flag, not a wake-up: it is looked at every few milliseconds.
            while (!pending[size_t(i)].row && !stopped())
                ready.wait_for(lock, std::chrono::milliseconds(20));
            if (stopped())
                break;
            for (const int end = std::min(total, i + kMaxDelivery); i < end && pending[size_t(i)].row; ++i) {
                messages.append(pending[size_t(i)].messages);
                batch.append(std::move(*pending[size_t(i)].row));
                pending[size_t(i)] = Slot();
            }
        }
        result.messages.append(messages);
        deliver(batch, entries[i - 1].name, total);
        if (cacheOn)
            cached.append(batch);
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
        .arg(captions.text(files > 1 ? caption::Files : caption::File))
        .arg(documents)
        .arg(captions.text(documents > 1 ? caption::Documents : caption::Document));
}

GridModel ScanIntoGrid(const Session& session, const QString& directory, ScanResult* result)
{
    GridModel grid(session.columns, session.configuration);
    ScanCallbacks callbacks;
    callbacks.onRows = [&](const QList<GridRow>& rows) { grid.appendRows(rows); };
    const ScanResult scanned = ScanDirectory(session, ScanRequest{directory, false, 0}, callbacks);
    grid.applySavedSort();
    if (result)
        *result = scanned;
    return grid;
}

}  // namespace brindar
