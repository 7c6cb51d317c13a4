// Scans in the background: one scan at a time on a worker thread, over a snapshot of the
// session, its rows handed to the window's thread in batches, so the window and its STOP
// stay live.
#pragma once

#include "core/session.h"
#include "scan/directoryscan.h"

#include <QList>
#include <QObject>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>

class QTimer;

namespace brindar {

class ScanRunner final : public QObject {
    Q_OBJECT
public:
    explicit ScanRunner(QObject* parent = nullptr);
    ~ScanRunner() override;  // stops and waits

    // Starts a scan of `request.directory` with `snapshot`; a scan that runs is stopped
    // and waited for first (its late rows are never delivered).
    void start(Session snapshot, ScanRequest request);
    // Asks the running scan to stop; `finished` follows with result.stopped set.
    void stop();
    // Stops and waits until the worker has unwound (no signal of that scan follows).
    void stopAndWait();
    bool isRunning() const;

signals:
    // On the window's thread, at most every 50 ms while rows come.
    void rowsReady(const QList<brindar::GridRow>& rows);
    void progress(const brindar::ScanProgress& progress);
    void finished(const brindar::ScanResult& result);

private:
    struct Shared;
    void deliver();

    std::shared_ptr<Shared> shared_;  // the running scan's, shared with its worker
    std::thread worker_;
    QTimer* timer_;
};

// Runs a function on a worker thread with a stop token, then calls `done` on the
// receiver's thread: the list page and the Word report.
class BackgroundTask final : public QObject {
    Q_OBJECT
public:
    explicit BackgroundTask(QObject* parent = nullptr);
    ~BackgroundTask() override;  // stops and waits
    void start(std::function<void(const std::atomic<bool>& stop)> work, std::function<void()> done);
    void stop();
    void stopAndWait();
    bool isRunning() const;

private:
    struct State;
    std::shared_ptr<State> state_;
    std::thread worker_;
};

}  // namespace brindar
