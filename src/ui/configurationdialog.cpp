// The configuration-file dialog.
#include "ui/configurationdialog.h"

#include "core/configurationfiles.h"
#include "core/paths.h"
#include "ui/prompter.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace brindar {
namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString Text(const Captions& captions, int number) { return captions.text(CaptionSection::Configuration, number); }

}  // namespace

ConfigurationDialog::ConfigurationDialog(Mode mode, const QString& settingsFolder, const QString& current,
                                         const Captions& captions, Prompter& prompter, QWidget* parent)
    : QDialog(parent), mode_(mode), folder_(settingsFolder), current_(current), captions_(captions), prompter_(prompter)
{
    setObjectName(QStringLiteral("frmConfiguration"));
    setWindowTitle(mode == Mode::Remove       ? Text(captions, 7)
                   : mode == Mode::Conditions ? Text(captions, 1) + QStringLiteral(" - ") + Text(captions, 9)
                                              : Text(captions, 1));
    auto* layout = new QVBoxLayout(this);
    auto* label = new QLabel(Text(captions, mode == Mode::Remove ? 7 : 1), this);
    label->setWordWrap(true);
    name_ = new QLineEdit(current, this);
    name_->setObjectName(QStringLiteral("txtNom"));
    label->setBuddy(name_);
    error_ = new QLabel(Text(captions, 5), this);
    error_->setObjectName(QStringLiteral("lblErreur"));
    error_->setWordWrap(true);
    QPalette warning = error_->palette();
    warning.setColor(QPalette::WindowText, Qt::red);
    error_->setPalette(warning);
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("lstConfigurations"));
    list_->addItems(mode == Mode::Conditions ? ListConditions(settingsFolder) : ListConfigurations(settingsFolder));
    directoryCaption_ = new QLabel(Text(captions, 10), this);
    directoryCaption_->setWordWrap(true);
    directory_ = new QLabel(this);
    directory_->setObjectName(QStringLiteral("lblRepertoire"));
    directory_->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* buttons = new QDialogButtonBox(this);
    ok_ = buttons->addButton(Text(captions, 2), QDialogButtonBox::AcceptRole);
    ok_->setObjectName(QStringLiteral("cmdOK"));
    remove_ = buttons->addButton(Text(captions, 3), QDialogButtonBox::DestructiveRole);
    remove_->setObjectName(QStringLiteral("cmdSupprimer"));
    QPushButton* cancel = buttons->addButton(Text(captions, 4), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cmdAnnuler"));
    ok_->setVisible(mode != Mode::Remove);
    remove_->setVisible(mode == Mode::Remove);
    (mode == Mode::Remove ? remove_ : ok_)->setDefault(true);

    layout->addWidget(label);
    layout->addWidget(name_);
    layout->addWidget(error_);
    layout->addWidget(list_, 1);
    layout->addWidget(directoryCaption_);
    layout->addWidget(directory_);
    layout->addWidget(buttons);
    resize(460, 420);

    connect(name_, &QLineEdit::textChanged, this, &ConfigurationDialog::nameChanged);
    connect(list_, &QListWidget::currentTextChanged, name_, &QLineEdit::setText);
    connect(list_, &QListWidget::itemDoubleClicked, this,
            [this] { mode_ == Mode::Remove ? remove() : confirm(); });
    connect(ok_, &QPushButton::clicked, this, &ConfigurationDialog::confirm);
    connect(remove_, &QPushButton::clicked, this, &ConfigurationDialog::remove);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    if (const auto items = list_->findItems(current, Qt::MatchFixedString); !items.isEmpty())
        list_->setCurrentItem(items.front());
    nameChanged();
}

QString ConfigurationDialog::chosenName() const { return chosen_; }

void ConfigurationDialog::nameChanged()
{
    const QString name = name_->text().trimmed();
    const bool forbidden = HasForbiddenCharacters(name);
    error_->setVisible(forbidden);
    ok_->setEnabled(!name.isEmpty() && !forbidden);
    remove_->setEnabled(!name.isEmpty() && !forbidden);
    const auto directory = mode_ == Mode::Conditions || forbidden ? std::nullopt
                                                                  : ConfigurationDirectory(folder_, name);
    directoryCaption_->setVisible(bool(directory));
    directory_->setVisible(bool(directory));
    directory_->setText(directory.value_or(QString()));
}

void ConfigurationDialog::confirm()
{
    QString name = name_->text().trimmed();
    if (name.isEmpty() || HasForbiddenCharacters(name))
        return;
    const bool conditions = mode_ == Mode::Conditions;
    // A name typed in another case is the file that exists: names are not told apart by case.
    const QStringList existing = conditions ? ListConditions(folder_) : ListConfigurations(folder_);
    const auto known = std::find_if(existing.cbegin(), existing.cend(), [&](const QString& other) {
        return other.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (known != existing.cend()) {
        name = *known;
    } else {
        if (!prompter_.question(this, QStringLiteral(" - ") + kCrLf + name, Text(captions_, 6)))
            return;
        const auto error = conditions ? CreateConditions(folder_, name) : CreateConfiguration(folder_, name);
        if (error) {
            prompter_.message(this, Prompter::Icon::Exclamation, *error);
            return;
        }
    }
    chosen_ = name;
    accept();
}

void ConfigurationDialog::remove()
{
    const QString name = name_->text().trimmed();
    if (name.isEmpty() || HasForbiddenCharacters(name))
        return;
    if (!prompter_.question(this, Text(captions_, 8) + QStringLiteral(" - ") + name + kCrLf))
        return;
    const auto error = mode_ == Mode::Conditions ? RemoveConditions(folder_, name, current_)
                                                 : RemoveConfiguration(folder_, name, current_);
    if (error) {
        prompter_.message(this, Prompter::Icon::Exclamation, *error);
        return;
    }
    chosen_ = name;
    accept();
}

}  // namespace brindar
