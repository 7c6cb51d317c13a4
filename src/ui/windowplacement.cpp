// Where the main window opens.
#include "ui/windowplacement.h"

#include <QWidget>

namespace brindar {

Placement PlacementOf(const Chooser& chooser, const QList<QRect>& screens, const QRect& primary,
                      const QSize& defaultSize)
{
    Placement placement;
    placement.maximised = chooser.windowState == 2;
    QSize size = defaultSize;
    if (chooser.width && chooser.height && *chooser.width >= 200 && *chooser.height >= 150)
        size = QSize(*chooser.width, *chooser.height);
    size = size.boundedTo(primary.size());
    if (chooser.left && chooser.top) {
        const QRect saved(QPoint(*chooser.left, *chooser.top), size);
        const QRect titleArea(saved.topLeft(), QSize(saved.width(), 40));
        for (const QRect& screen : screens) {
            const QRect shown = screen.intersected(titleArea);
            if (shown.width() >= 100 && shown.height() >= 20) {
                placement.geometry = saved;
                return placement;
            }
        }
    }
    placement.geometry = QRect(QPoint(), size);
    placement.geometry.moveCenter(primary.center());
    return placement;
}

SettingsChange PlacementChange(const QWidget& window)
{
    const QRect normal = window.normalGeometry();
    const int state = window.isMaximized() ? 2 : window.isMinimized() ? 1 : 0;
    return SettingsChange()
        .setNumber(key::WindowState, state)
        .setNumber(key::Left, normal.x())
        .setNumber(key::Top, normal.y())
        .setNumber(key::Width, normal.width())
        .setNumber(key::Height, normal.height());
}

}  // namespace brindar
