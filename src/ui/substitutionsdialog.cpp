// The hyperlink path substitutions dialog.
#include "ui/substitutionsdialog.h"

#include "core/columnorder.h"
#include "ui/prompter.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace brindar {
namespace {

QString Text(const Captions& captions, int number) { return captions.text(CaptionSection::Hypertext, number); }

}  // namespace

SubstitutionsDialog::SubstitutionsDialog(const QString& file, const Captions& captions, Prompter& prompter,
                                         QWidget* parent)
    : QDialog(parent), file_(file), captions_(captions), prompter_(prompter), list_(ReadSubstitutions(file))
{
    setObjectName(QStringLiteral("frmSubstitutionsPaths"));
    setWindowTitle(Text(captions, 1));
    auto* hint = new QLabel(Text(captions, 2), this);
    hint->setWordWrap(true);
    grid_ = new QTableWidget(0, 2, this);
    grid_->setObjectName(QStringLiteral("gridPaths"));
    grid_->setHorizontalHeaderLabels({Text(captions, 3), Text(captions, 4)});
    grid_->horizontalHeader()->setStretchLastSection(true);
    grid_->horizontalHeader()->resizeSection(0, 260);
    grid_->verticalHeader()->hide();
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    path_ = new QLineEdit(this);
    path_->setObjectName(QStringLiteral("txtChemin"));
    replacement_ = new QLineEdit(this);
    replacement_->setObjectName(QStringLiteral("txtRemplacement"));
    auto* fields = new QFormLayout;
    fields->addRow(Text(captions, 3), path_);
    fields->addRow(Text(captions, 4), replacement_);

    const auto button = [this](const char* name, const QString& text) {
        auto* created = new QPushButton(text, this);
        created->setObjectName(QLatin1String(name));
        return created;
    };
    QPushButton* add = button("cmdAjouter", Text(captions, 5));
    QPushButton* change = button("cmdModifier", Text(captions, 6));
    QPushButton* remove = button("cmdSupprimer", Text(captions, 7));
    QPushButton* removeAll = button("cmdSupprimerTout", Text(captions, 8));
    up_ = button("cmdMonter", Text(captions, 14));
    down_ = button("cmdDescendre", Text(captions, 15));
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(Text(captions, 9), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmdOK"));
    QPushButton* cancel = buttons->addButton(Text(captions, 10), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdAnnuler"));

    auto* layout = new QGridLayout(this);
    layout->addWidget(hint, 0, 0, 1, 2);
    layout->addWidget(grid_, 1, 0, 7, 1);
    int row = 1;
    for (QPushButton* side : {add, change, remove, removeAll, up_, down_})
        layout->addWidget(side, row++, 1);
    layout->setRowStretch(7, 1);
    layout->addLayout(fields, 8, 0, 1, 2);
    layout->addWidget(buttons, 9, 0, 1, 2);
    resize(620, 420);

    connect(grid_, &QTableWidget::currentCellChanged, this, [this](int current) {
        up_->setEnabled(current > 0);
        down_->setEnabled(current >= 0 && current < grid_->rowCount() - 1);
        if (current >= 0 && current < list_.size()) {
            path_->setText(list_[current].path);
            replacement_->setText(list_[current].replacement);
        }
    });
    connect(add, &QPushButton::clicked, this, [this] {
        say(AddSubstitution(list_, path_->text().trimmed(), replacement_->text().trimmed(), captions_));
    });
    connect(change, &QPushButton::clicked, this, [this] {
        say(ChangeSubstitution(list_, path_->text().trimmed(), replacement_->text().trimmed(), captions_));
    });
    connect(remove, &QPushButton::clicked, this, [this] {
        const int current = grid_->currentRow();
        if (current >= 0 && current < list_.size()) {
            list_.removeAt(current);
            showList(std::min(current, int(list_.size()) - 1));
        }
    });
    connect(removeAll, &QPushButton::clicked, this, [this] {
        list_.clear();
        showList(-1);
    });
    for (auto [moveButton, step] : {std::pair{up_, -1}, std::pair{down_, +1}})
        connect(moveButton, &QPushButton::clicked, this, [this, step = step] {
            const int current = grid_->currentRow();
            MoveItem(list_, current, step);
            showList(std::clamp(current + step, 0, int(list_.size()) - 1));
        });
    connect(ok, &QPushButton::clicked, this, &SubstitutionsDialog::confirm);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    showList(list_.isEmpty() ? -1 : 0);
}

void SubstitutionsDialog::showList(int selected)
{
    grid_->setRowCount(int(list_.size()));
    for (int row = 0; row < list_.size(); ++row) {
        grid_->setItem(row, 0, new QTableWidgetItem(list_[row].path));
        grid_->setItem(row, 1, new QTableWidgetItem(list_[row].replacement));
    }
    grid_->setCurrentCell(selected, 0);
    up_->setEnabled(selected > 0);
    down_->setEnabled(selected >= 0 && selected < grid_->rowCount() - 1);
}

// The engine's messages are information boxes; a change shows the list again, the row
// of the path typed selected.
void SubstitutionsDialog::say(const std::optional<QString>& message)
{
    if (message) {
        prompter_.message(this, Prompter::Icon::Information, *message);
        return;
    }
    int selected = -1;
    for (int row = 0; row < list_.size(); ++row)
        if (list_[row].path.compare(path_->text().trimmed(), Qt::CaseInsensitive) == 0)
            selected = row;
    showList(selected);
}

void SubstitutionsDialog::confirm()
{
    if (const auto error = WriteSubstitutions(file_, list_)) {
        prompter_.message(this, Prompter::Icon::Exclamation, *error);
        return;
    }
    accept();
}

}  // namespace brindar
