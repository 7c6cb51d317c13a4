// The grid's table model against the engine's grid: roles, sorting with the selection
// following its files, empty columns, colours; and scans in the background.
#include "core/configuration.h"
#include "core/inifile.h"
#include "core/session.h"
#include "support/tempfolder.h"
#include "ui/gridtablemodel.h"
#include "ui/gridview.h"
#include "ui/scanrunner.h"

#include <QBrush>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace brindar;
using namespace brindar::test;
using namespace Qt::StringLiterals;

namespace {

// Document, Title, Pages, Client (a user-defined column); a and b have metadata.
GridModel Grid(const QByteArray& keys = "")
{
    GridModel grid(BuildColumns(IniDocument("[Proprietes]\r\nPages=1\r\nTitre=1\r\n"
                                            "[Personnelles]\r\ntextPerso2=Client\r\nchkPerso2=1\r\n"),
                                Captions::English(), true),
                   ReadConfiguration(IniDocument("[Configuration]\r\n" + keys), true));
    return grid;
}

const QList<GridRow> kRows = {
    {{"a", "10", "9", ""}, true},
    {{"b", "9", "10", ""}, true},
    {{"c", "", "", ""}, false},
    {{"d", "Zeta", "2", ""}, false},
};

QStringList Names(const GridTableModel& model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names << model.data(model.index(row, 0)).toString();
    return names;
}

}  // namespace

TEST(GridTableModel, RolesComeFromTheGrid)
{
    GridTableModel model;
    model.reset(Grid());
    model.appendRows(kRows);
    model.setHighlightColour(qint32(0x0000FF), QColor(Qt::blue));  // red, as a colour word
    model.setHeaderToolTip(u"Click on a column header to sort the files"_s);
    const GridModel& grid = model.grid();
    ASSERT_EQ(model.columnCount(), grid.columnCount());
    for (int column = 0; column < grid.columnCount(); ++column)
        EXPECT_EQ(model.headerData(column, Qt::Horizontal).toString(), grid.header(column)) << column;
    EXPECT_TRUE(grid.header(0).startsWith(u"   "_s));  // the padding stays
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::ToolTipRole).toString(),
              u"Click on a column header to sort the files");

    const struct {
        int row, column;
        const char* display;
        bool painted;
    } cells[] = {
        {0, 1, "10", true},   // a row with metadata
        {2, 0, "c", false},   // a row without
        {2, 3, "", true},     // the user-defined column, whatever the row
    };
    for (const auto& c : cells) {
        const QModelIndex index = model.index(c.row, c.column);
        EXPECT_EQ(model.data(index).toString(), QLatin1String(c.display));
        EXPECT_EQ(model.data(index, Qt::BackgroundRole).isValid(), c.painted) << c.row << ',' << c.column;
    }
    // A chosen colour is painted as it is, with text that reads on it; a user-defined
    // column stands apart in a lighter tint while rows are highlighted too.
    EXPECT_EQ(model.data(model.index(0, 1), Qt::BackgroundRole).value<QBrush>().color(), QColor(255, 0, 0));
    EXPECT_EQ(model.data(model.index(0, 1), Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::white));
    const QColor user = model.data(model.index(2, 3), Qt::BackgroundRole).value<QBrush>().color();
    EXPECT_EQ(user.red(), 255);
    EXPECT_GT(user.green(), 100);
    EXPECT_EQ(model.data(model.index(2, 3), Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::black));
    model.setHighlightFilesWithMetadata(false);
    EXPECT_FALSE(model.data(model.index(0, 1), Qt::BackgroundRole).isValid());
    EXPECT_EQ(model.data(model.index(2, 3), Qt::BackgroundRole).value<QBrush>().color(), QColor(255, 0, 0));

    // The system colour is a tint of the palette's highlight, so selected rows differ.
    model.setHighlightFilesWithMetadata(true);
    model.setHighlightColour(kSystemHighlightColour, QColor(0, 0, 200));
    const QColor tint = model.data(model.index(0, 1), Qt::BackgroundRole).value<QBrush>().color();
    EXPECT_NE(tint, QColor(0, 0, 200));
    EXPECT_GT(tint.blue(), tint.red());

    // Tooltips: the cell's text, wrapped, and none when the option is off.
    model.appendRows({{{"e", QString(200, u'x') + u" tail"_s, "", ""}, true}});
    const QString tip = model.data(model.index(4, 1), Qt::ToolTipRole).toString();
    EXPECT_TRUE(tip.contains(u'\n'));
    EXPECT_TRUE(tip.endsWith(u"tail"_s));
    EXPECT_FALSE(model.data(model.index(2, 1), Qt::ToolTipRole).isValid());  // empty cell
    model.setToolTips(false);
    EXPECT_FALSE(model.data(model.index(4, 1), Qt::ToolTipRole).isValid());
}

TEST(GridTableModel, ColourWords)
{
    const struct {
        qint32 word;
        QColor colour;
    } cases[] = {{0, QColor(0, 0, 0)}, {0x0000FF, QColor(255, 0, 0)}, {0xFF0000, QColor(0, 0, 255)},
                 {0x563412, QColor(0x12, 0x34, 0x56)}, {0xFFFFFF, QColor(255, 255, 255)}};
    for (const auto& c : cases) {
        EXPECT_EQ(ColourOfWord(c.word, Qt::green), c.colour) << c.word;
        EXPECT_EQ(WordOfColour(c.colour), c.word) << c.word;
    }
    EXPECT_EQ(ColourOfWord(kSystemHighlightColour, Qt::green), QColor(Qt::green));
}

// Sorting through the model: numbers as numbers, text as text, and the selection and the
// current row stay on their files.
TEST(GridTableModel, SortKeepsTheSelectionOnItsFiles)
{
    const struct {
        QList<int> clicks;
        const char* order;
    } cases[] = {
        {{2}, "cdab"},     // Pages: 9 before 10, empty as 0
        {{2, 2}, "badc"},  // again: descending
        {{1}, "cabd"},     // Title: "10" before "9" before "Zeta"
    };
    for (const auto& c : cases) {
        GridTableModel model;
        model.reset(Grid());
        model.appendRows(kRows);
        QItemSelectionModel selection(&model);
        selection.select(model.index(1, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);  // b
        selection.setCurrentIndex(model.index(3, 2), QItemSelectionModel::NoUpdate);                 // d
        for (int column : c.clicks)
            model.sortByColumn(column);
        EXPECT_EQ(Names(model).join(QString()), QLatin1String(c.order));
        ASSERT_EQ(selection.selectedRows().size(), 1);
        EXPECT_EQ(model.data(selection.selectedRows().front()).toString(), u"b");
        EXPECT_EQ(model.data(model.index(selection.currentIndex().row(), 0)).toString(), u"d");
        EXPECT_EQ(selection.currentIndex().column(), 2);
    }
}

// Empty columns hidden and shown in the view, their widths kept; a width set by the user
// reaches the grid the reports read.
TEST(GridTableModel, EmptyColumnsAndWidthsInTheView)
{
    GridTableModel model;
    model.reset(Grid("Largeur1=150\r\n"));
    GridView view;
    view.setGridModel(&model);
    view.resize(800, 400);
    view.show();
    model.appendRows(kRows);
    EXPECT_EQ(view.columnWidth(1), 150);
    model.setDisplayEmptyColumns(false);
    EXPECT_TRUE(view.isColumnHidden(3));   // Client: empty everywhere
    EXPECT_FALSE(view.isColumnHidden(1));
    EXPECT_EQ(model.grid().width(3), 0);
    EXPECT_GT(model.grid().keptWidth(3), 0);
    // A value reaching the column shows it again.
    model.appendRows({{{"e", "", "", "Acme"}, true}});
    EXPECT_FALSE(view.isColumnHidden(3));
    model.setDisplayEmptyColumns(true);

    view.horizontalHeader()->resizeSection(1, 222);
    EXPECT_EQ(model.grid().width(1), 222);
    view.selectRows({1, 3});
    EXPECT_EQ(view.selectedRows(), (QList<int>{1, 3}));
    view.setLinesPerRow(4);
    EXPECT_GE(view.verticalHeader()->defaultSectionSize(), 4 * view.fontMetrics().lineSpacing());
}

// Scans in the background deliver every row in listing order, in batches, then the
// result; a second scan started over a running one gets only its own rows.
TEST(ScanRunner, BatchesAndReplacement)
{
    TempFolder big, small;
    for (int i = 0; i < 3000; ++i)
        big.write(u"f%1.txt"_s.arg(i, 5, 10, QLatin1Char('0')), "x");
    for (const char* name : {"a.txt", "b.txt", "c.txt"})
        small.write(QLatin1String(name), "y");
    Session session = StartSession(big.file(u"settings"_s), QString(), SystemInfo{});

    ScanRunner runner;
    QList<GridRow> rows;
    int batches = 0;
    QObject::connect(&runner, &ScanRunner::rowsReady, [&](const QList<GridRow>& batch) {
        rows += batch;
        ++batches;
    });
    QSignalSpy finished(&runner, &ScanRunner::finished);
    runner.start(session, ScanRequest{big.path(), false, 0});
    ASSERT_TRUE(finished.wait(30000));
    ASSERT_EQ(rows.size(), 3000);
    for (int i = 0; i < rows.size(); ++i)
        ASSERT_EQ(rows[i].cells.value(0), u"f%1.txt"_s.arg(i, 5, 10, QLatin1Char('0')));
    EXPECT_GE(batches, 1);
    EXPECT_EQ(finished.front().front().value<ScanResult>().files, 3000);

    rows.clear();
    finished.clear();
    runner.start(session, ScanRequest{big.path(), false, 0});
    runner.start(session, ScanRequest{small.path(), false, 0});
    ASSERT_TRUE(finished.wait(30000));
    QTest::qWait(200);
    EXPECT_EQ(finished.size(), 1);
    QStringList names;
    for (const GridRow& row : rows)
        names << row.cells.value(0);
    EXPECT_EQ(names, (QStringList{u"a.txt"_s, u"b.txt"_s, u"c.txt"_s}));

    // A stop ends the scan with its result marked stopped, and nothing arrives after.
    finished.clear();
    runner.start(session, ScanRequest{big.path(), false, 0});
    runner.stop();
    ASSERT_TRUE(finished.wait(30000));
    EXPECT_TRUE(finished.front().front().value<ScanResult>().stopped);
    EXPECT_FALSE(runner.isRunning());
}

TEST(BackgroundTask, StopReachesTheWorkAndDoneRunsOnTheWindowThread)
{
    BackgroundTask task;
    std::atomic<bool> sawStop{false};
    bool done = false;
    Qt::HANDLE doneThread = nullptr;
    task.start(
        [&](const std::atomic<bool>& stop) {
            while (!stop)
                QThread::msleep(1);
            sawStop = true;
        },
        [&] {
            done = true;
            doneThread = QThread::currentThreadId();
        });
    EXPECT_TRUE(task.isRunning());
    task.stop();
    ASSERT_TRUE(QTest::qWaitFor([&] { return done; }, 10000));
    EXPECT_TRUE(sawStop);
    EXPECT_EQ(doneThread, QThread::currentThreadId());
    EXPECT_FALSE(task.isRunning());
}
