// The displayed-metadata dialog.
#include "ui/displayedmetadatadialog.h"

#include "core/captionids.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

namespace brindar {
namespace {

QString Metadata(const Captions& captions, int number) { return captions.text(CaptionSection::Metadata, number); }

// The heading a tab shows above its boxes, where it has one ([Metadata]).
int Heading(MetadataTab tab)
{
    return tab == MetadataTab::UserDefined ? 1 : tab == MetadataTab::Html ? 106 : tab == MetadataTab::Xmp ? 107 : 0;
}

}  // namespace

DisplayedMetadataDialog::DisplayedMetadataDialog(const DisplayedFields& fields, const Captions& captions,
                                                 QWidget* parent)
    : QDialog(parent), captions_(captions), fields_(fields)
{
    setObjectName(QStringLiteral("frmChoixMetadonnees"));
    setWindowTitle(captions.text(CaptionSection::Main, 12).remove(QStringLiteral("...")));
    auto* tabs = new QTabWidget(this);
    tabs->setObjectName(QStringLiteral("tabFamilles"));
    QHash<QString, QStringList> labels;  // a shared column's labels on every tab, for its tooltip
    for (const DisplayedFieldRow& row : DisplayedFieldsLayout())
        labels[row.code] << captions.text(CaptionSection::Main, caption::FirstMetadataTab.number + int(row.tab)) +
                                QStringLiteral(": ") + Metadata(captions, row.caption);

    for (int t = 0; t < kMetadataTabCount; ++t) {
        const auto tab = MetadataTab(t);
        auto* page = new QWidget;
        auto* layout = new QVBoxLayout(page);
        if (const int heading = Heading(tab)) {
            auto* label = new QLabel(Metadata(captions, heading), page);
            label->setWordWrap(true);
            layout->addWidget(label);
        }
        QList<QCheckBox*> tabBoxes;
        if (tab == MetadataTab::UserDefined) {
            auto* grid = new QGridLayout;
            for (int slot = 0; slot < kUserSlots; ++slot) {
                slots_[slot] = new QCheckBox(page);
                slots_[slot]->setObjectName(QStringLiteral("chkPerso%1").arg(slot));
                slots_[slot]->setChecked(fields.slotShown[slot]);
                names_[slot] = new QLineEdit(fields.names[slot], page);
                names_[slot]->setObjectName(QStringLiteral("textPerso%1").arg(slot));
                names_[slot]->setMaxLength(250);
                connect(slots_[slot], &QCheckBox::toggled, this, &DisplayedMetadataDialog::changed);
                connect(names_[slot], &QLineEdit::textChanged, this, &DisplayedMetadataDialog::changed);
                grid->addWidget(slots_[slot], slot, 0);
                grid->addWidget(names_[slot], slot, 1);
                tabBoxes << slots_[slot];
            }
            layout->addLayout(grid);
            warning_ = new QLabel(Metadata(captions, 105), page);
            warning_->setObjectName(QStringLiteral("lblAvertissement"));
            warning_->setStyleSheet(QStringLiteral("color: red"));
            layout->addWidget(warning_);
        } else {
            auto* grid = new QGridLayout;
            int index = 0;
            for (const DisplayedFieldRow& row : DisplayedFieldsLayout()) {
                if (row.tab != tab)
                    continue;
                auto* box = new QCheckBox(Metadata(captions, row.caption), page);
                box->setObjectName(QStringLiteral("chk%1_%2").arg(row.code.mid(1)).arg(t));
                box->setChecked(fields.shown.value(row.code));
                if (row.shared) {
                    QFont bold = box->font();
                    bold.setBold(true);
                    box->setFont(bold);
                    box->setToolTip(labels.value(row.code).join(u'\n'));
                }
                // A shared column is one switch wherever it is shown.
                connect(box, &QCheckBox::toggled, this, [this, code = row.code](bool on) {
                    if (syncing_)
                        return;
                    syncing_ = true;
                    for (QCheckBox* other : boxes_.value(code))
                        other->setChecked(on);
                    syncing_ = false;
                    changed();
                });
                boxes_[row.code] << box;
                grid->addWidget(box, index / 2, index % 2);
                ++index;
                tabBoxes << box;
            }
            layout->addLayout(grid);
            if (tab == MetadataTab::Iptc) {
                accents_ = new QCheckBox(Metadata(captions, 101), page);
                accents_->setObjectName(QStringLiteral("chkIPTCMac"));
                accents_->setChecked(fields.macintoshAccents);
                layout->addWidget(accents_);
            }
        }
        layout->addStretch(1);
        auto* selectRow = new QHBoxLayout;
        auto* all = new QPushButton(captions.text(caption::SelectAll), page);
        all->setObjectName(QStringLiteral("cmdTout%1").arg(t));
        auto* none = new QPushButton(captions.text(caption::ClearAll), page);
        none->setObjectName(QStringLiteral("cmdRien%1").arg(t));
        for (auto [button, on] : {std::pair{all, true}, std::pair{none, false}})
            connect(button, &QPushButton::clicked, this, [tabBoxes, on = on] {
                for (QCheckBox* box : tabBoxes)
                    box->setChecked(on);
            });
        selectRow->addWidget(all);
        selectRow->addWidget(none);
        selectRow->addStretch(1);
        layout->addLayout(selectRow);
        auto* scroll = new QScrollArea(tabs);
        scroll->setWidget(page);
        scroll->setWidgetResizable(true);
        tabs->addTab(scroll, captions.text(CaptionSection::Main, caption::FirstMetadataTab.number + t));
    }

    auto* shared = new QLabel(Metadata(captions, 102), this);
    QFont bold = shared->font();
    bold.setBold(true);
    shared->setFont(bold);
    auto* specific = new QLabel(Metadata(captions, 104), this);
    auto* tooltips = new QLabel(Metadata(captions, 103), this);
    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("lblColonnes"));
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(QDialogButtonBox::Ok);
    ok->setObjectName(QStringLiteral("cmdOK"));
    QPushButton* cancel = buttons->addButton(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("cmdAnnuler"));
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs, 1);
    layout->addWidget(shared);
    layout->addWidget(specific);
    layout->addWidget(tooltips);
    layout->addWidget(count_);
    layout->addWidget(buttons);
    resize(640, 560);
    changed();
}

DisplayedFields DisplayedMetadataDialog::fields() const
{
    DisplayedFields result = fields_;
    for (auto boxes = boxes_.cbegin(); boxes != boxes_.cend(); ++boxes)
        result.shown[boxes.key()] = boxes.value().front()->isChecked();
    for (int slot = 0; slot < kUserSlots; ++slot) {
        result.slotShown[slot] = slots_[slot]->isChecked();
        result.names[slot] = names_[slot]->text();
    }
    result.macintoshAccents = accents_->isChecked();
    return result;
}

void DisplayedMetadataDialog::changed()
{
    const DisplayedFields current = fields();
    bool unnamed = false;
    for (int slot = 0; slot < kUserSlots; ++slot)
        unnamed = unnamed || (current.slotShown[slot] && current.names[slot].trimmed().isEmpty());
    warning_->setVisible(unnamed);
    count_->setText(captions_.text(caption::ColumnsCount).arg(ColumnCount(current)));
}

}  // namespace brindar
