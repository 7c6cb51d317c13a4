// Scans and other long work on worker threads.
#include "ui/scanrunner.h"

#include <QMetaObject>
#include <QMutex>
#include <QTimer>

namespace brindar {
namespace {
// Often enough to look continuous, seldom enough that 100,000 rows cost few repaints.
constexpr int kDeliveryMs = 50;
}  // namespace

// What the worker of one scan hands over: rows, the last progress, the result. The window
// takes them on its own thread by the timer; a scan replaced by another is forgotten with
// its state, so none of its rows can reach the next grid.
struct ScanRunner::Shared {
    QMutex mutex;
    QList<GridRow> rows;
    std::optional<ScanProgress> progress;
    std::optional<ScanResult> result;
    std::atomic<bool> stop{false};
};

ScanRunner::ScanRunner(QObject* parent) : QObject(parent), timer_(new QTimer(this))
{
    qRegisterMetaType<QList<brindar::GridRow>>();
    qRegisterMetaType<brindar::ScanProgress>();
    qRegisterMetaType<brindar::ScanResult>();
    timer_->setInterval(kDeliveryMs);
    connect(timer_, &QTimer::timeout, this, &ScanRunner::deliver);
}

ScanRunner::~ScanRunner() { stopAndWait(); }

void ScanRunner::start(Session snapshot, ScanRequest request)
{
    stopAndWait();
    auto shared = std::make_shared<Shared>();
    shared_ = shared;
    worker_ = std::thread([shared, snapshot = std::move(snapshot), request = std::move(request)] {
        ScanCallbacks callbacks;
        callbacks.onRows = [&](const QList<GridRow>& rows) {
            QMutexLocker lock(&shared->mutex);
            shared->rows += rows;
        };
        callbacks.onProgress = [&](const ScanProgress& progress) {
            QMutexLocker lock(&shared->mutex);
            shared->progress = progress;
        };
        ScanResult result = ScanDirectory(snapshot, request, callbacks, &shared->stop);
        QMutexLocker lock(&shared->mutex);
        shared->result = std::move(result);
    });
    timer_->start();
}

void ScanRunner::deliver()
{
    const std::shared_ptr<Shared> shared = shared_;
    if (!shared)
        return;
    QList<GridRow> rows;
    std::optional<ScanProgress> step;
    std::optional<ScanResult> result;
    {
        QMutexLocker lock(&shared->mutex);
        rows.swap(shared->rows);
        step.swap(shared->progress);
        result.swap(shared->result);
    }
    if (!rows.isEmpty())
        emit rowsReady(rows);
    if (step)
        emit progress(*step);
    if (result) {
        timer_->stop();
        if (worker_.joinable())
            worker_.join();
        shared_.reset();
        emit finished(*result);
    }
}

void ScanRunner::stop()
{
    if (shared_)
        shared_->stop = true;
}

void ScanRunner::stopAndWait()
{
    if (shared_)
        shared_->stop = true;
    if (worker_.joinable())
        worker_.join();
    timer_->stop();
    shared_.reset();
}

bool ScanRunner::isRunning() const { return bool(shared_); }

struct BackgroundTask::State {
    std::atomic<bool> stop{false};
};

BackgroundTask::BackgroundTask(QObject* parent) : QObject(parent) {}

BackgroundTask::~BackgroundTask() { stopAndWait(); }

void BackgroundTask::start(std::function<void(const std::atomic<bool>& stop)> work, std::function<void()> done)
{
    stopAndWait();
    auto state = std::make_shared<State>();
    state_ = state;
    worker_ = std::thread([this, state, work = std::move(work), done = std::move(done)] {
        work(state->stop);
        // Back on the window's thread: `done` runs unless the task was waited for and
        // forgotten in the meantime.
        QMetaObject::invokeMethod(
            this,
            [this, state, done] {
                if (state_ != state)
                    return;
                if (worker_.joinable())
                    worker_.join();
                state_.reset();
                done();
            },
            Qt::QueuedConnection);
    });
}

void BackgroundTask::stop()
{
    if (state_)
        state_->stop = true;
}

void BackgroundTask::stopAndWait()
{
    if (state_)
        state_->stop = true;
    if (worker_.joinable())
        worker_.join();
    state_.reset();
}

bool BackgroundTask::isRunning() const { return bool(state_); }

}  // namespace brindar
