// The window on a big folder, offscreen: time to the first rows and to the last, the
// longest stall of the event loop while rows arrive, peak memory, and sorting every row
// by a text and a numeric column. Usage: ui_scan_bench FOLDER (settings from BRINDAR_HOME).
#include "core/session.h"
#include "platform/folders.h"
#include "platform/memory.h"
#include "platform/systeminfo.h"
#include "ui/desktop.h"
#include "ui/gridtablemodel.h"
#include "ui/mainwindow.h"
#include "ui/prompter.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>
#include <QTimer>

using namespace brindar;

namespace {

// Messages go to the terminal: nothing may wait for a click during a measurement.
class PrintingPrompter final : public Prompter {
public:
    void message(QWidget*, Icon, const QString& text, const QString&) override
    {
        QTextStream(stderr) << "message: " << text << '\n';
    }
    bool question(QWidget*, const QString&, const QString&) override { return false; }
    std::optional<QString> text(QWidget*, const QString&, const QString&, const QString&, int) override { return {}; }
    std::optional<QColor> colour(QWidget*, const QColor&) override { return {}; }
    std::optional<QString> folder(QWidget*, const QString&, const QString&) override { return {}; }
    std::optional<QString> openFileName(QWidget*, const QString&, const QString&, const QString&) override
    {
        return {};
    }
    std::optional<QString> saveFileName(QWidget*, const QString&, const QString&, const QString&) override
    {
        return {};
    }
    int exec(QDialog&) override { return 0; }
};

// The peak ("VmHWM") or current ("VmRSS") resident memory of this process, in MiB.
double MemoryMiB(const char* field = "VmHWM:")
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith(field))
            return line.mid(6).trimmed().split(' ').front().toDouble() / 1024;
    return 0;
}

int ColumnOf(const GridModel& grid, const QString& caption)
{
    for (int column = 0; column < grid.columnCount(); ++column)
        if (grid.caption(column) == caption)
            return column;
    return -1;
}

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    LimitAllocatorArenas();  // as the program's window does
    QApplication application(argc, argv);
    if (argc < 2) {
        QTextStream(stderr) << "usage: ui_scan_bench FOLDER\n";
        return 1;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    PrintingPrompter prompter;
    Desktop desktop;
    MainWindow window(StartSession(SettingsFolder(), DataFolder(), CurrentSystem()), prompter, desktop, false);

    QElapsedTimer clock;
    qint64 firstRows = -1;
    qint64 lastRows = -1;
    qint64 longestStall = 0;
    qint64 lastTick = 0;
    QTimer tick;
    tick.setInterval(5);
    QObject::connect(&tick, &QTimer::timeout, [&] {
        const qint64 now = clock.elapsed();
        longestStall = std::max(longestStall, now - lastTick);
        lastTick = now;
    });
    QObject::connect(&window.model(), &QAbstractItemModel::rowsInserted, [&] {
        if (firstRows < 0)
            firstRows = clock.elapsed();
    });
    QObject::connect(&window, &MainWindow::scanFinished, [&] {
        lastRows = clock.elapsed();
        tick.stop();
        application.quit();
    });
    clock.start();
    tick.start();
    window.start(folder);
    application.exec();

    GridTableModel& model = const_cast<GridTableModel&>(window.model());
    const int rows = model.rowCount();
    const auto timeSort = [&](const QString& caption) {
        const int column = ColumnOf(model.grid(), caption);
        QElapsedTimer sortClock;
        sortClock.start();
        model.sortByColumn(column);
        QApplication::processEvents();
        return column < 0 ? -1 : sortClock.elapsed();
    };
    const qint64 textSort = timeSort(QStringLiteral("Title"));
    const qint64 numericSort = timeSort(QStringLiteral("Pages"));

    QTextStream out(stdout);
    out << "rows                      " << rows << '\n';
    out << "first rows shown (ms)     " << firstRows << '\n';
    out << "all rows shown (ms)       " << lastRows << '\n';
    out << "longest stall (ms)        " << longestStall << '\n';
    out << "peak memory (MiB)         " << QString::number(MemoryMiB(), 'f', 1) << '\n';
    out << "memory after (MiB)        " << QString::number(MemoryMiB("VmRSS:"), 'f', 1) << '\n';
    out << "sort by Title (ms)        " << textSort << '\n';
    out << "sort by Pages (ms)        " << numericSort << '\n';
    return 0;
}
