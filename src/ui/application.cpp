// The desktop application.
#include "ui/application.h"

#include "core/session.h"
#include "platform/folders.h"
#include "platform/memory.h"
#include "platform/signals.h"
#include "platform/systeminfo.h"
#include "ui/desktop.h"
#include "ui/mainwindow.h"
#include "ui/prompter.h"

#include <QApplication>
#include <QFontDatabase>
#include <QSocketNotifier>

namespace brindar {

bool WebdingsInstalled() { return QFontDatabase::families().contains(QStringLiteral("Webdings"), Qt::CaseInsensitive); }

int RunWindow(int& argc, char** argv, const QString& folder)
{
    LimitAllocatorArenas();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("brindar-pro"));
    QApplication::setApplicationDisplayName(QStringLiteral("Brindar Pro"));
    QApplication::setDesktopFileName(QStringLiteral("brindar-pro"));

    WidgetPrompter prompter;
    Desktop desktop;
    MainWindow window(StartSession(SettingsFolder(), DataFolder(), CurrentSystem()), prompter, desktop,
                      WebdingsInstalled());

    // A logout or Ctrl+C in the terminal closes the window as its Exit command does.
    const int descriptor = TerminationSignalDescriptor();
    QSocketNotifier notifier(descriptor, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &window, [&window, descriptor] {
        DrainTerminationSignals(descriptor);
        window.close();
    });

    window.start(folder);
    return application.exec();
}

}  // namespace brindar
