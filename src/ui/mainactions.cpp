// The main window's commands from one table.
#include "ui/mainactions.h"

#include "core/captionids.h"

#include <QAction>
#include <QActionGroup>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace brindar {
namespace {

enum class Menu { File, Edit, Configuration, Options, Language, Reports, Help };

struct MenuInfo {
    Menu menu;
    int caption;  // [Main]
    const char* objectName;
};
constexpr MenuInfo kMenus[] = {
    {Menu::File, 1, "mnuFile"},           {Menu::Edit, caption::EditMenu.number, "mnuEdit"},
    {Menu::Configuration, 9, "mnuConfiguration"}, {Menu::Options, 14, "mnuOptions"},
    {Menu::Language, 31, "mnuLanguage"},   {Menu::Reports, 32, "mnuReports"},
    {Menu::Help, 50, "mnuHelp"},
};

enum Flag { kPlain = 0, kCheckable = 1, kSeparatorBefore = 2, kNeedsRows = 4, kReport = 8, kLater = 16 };

struct CommandInfo {
    WindowCommand command;
    Menu menu;
    int caption;  // [Main]
    const char* objectName;
    const char* shortcut;
    int flags;
};

// Menu order is table order. kLater: the dialog of that command is not part of the window
// yet, so its entry is shown disabled.
constexpr CommandInfo kCommands[] = {
    {WindowCommand::Open, Menu::File, 2, "mnuOpen", "Return", kNeedsRows},
    {WindowCommand::OpenWithEditor, Menu::File, 3, "mnuOpenNotepad", "", kNeedsRows},
    {WindowCommand::Properties, Menu::File, 4, "mnuProperties", "Alt+Return", kNeedsRows},
    {WindowCommand::Rename, Menu::File, 5, "mnuRename", "F2", kNeedsRows | kSeparatorBefore},
    {WindowCommand::Delete, Menu::File, 6, "mnuDelete", "Del", kNeedsRows},
    {WindowCommand::ModifyProperties, Menu::File, 49, "mnuModify", "", kNeedsRows | kLater | kSeparatorBefore},
    {WindowCommand::Refresh, Menu::File, 7, "mnuRefresh", "F5", kSeparatorBefore},
    {WindowCommand::Exit, Menu::File, 8, "mnuExit", "Ctrl+Q", kSeparatorBefore},
    {WindowCommand::SelectAll, Menu::Edit, caption::SelectAll.number, "mnuSelectAll", "Ctrl+A", kPlain},
    {WindowCommand::Copy, Menu::Edit, caption::Copy.number, "mnuCopy", "Ctrl+C", kNeedsRows},
    {WindowCommand::SelectConfiguration, Menu::Configuration, 10, "mnuSelectConfiguration", "", kPlain},
    {WindowCommand::RemoveConfiguration, Menu::Configuration, 11, "mnuRemoveConfiguration", "", kPlain},
    {WindowCommand::SelectConditions, Menu::Configuration, caption::SelectConditionsFile.number, "mnuSelectConditions", "",
     kPlain},
    {WindowCommand::DisplayedMetadata, Menu::Configuration, 12, "mnuDisplayedMetadata", "", kSeparatorBefore},
    {WindowCommand::DisplayedFiles, Menu::Configuration, 13, "mnuDisplayedFiles", "", kPlain},
    {WindowCommand::Surligner, Menu::Options, 15, "mnuSurligner", "", kCheckable},
    {WindowCommand::SurlignerProprietesPersonnelles, Menu::Options, 16, "mnuSurlignerPerso", "", kCheckable},
    {WindowCommand::HighlightColour, Menu::Options, 17, "mnuCouleur", "", kPlain},
    {WindowCommand::ToolTips, Menu::Options, 18, "mnuToolTips", "", kCheckable | kSeparatorBefore},
    {WindowCommand::Contextuel, Menu::Options, 19, "mnuContextuel", "", kCheckable},
    {WindowCommand::DoubleClicProprietes, Menu::Options, 20, "mnuDoubleClic", "", kCheckable},
    {WindowCommand::Lines1, Menu::Options, 21, "mnuLignes1", "", kCheckable | kSeparatorBefore},
    {WindowCommand::Lines2, Menu::Options, 22, "mnuLignes2", "", kCheckable},
    {WindowCommand::Lines3, Menu::Options, 23, "mnuLignes3", "", kCheckable},
    {WindowCommand::Lines4, Menu::Options, 24, "mnuLignes4", "", kCheckable},
    {WindowCommand::Lines5, Menu::Options, 25, "mnuLignes5", "", kCheckable},
    {WindowCommand::BarreHorizontale, Menu::Options, 26, "mnuBarreHorizontale", "", kCheckable | kSeparatorBefore},
    {WindowCommand::LocalTime, Menu::Options, 27, "mnuLocalTime", "", kCheckable},
    {WindowCommand::UseNTFSCache, Menu::Options, 28, "mnuCache", "", kCheckable},
    {WindowCommand::FullGrid, Menu::Options, 29, "mnuFullGrid", "", kCheckable | kSeparatorBefore},
    {WindowCommand::GridAndButtons, Menu::Options, 30, "mnuGridAndButtons", "", kCheckable},
    {WindowCommand::HtmlReport, Menu::Reports, 33, "mnuHTML", "", kReport},
    {WindowCommand::CsvReport, Menu::Reports, 34, "mnuCSV", "", kReport},
    {WindowCommand::WordReport, Menu::Reports, 35, "mnuWord", "", kReport},
    {WindowCommand::HtmlOptions, Menu::Reports, 36, "mnuOptionsHTML", "", kSeparatorBefore},
    {WindowCommand::ColumnOrder, Menu::Reports, 37, "mnuColonnesHTML", "", kPlain},
    {WindowCommand::Hypertext, Menu::Reports, 38, "mnuHypertext", "", kPlain},
    {WindowCommand::AddDirectory, Menu::Reports, 39, "mnuAjouterEnsemble", "", kReport | kSeparatorBefore},
    {WindowCommand::RemoveDirectory, Menu::Reports, 40, "mnuRetirerEnsemble", "", kReport},
    {WindowCommand::EditReportsList, Menu::Reports, 41, "mnuEnsembleTableaux", "", kPlain},
    {WindowCommand::BuildReportsList, Menu::Reports, 46, "mnuHTMLEnsemble", "", kReport},
    {WindowCommand::ReportsListFolder, Menu::Reports, 47, "mnuPathListeTableaux", "", kReport},
    {WindowCommand::XmlExport, Menu::Reports, 48, "mnuExportXML", "", kLater | kSeparatorBefore},
    {WindowCommand::HelpContents, Menu::Help, 51, "mnuContents", "F1", kPlain},
    {WindowCommand::About, Menu::Help, 52, "mnuAbout", "", kPlain},
    {WindowCommand::AboutQt, Menu::Help, caption::AboutQt.number, "mnuAboutQt", "", kPlain},
};

}  // namespace

const QList<OptionSwitch>& OptionSwitches()
{
    using C = Configuration;
    static const QList<OptionSwitch> switches = {
        {WindowCommand::Surligner, key::Surligner, &C::surligner},
        {WindowCommand::SurlignerProprietesPersonnelles, key::SurlignerProprietesPersonnelles,
         &C::surlignerProprietesPersonnelles},
        {WindowCommand::ToolTips, key::ToolTips, &C::toolTips},
        {WindowCommand::Contextuel, key::Contextuel, &C::contextuel},
        {WindowCommand::DoubleClicProprietes, key::DoubleClicProprietes, &C::doubleClicProprietes},
        {WindowCommand::BarreHorizontale, key::BarreHorizontale, &C::barreHorizontale},
        {WindowCommand::LocalTime, key::LocalTime, &C::localTime},
        {WindowCommand::UseNTFSCache, key::UseNTFSCache, &C::useNtfsCache},
    };
    return switches;
}

std::optional<QString> WriteKeepingSwitches(Session& session, const SettingsChange& change)
{
    std::vector<std::pair<const OptionSwitch*, bool>> kept;
    for (const OptionSwitch& option : OptionSwitches())
        kept.emplace_back(&option, session.configuration.*option.value);
    const auto error = session.write(change);
    for (const auto& [option, value] : kept)
        session.configuration.*option->value = value;
    for (const SettingsChange::Entry& entry : change.entries())
        if (entry.file == SettingsFile::Configuration && entry.section == u"Configuration")
            for (const OptionSwitch& option : OptionSwitches())
                if (entry.key == option.key.keyName())
                    session.configuration.*option.value = entry.value == u"1";
    return error;
}

MainActions::MainActions(QMenuBar* menuBar, QObject* parent) : QObject(parent)
{
    QHash<Menu, QMenu*> menus;
    for (const MenuInfo& info : kMenus) {
        QMenu* menu = menuBar->addMenu(QString());
        menu->setObjectName(QLatin1String(info.objectName));
        menu->setToolTipsVisible(true);
        menus.insert(info.menu, menu);
        menus_.append({menu, info.caption});
    }
    languageMenu_ = menus.value(Menu::Language);
    languages_ = new QActionGroup(this);
    connect(languages_, &QActionGroup::triggered, this,
            [this](QAction* action) { emit languageChosen(action->data().toString()); });

    auto* lines = new QActionGroup(this);
    auto* gridMode = new QActionGroup(this);
    for (const CommandInfo& info : kCommands) {
        QMenu* menu = menus.value(info.menu);
        if (info.flags & kSeparatorBefore)
            menu->addSeparator();
        QAction* action = menu->addAction(QString());
        action->setObjectName(QLatin1String(info.objectName));
        action->setCheckable(info.flags & kCheckable);
        if (*info.shortcut)
            action->setShortcut(QKeySequence(QLatin1String(info.shortcut)));
        // Return and Delete belong to the grid alone: the path field and the dialogs
        // keep their own meaning of these keys.
        if (info.command == WindowCommand::Open || info.command == WindowCommand::Delete || info.command == WindowCommand::Copy ||
            info.command == WindowCommand::SelectAll)
            action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        if (info.flags & kLater)
            action->setEnabled(false);
        if (info.command >= WindowCommand::Lines1 && info.command <= WindowCommand::Lines5)
            lines->addAction(action);
        if (info.command == WindowCommand::FullGrid || info.command == WindowCommand::GridAndButtons)
            gridMode->addAction(action);
        const WindowCommand command = info.command;
        connect(action, &QAction::triggered, this, [this, command] { emit triggered(command); });
        actions_.insert(command, action);
    }
}

void MainActions::setLanguages(const QStringList& names, const QString& current)
{
    for (QAction* action : languages_->actions()) {
        languages_->removeAction(action);
        delete action;
    }
    for (const QString& name : names) {
        QAction* action = languageMenu_->addAction(name);
        action->setObjectName(QStringLiteral("mnuLanguage_") + name);
        action->setCheckable(true);
        action->setChecked(name.compare(current, Qt::CaseInsensitive) == 0);
        action->setData(name);
        languages_->addAction(action);
    }
}

void MainActions::retranslate(const Captions& captions)
{
    for (const auto& [menu, number] : menus_)
        menu->setTitle(captions.text(CaptionSection::Main, number));
    for (const CommandInfo& info : kCommands)
        actions_.value(info.command)->setText(captions.text(CaptionSection::Main, info.caption));
}

void MainActions::mirror(const Configuration& configuration, bool fullGrid)
{
    for (const OptionSwitch& option : OptionSwitches())
        actions_.value(option.command)->setChecked(configuration.*option.value);
    const int lines = std::clamp(configuration.lignesTexte, 1, 5);
    actions_.value(WindowCommand(int(WindowCommand::Lines1) + lines - 1))->setChecked(true);
    actions_.value(fullGrid ? WindowCommand::FullGrid : WindowCommand::GridAndButtons)->setChecked(true);
}

void MainActions::setRowsSelected(bool selected)
{
    for (const CommandInfo& info : kCommands)
        if ((info.flags & kNeedsRows) && !(info.flags & kLater))
            actions_.value(info.command)->setEnabled(selected);
}

void MainActions::setReportsEnabled(bool enabled)
{
    for (const CommandInfo& info : kCommands)
        if (info.flags & kReport)
            actions_.value(info.command)->setEnabled(enabled);
}

}  // namespace brindar
