// Where the main window opens: the chooser's placement (pixels), kept when it shows on a
// screen, else the default size centred on the primary screen.
#pragma once

#include "core/configuration.h"
#include "core/settings.h"

#include <QList>
#include <QRect>

class QWidget;

namespace brindar {

struct Placement {
    QRect geometry;
    bool maximised = false;
};

// `screens`: the available geometry of every screen. A placement counts as shown when a
// useful part of its title area (the top 40 pixels, at least 100 wide) lies on a screen.
Placement PlacementOf(const Chooser& chooser, const QList<QRect>& screens, const QRect& primary,
                      const QSize& defaultSize);

// The chooser's keys for the window as it is now: WindowState (0 normal, 1 minimised,
// 2 maximised) and the normal geometry.
SettingsChange PlacementChange(const QWidget& window);

}  // namespace brindar
