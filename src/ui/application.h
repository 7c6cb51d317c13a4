// The desktop application: the main window and its services, as `brindar` with no
// arguments (or --open) starts it.
#pragma once

#include <QString>

namespace brindar {

// Creates the application, opens the main window on `folder` (empty: the configuration's
// "Repertoire") and runs until it closes. SIGTERM and SIGINT close the window the normal
// way, so its settings are saved.
int RunWindow(int& argc, char** argv, const QString& folder);

// Whether the font of the report's sort glyph is installed (needs the application).
bool WebdingsInstalled();

}  // namespace brindar
