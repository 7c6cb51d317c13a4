// The directory scan: one grid row per file of a folder, from the cache or the readers.
#pragma once

#include "core/session.h"
#include "platform/directory.h"
#include "scan/gridmodel.h"
#include "scan/gridrow.h"

#include <QHash>
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
    QString name;  // the file whose row was just delivered
};

struct ScanResult {
    bool listed = true;    // false: the folder could not be listed (the grid stays empty)
    bool fromCache = false;
    bool stopped = false;
    int files = 0;         // rows
    int documents = 0;     // rows with metadata
    QString cacheStatus;   // "reading cache 1234 bytes", "writing cache ...", or an error
    QStringList messages;  // what the caller shows: read errors, a setting that was not saved
};

// What the scan of one folder needs to know, worked out once from the session.
struct ScanContext {
    ScanContext(const Session& session);
    const Session& session;
    QHash<QString, int> columnOf;  // column code -> grid column
    int column(const char* code) const;
    bool officeWanted = false;     // a displayed column is one the Office component fills
    int columnCount = 0;

private:
    // The field table's codes are a dot and two capital letters: they index this table
    // directly, so the hundred look-ups of every file cost no string.
    std::array<int, 26 * 26> byLetters_{};
};

// The row of one file: pure, safe to run on several threads at once. Read errors are
// added to `messages`.
GridRow ScanFile(const QString& directory, const DirectoryEntry& entry, const ScanContext& context,
                 QStringList* messages);

// Scans `request.directory` with the session's configuration: stores it as "Repertoire",
// tries the metadata cache, else lists the folder and reads the files on a pool of
// threads. Rows reach `onRow` in listing order as soon as they and the ones before them
// are ready; `onProgress` follows them. Setting `stop` ends the scan after the rows
// already delivered.
ScanResult ScanDirectory(const Session& session, const ScanRequest& request,
                         const std::function<void(const GridRow&)>& onRow,
                         const std::function<void(const ScanProgress&)>& onProgress = {},
                         const std::atomic<bool>* stop = nullptr);

// The grid of `directory` as the window shows it after a scan: every row, the
// configuration's saved sort applied. `result` receives the scan's result.
GridModel ScanIntoGrid(const Session& session, const QString& directory, ScanResult* result = nullptr);

// "3 files - 2 documents" in the language of `captions`.
QString CountsText(const Captions& captions, int files, int documents);

}  // namespace brindar
