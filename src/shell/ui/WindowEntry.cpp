// The window library's entry point: the whole windowed player, called by the program once
// it knows it will show windows.
#include "shell/app/DBusInterfaces.h"
#include "shell/app/WindowLibrary.h"
#include "shell/ui/WindowHost.h"

#include <QApplication>

extern "C" __attribute__((visibility("default"))) int verdin_run_with_windows(int argc, char** argv,
                                                                              const verdin::RunOptions* options) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Verdin"));
    QApplication::setQuitOnLastWindowClosed(false);
    verdin::RunOptions windowed = *options;
    windowed.headless = false;
    verdin::WindowApplication player(windowed);
    if (!player.Register()) return verdin::HandOverCommandText(windowed.commandText) ? 0 : 1;
    player.StartWithWindows();
    return player.Run();
}
