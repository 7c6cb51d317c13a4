// The directory scan: one grid row per file of a folder, from the cache or the readers.
#pragma once

#include "core/session.h"
#include "platform/directory.h"
#include "scan/gridmodel.h"
#include "scan/gridrow.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <array>
#include <atomic>
#include <functional>

namespace brindar {

struct ScanRequest {
    QString directory;
    bool rescan = false;  // Refresh: the cache of the folder is emptied first
    int threads = 0;      // readers working at once; 0 = one per core
};

struct ScanProgress {
    int done = 0;
    int total = 0;
    QString name;  // the file whose row was delivered last
};

struct ScanCallbacks {
    // Rows in listing order, a batch at a time: the rows that are ready, with all the rows
    // before them, since the last call (256 at most).
    std::function<void(const QList<GridRow>&)> onRows;
    // After each batch.
    std::function<void(const ScanProgress&)> onProgress;
};

struct ScanResult {
    bool listed = true;    // false: the folder could not be listed (the grid stays empty)
    bool fromCache = false;
    bool stopped = false;
    int files = 0;         // rows
    int documents = 0;     // rows with metadata
    QString cacheStatus;   // "reading cache 1234 bytes", "writing cache ...", or an error
    QStringList messages;  // what the caller shows: read errors
};

// What the scan of one folder needs to know, worked out once from the session.
struct ScanContext {
    explicit ScanContext(const Session& session);
    const Session& session;
    unsigned readers = 0;  // ReaderBit: the readers some displayed column asks for
    int columnCount = 0;
    int column(const char* code) const;  // -1 when the column is not displayed

private:
    // The field table's codes are a dot and two capital letters: they index this table
    // directly, so the hundred look-ups of every file cost no string.
    std::array<int, 26 * 26> byLetters_{};
    QHash<QString, int> columnOf_;  // the other codes (".P3")
};

// The columns the scan fills from the file system itself rather than from a reader: the
// short name of the listing and the Macintosh comments of the comment stream.
inline constexpr const char* kFileSystemColumns[] = {".SN", ".MC"};

// The row of one file: pure, safe to run on several threads at once. Read errors are
// added to `messages`.
GridRow ScanFile(const QString& directory, const DirectoryEntry& entry, const ScanContext& context,
                 QStringList* messages);

// Scans `request.directory` with `session`, a snapshot that the scan reads while the
// caller may go on changing its own: tries the metadata cache, else lists the folder and
// reads the files on a pool of threads. The scan writes no setting ("Repertoire" is the
// caller's). Setting `stop` ends the scan at once: no row is delivered after it, and it
// returns when each reader thread has finished the one file it was reading.
ScanResult ScanDirectory(Session session, const ScanRequest& request, const ScanCallbacks& callbacks,
                         const std::atomic<bool>* stop = nullptr);

// The grid of `directory` as the window shows it after a scan: every row, the
// configuration's saved sort applied. `result` receives the scan's result.
GridModel ScanIntoGrid(const Session& session, const QString& directory, ScanResult* result = nullptr);

// "3 files - 2 documents" in the language of `captions`.
QString CountsText(const Captions& captions, int files, int documents);

}  // namespace brindar
