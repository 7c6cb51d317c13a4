// The reports-list dialogs.
#include "ui/reportslistdialogs.h"

#include "core/captionids.h"
#include "core/columnorder.h"
#include "platform/filenames.h"
#include "ui/folderpicker.h"
#include "ui/prompter.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace brindar {
namespace {

QString List(const Captions& captions, int number) { return captions.text(CaptionSection::List, number); }

QPushButton* Button(QWidget* parent, const char* name, const QString& text)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(name));
    return button;
}

// OK and Cancel of the reports-list dialogs.
QDialogButtonBox* OkCancel(QDialog* dialog, const Captions& captions, const std::function<void()>& confirm)
{
    auto* buttons = new QDialogButtonBox(dialog);
    QPushButton* ok = buttons->addButton(List(captions, 12), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    QPushButton* cancel = buttons->addButton(List(captions, 13), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdAnnuler"));
    QObject::connect(ok, &QPushButton::clicked, dialog, confirm);
    QObject::connect(cancel, &QPushButton::clicked, dialog, &QDialog::reject);
    return buttons;
}

FolderPicker* Picker(QWidget* parent, const Captions& captions, const QString& start)
{
    auto* picker = new FolderPicker(parent);
    picker->setCaptions(List(captions, 26), List(captions, 27));
    picker->showFolder(start.isEmpty() || !IsDirectory(start) ? QDir::homePath() : start);
    return picker;
}

}  // namespace

ReportsListFolderDialog::ReportsListFolderDialog(const QString& current, const Captions& captions,
                                                 Prompter& prompter, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmPathListeTableaux"));
    setWindowTitle(List(captions, 23));
    auto* hint = new QLabel(List(captions, 24), this);
    hint->setWordWrap(true);
    picker_ = Picker(this, captions, current);
    auto* caption = new QLabel(List(captions, 29), this);
    chosen_ = new QLabel(current, this);
    chosen_->setObjectName(QStringLiteral("lblChemin"));
    connect(picker_, &FolderPicker::folderChosen, chosen_, &QLabel::setText);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(hint);
    layout->addWidget(picker_, 1);
    layout->addWidget(caption);
    layout->addWidget(chosen_);
    layout->addWidget(OkCancel(this, captions, [this, &captions, &prompter] {
        if (!IsDirectory(folder())) {
            prompter.message(this, Prompter::Icon::Exclamation, List(captions, 28) + u' ' + folder());
            return;
        }
        accept();
    }));
    resize(420, 520);
}

QString ReportsListFolderDialog::folder() const { return picker_->currentFolder(); }

AddReportsDialog::AddReportsDialog(ReportsList& list, const QString& start, const Captions& captions,
                                   Prompter& prompter, QWidget* parent)
    : QDialog(parent), list_(list)
{
    setObjectName(QStringLiteral("frmAjouterTableau"));
    setWindowTitle(List(captions, 16));
    picker_ = Picker(this, captions, start);
    subfolders_ = new QCheckBox(List(captions, 17), this);
    subfolders_->setObjectName(QStringLiteral("chkSousRepertoires"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(picker_, 1);
    layout->addWidget(subfolders_);
    layout->addWidget(OkCancel(this, captions, [this, &captions, &prompter] {
        if (const auto message =
                AddDirectories(list_, picker_->currentFolder(), subfolders_->isChecked(), captions)) {
            prompter.message(this, Prompter::Icon::Information, *message);
            return;
        }
        accept();
    }));
    resize(420, 520);
}

ReportsListDialog::ReportsListDialog(const QString& file, const QString& shown, const Captions& captions,
                                     Prompter& prompter, QWidget* parent)
    : QDialog(parent), file_(file), shown_(shown), captions_(captions), prompter_(prompter),
      list_(ReadReportsList(file))
{
    setObjectName(QStringLiteral("frmEnsembleTableaux"));
    setWindowTitle(List(captions, 1));
    auto* hint = new QLabel(List(captions, 15), this);
    hint->setWordWrap(true);
    grid_ = new QTableWidget(0, 3, this);
    grid_->setObjectName(QStringLiteral("gridTableaux"));
    grid_->setHorizontalHeaderLabels({List(captions, 2), List(captions, 3), List(captions, 4)});
    grid_->horizontalHeader()->setStretchLastSection(true);
    grid_->horizontalHeader()->resizeSection(1, 260);
    grid_->verticalHeader()->hide();
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto* titleCaption = new QLabel(List(captions, 5), this);
    title_ = new QLineEdit(this);
    title_->setObjectName(QStringLiteral("txtLibelle"));
    titleCaption->setBuddy(title_);

    QPushButton* add = Button(this, "cmdAjouter", List(captions, 6));
    QPushButton* remove = Button(this, "cmdSupprimer", List(captions, 7));
    QPushButton* removeAll = Button(this, "cmdSupprimerTout", List(captions, 8));
    up_ = Button(this, "cmdMonter", List(captions, 9));
    down_ = Button(this, "cmdDescendre", List(captions, 10));
    QPushButton* goTo = Button(this, "cmdGoTo", List(captions, 11));

    auto* layout = new QGridLayout(this);
    layout->addWidget(hint, 0, 0, 1, 2);
    layout->addWidget(grid_, 1, 0, 7, 1);
    int row = 1;
    for (QPushButton* side : {add, remove, removeAll, up_, down_, goTo})
        layout->addWidget(side, row++, 1);
    layout->setRowStretch(7, 1);
    layout->addWidget(titleCaption, 8, 0, 1, 2);
    layout->addWidget(title_, 9, 0, 1, 2);
    layout->addWidget(OkCancel(this, captions, [this] { confirm(); }), 10, 0, 1, 2);
    resize(680, 460);

    const auto current = [this] { return grid_->currentRow(); };
    connect(grid_, &QTableWidget::currentCellChanged, this, [this](int selected) {
        up_->setEnabled(selected > 0);
        down_->setEnabled(selected >= 0 && selected < grid_->rowCount() - 1);
        title_->setText(selected >= 0 && selected < list_.size() ? list_[selected].title : QString());
    });
    // A click on the Active cell includes or excludes the report.
    connect(grid_, &QTableWidget::cellClicked, this, [this](int clicked, int column) {
        if (column == 0 && clicked < list_.size()) {
            list_[clicked].active = !list_[clicked].active;
            showList(clicked);
        }
    });
    connect(title_, &QLineEdit::textEdited, this, [this, current](const QString& text) {
        const int selected = current();
        if (selected >= 0 && selected < list_.size()) {
            list_[selected].title = text;
            grid_->item(selected, 2)->setText(text);
        }
    });
    connect(add, &QPushButton::clicked, this, [this] {
        AddReportsDialog dialog(list_, shown_, captions_, prompter_, this);
        if (prompter_.exec(dialog) == QDialog::Accepted)
            showList(int(list_.size()) - 1);
    });
    connect(remove, &QPushButton::clicked, this, [this, current] {
        const int selected = current();
        if (selected >= 0 && selected < list_.size()) {
            list_.removeAt(selected);
            showList(std::min(selected, int(list_.size()) - 1));
        }
    });
    connect(removeAll, &QPushButton::clicked, this, [this] {
        if (!list_.isEmpty() && prompter_.question(this, List(captions_, 25))) {
            list_.clear();
            showList(-1);
        }
    });
    for (auto [button, step] : {std::pair{up_, -1}, std::pair{down_, +1}})
        connect(button, &QPushButton::clicked, this, [this, current, step = step] {
            const int selected = current();
            MoveReport(list_, selected, step);
            showList(std::clamp(selected + step, 0, int(list_.size()) - 1));
        });
    // "Go to directory" keeps the edits, as OK does, and shows the folder in the window.
    connect(goTo, &QPushButton::clicked, this, [this, current] {
        const int selected = current();
        if (selected < 0 || selected >= list_.size())
            return;
        goTo_ = list_[selected].directory;
        confirm();
    });
    showList(list_.isEmpty() ? -1 : 0);
}

void ReportsListDialog::showList(int selected)
{
    grid_->setRowCount(int(list_.size()));
    for (int row = 0; row < list_.size(); ++row) {
        grid_->setItem(row, 0, new QTableWidgetItem(list_[row].active ? List(captions_, 14) : QString()));
        grid_->setItem(row, 1, new QTableWidgetItem(list_[row].directory));
        grid_->setItem(row, 2, new QTableWidgetItem(list_[row].title));
    }
    grid_->setCurrentCell(selected, 1);
    up_->setEnabled(selected > 0);
    down_->setEnabled(selected >= 0 && selected < grid_->rowCount() - 1);
}

void ReportsListDialog::confirm()
{
    if (const auto error = WriteReportsList(file_, list_)) {
        goTo_.clear();
        prompter_.message(this, Prompter::Icon::Exclamation, *error);
        return;
    }
    accept();
}

}  // namespace brindar
