// The left panel of the main window.
#include "ui/folderpanel.h"

#include "ui/folderpicker.h"

#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace brindar {
namespace {

struct ButtonInfo {
    const char* objectName;
    int caption;  // [Main]
    WindowCommand command;
    bool report;  // waits while a report is built
    bool later;   // its dialog is not part of the window yet
};
constexpr ButtonInfo kButtons[] = {
    {"cmdHTML", 56, WindowCommand::HtmlReport, true, false},
    {"cmdHTMLEnsemble", 57, WindowCommand::BuildReportsList, true, false},
    {"cmdCSV", 58, WindowCommand::CsvReport, true, false},
    {"cmdWord", 59, WindowCommand::WordReport, true, false},
    {"cmdXML", 60, WindowCommand::XmlExport, true, true},
    {"cmdAjouterEnsemble", 61, WindowCommand::AddDirectory, true, false},
    {"cmdRetirerEnsemble", 93, WindowCommand::RemoveDirectory, true, false},
    {"cmdModifier", 62, WindowCommand::ModifyProperties, true, true},
};

}  // namespace

FolderPanel::FolderPanel(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("panel"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);

    picker_ = new FolderPicker(this);
    connect(picker_, &FolderPicker::folderChosen, this, &FolderPanel::folderChosen);

    auto* buttons = new QGridLayout;
    int index = 0;
    for (const ButtonInfo& info : kButtons) {
        auto* button = new QPushButton(this);
        button->setObjectName(QLatin1String(info.objectName));
        button->setEnabled(!info.later);
        const WindowCommand command = info.command;
        connect(button, &QPushButton::clicked, this, [this, command] { emit commandTriggered(command); });
        buttons->addWidget(button, index / 2, index % 2);
        ++index;
        buttons_.append({button, info.caption});
        if (info.report && !info.later)
            reportButtons_.append(button);
    }

    listLabel_ = new QLabel(this);
    reports_ = new QListWidget(this);
    reports_->setObjectName(QStringLiteral("lstTableaux"));
    reports_->setSelectionMode(QAbstractItemView::NoSelection);
    listLabel_->setBuddy(reports_);
    connect(reports_, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { emit folderChosen(item->data(Qt::UserRole).toString()); });

    layout->addWidget(picker_, 3);
    layout->addLayout(buttons);
    layout->addWidget(listLabel_);
    layout->addWidget(reports_, 1);
}

void FolderPanel::retranslate(const Captions& captions)
{
    picker_->setCaptions(captions.text(CaptionSection::Main, 84), captions.text(CaptionSection::Main, 85));
    listLabel_->setText(captions.text(CaptionSection::List, 1));
    for (const auto& [button, number] : buttons_)
        button->setText(captions.text(CaptionSection::Main, number));
}

void FolderPanel::showFolder(const QString& folder) { picker_->showFolder(folder); }

// The tree fills itself in the background: the folder shown is selected again as each
// folder on its way is read, until it can be.
void FolderPanel::setReportsList(const ReportsList& list)
{
    reports_->clear();
    for (const ReportEntry& entry : list) {
        auto* item = new QListWidgetItem(entry.title == entry.directory ? entry.directory
                                                                         : entry.title + QStringLiteral("  —  ") +
                                                                               entry.directory,
                                         reports_);
        item->setData(Qt::UserRole, entry.directory);
        item->setFlags(Qt::ItemIsEnabled);
        item->setCheckState(entry.active ? Qt::Checked : Qt::Unchecked);
    }
}

void FolderPanel::setReportsEnabled(bool enabled)
{
    for (QPushButton* button : reportButtons_)
        button->setEnabled(enabled);
}

}  // namespace brindar
