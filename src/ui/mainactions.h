// The main window's commands: every menu entry created in one place from one table
// (caption, object name, shortcut, menu, check mark), retranslated from the same table,
// and the display options of the Options menu with the key each one writes.
#pragma once

#include "core/configuration.h"
#include "core/language.h"
#include "core/session.h"
#include "core/settings.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <optional>

class QAction;
class QActionGroup;
class QMenu;
class QMenuBar;

namespace brindar {

enum class WindowCommand {
    Open, OpenWithEditor, Properties, Rename, Delete, ModifyProperties, Refresh, Exit,
    SelectAll, Copy,
    SelectConfiguration, RemoveConfiguration, SelectConditions, DisplayedMetadata, DisplayedFiles,
    Surligner, SurlignerProprietesPersonnelles, HighlightColour, ToolTips, Contextuel, DoubleClicProprietes,
    Lines1, Lines2, Lines3, Lines4, Lines5, BarreHorizontale, LocalTime, UseNTFSCache, FullGrid, GridAndButtons,
    HtmlReport, CsvReport, WordReport, HtmlOptions, ColumnOrder, Hypertext, AddDirectory, RemoveDirectory,
    EditReportsList, BuildReportsList, ReportsListFolder, XmlExport,
    HelpContents, About, AboutQt,
};

// A boolean display option of the Options menu: its command, its key, where the
// configuration keeps it.
struct OptionSwitch {
    WindowCommand command;
    SettingKey key;
    bool Configuration::*value;
};
const QList<OptionSwitch>& OptionSwitches();

// Writes `change` with the session. The menu's switches are the truth while the window
// runs: a stored "0" of a switch the loader cannot turn off must not come back with the
// read that follows the write. Returns the reason when the settings cannot be saved.
std::optional<QString> WriteKeepingSwitches(Session& session, const SettingsChange& change);

class MainActions final : public QObject {
    Q_OBJECT
public:
    // Creates every action and the menus of `menuBar`; the Language menu is filled by
    // setLanguages.
    MainActions(QMenuBar* menuBar, QObject* parent);

    QAction* action(WindowCommand command) const { return actions_.value(command); }
    QMenu* languageMenu() const { return languageMenu_; }
    // Entries of the Language menu, `current` checked; each action's data is its name.
    void setLanguages(const QStringList& names, const QString& current);
    void retranslate(const Captions& captions);
    // Check marks from the configuration: the switches, the lines per cell, the grid mode.
    void mirror(const Configuration& configuration, bool fullGrid);
    // The file actions need a selected data row.
    void setRowsSelected(bool selected);
    // While a report or list page is built, the report commands wait.
    void setReportsEnabled(bool enabled);

signals:
    void triggered(brindar::WindowCommand command);
    void languageChosen(const QString& name);

private:
    QHash<WindowCommand, QAction*> actions_;
    QList<std::pair<QMenu*, int>> menus_;  // menu, its caption number
    QMenu* languageMenu_ = nullptr;
    QActionGroup* languages_ = nullptr;
};

}  // namespace brindar
