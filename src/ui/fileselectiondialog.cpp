// The displayed-files dialog.
#include "ui/fileselectiondialog.h"

#include "core/captionids.h"
#include "ui/prompter.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace brindar {
namespace {

// Long enough for any list a user types; the settings file reads 255 characters a value.
constexpr int kExtensionsLength = 250;

constexpr const char* kFamilyNames[kFamilyCount] = {"chkOffice", "chkOO", "chkPDF", "chkHTML", "chkJPEG", "chkXMP"};

QString Text(const Captions& captions, int number) { return captions.text(CaptionSection::Select, number); }

}  // namespace

FileSelectionDialog::FileSelectionDialog(const FileSelection& selection, const Captions& captions,
                                         Prompter& prompter, QWidget* parent)
    : QDialog(parent), captions_(captions), prompter_(prompter)
{
    setObjectName(QStringLiteral("frmSelectionFichiers"));
    setWindowTitle(Text(captions, 1));
    const auto check = [this](const char* name, const QString& text, bool checked) {
        auto* box = new QCheckBox(text, this);
        box->setObjectName(QLatin1String(name));
        box->setChecked(checked);
        connect(box, &QCheckBox::toggled, this, &FileSelectionDialog::update);
        return box;
    };
    const auto field = [this](const char* name, const QString& text) {
        auto* edit = new QLineEdit(text, this);
        edit->setObjectName(QLatin1String(name));
        edit->setMaxLength(kExtensionsLength);
        connect(edit, &QLineEdit::textChanged, this, &FileSelectionDialog::update);
        return edit;
    };
    all_ = check("chkTout", Text(captions, 2), selection.inclureTout);
    filter_ = check("chkExtensions", Text(captions, 3), selection.inclureExtensions);
    include_ = field("txtInclure", selection.extensionsSelected);
    exclude_ = field("txtExclure", selection.extensionsExcluded);
    hidden_ = check("chkCaches", Text(captions, 7), selection.inclureCaches);
    for (int i = 0; i < kFamilyCount; ++i)
        families_[i] = check(kFamilyNames[i], Text(captions, 9 + i), selection.families[i]);

    auto* extensions = new QFormLayout;
    extensions->addRow(Text(captions, 4), include_);
    extensions->addRow(Text(captions, 5), exclude_);
    auto* hint = new QLabel(Text(captions, 6), this);
    hint->setWordWrap(true);
    extensions->addRow(QString(), hint);

    auto* gather = new QGroupBox(Text(captions, 8), this);
    auto* gatherLayout = new QVBoxLayout(gather);
    for (QCheckBox* box : families_)
        gatherLayout->addWidget(box);

    summary_ = new QLabel(this);
    summary_->setObjectName(QStringLiteral("lblSelection"));

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton(Text(captions, 16), QDialogButtonBox::AcceptRole);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    QPushButton* cancel = buttons->addButton(Text(captions, 17), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdAnnuler"));
    connect(ok, &QPushButton::clicked, this, &FileSelectionDialog::confirm);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(all_);
    layout->addWidget(filter_);
    layout->addLayout(extensions);
    layout->addWidget(hidden_);
    layout->addWidget(gather);
    layout->addWidget(summary_);
    layout->addWidget(buttons);
    update();
}

FileSelection FileSelectionDialog::selection() const
{
    FileSelection selection;
    selection.inclureTout = all_->isChecked();
    selection.inclureExtensions = filter_->isChecked();
    selection.extensionsSelected = include_->text();
    selection.extensionsExcluded = exclude_->text();
    selection.inclureCaches = hidden_->isChecked();
    for (int i = 0; i < kFamilyCount; ++i)
        selection.families[i] = families_[i]->isChecked();
    return selection;
}

// Either of the first two boxes gathers every family: the family boxes wait meanwhile.
void FileSelectionDialog::update()
{
    const FileSelection current = selection();
    const bool own = !current.inclureTout && !current.inclureExtensions;
    for (QCheckBox* box : families_)
        box->setEnabled(own);
    include_->setEnabled(current.inclureExtensions);
    exclude_->setEnabled(current.inclureExtensions);
    summary_->setText(Text(captions_, 15) + u' ' + SelectionSummary(current));
}

void FileSelectionDialog::confirm()
{
    if (const auto problem = CheckFileSelection(selection())) {
        prompter_.message(this, Prompter::Icon::Exclamation, captions_.text(*problem));
        return;
    }
    accept();
}

}  // namespace brindar
