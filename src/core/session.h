// The program's state after start-up: folders, chooser, configuration, language, columns.
#pragma once

#include "core/columnbuilder.h"
#include "core/configuration.h"
#include "core/inifile.h"
#include "core/language.h"
#include "platform/systeminfo.h"

#include <QString>

namespace brindar {

struct Session {
    QString settingsFolder;
    QString dataFolder;
    SystemInfo system;
    Chooser chooser;
    QString configurationPath;
    IniDocument configurationFile;
    Configuration configuration;
    Captions captions = Captions::English();
    ColumnSet columns;

    // Loads the configuration named by the chooser, its language, and builds the columns.
    void loadConfiguration();
    // Builds the columns again from the configuration file (after the displayed-metadata
    // dialog or a change of language).
    void buildColumns();
};

// Start-up: reads the chooser of the settings folder, loads the configuration it names
// and that configuration's language, and builds the columns.
Session StartSession(const QString& settingsFolder, const QString& dataFolder, const SystemInfo& system);

}  // namespace brindar
