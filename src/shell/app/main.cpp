// verdin: the player. A second start hands its command text to the running instance and
// ends, as does a remote request (--play, --next, ...); otherwise this process becomes
// the player, without windows (--headless, or when there is no display) or with them (the
// window library, loaded only then, so that the headless player and the hand-over never
// load the widget libraries).
#include "shell/app/CommandLine.h"
#include "shell/app/CoreApplication.h"
#include "shell/app/DBusInterfaces.h"
#include "shell/app/RemoteControl.h"
#include "shell/app/SessionBus.h"
#include "shell/app/SetupModes.h"
#include "shell/app/WindowLibrary.h"

#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>

namespace {

bool HaveDisplay() {
    const char* platform = std::getenv("QT_QPA_PLATFORM");
    if (platform && *platform) return true;
    const char* x = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    return (x && *x) || (wayland && *wayland);
}

int RunHeadless(int argc, char** argv, verdin::RunOptions options) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Verdin"));
    verdin::CoreApplication player(options);
    if (!player.Register()) {
        // Another instance came up meanwhile: it takes the command text.
        return verdin::HandOverCommandText(options.commandText) ? 0 : 1;
    }
    player.ScheduleStartUp();
    return player.Run();
}

}  // namespace

int main(int argc, char** argv) {
    const verdin::CommandLine line = verdin::ParseCommandLine(argc, argv);
    if (line.help) {
        std::fputs(verdin::kUsageText, stdout);
        return 0;
    }
    if (line.version) {
        std::printf("Verdin %s\n", VERDIN_VERSION);
        return 0;
    }
    if (!line.unknownOption.empty()) {
        std::fprintf(stderr, "verdin: unknown option %s\n%s", line.unknownOption.c_str(), verdin::kUsageText);
        return 2;
    }
    if (line.setup != verdin::SetupMode::kNone) return verdin::RunSetupMode(line);
    verdin::OpenSessionBus();
    if (!line.remote.empty()) {
        // Remote control never starts a player; paths given too go to the running one first.
        if (!line.commandText.empty() && !verdin::HandOverCommandText(line.commandText)) {
            std::fputs("Verdin: no running player to control.\n", stderr);
            return 1;
        }
        return verdin::RunRemoteRequests(line.remote);
    }
    if (verdin::HandOverCommandText(line.commandText)) return 0;

    verdin::RunOptions options;
    options.quitAfterPlay = line.quitAfterPlay;
    options.commandText = line.commandText;
    options.headless = line.headless || !HaveDisplay();
    if (!options.headless) {
        const int code = verdin::RunWithWindows(argc, argv, options);
        if (code != verdin::kWindowLibraryMissing) return code;
        std::fprintf(stderr, "Verdin: the window library could not be loaded; running without windows.\n");
        options.headless = true;
    } else if (!line.headless) {
        std::fprintf(stderr, "Verdin: no display; running without windows.\n");
    }
    return RunHeadless(argc, argv, options);
}
