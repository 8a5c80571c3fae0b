// verdin-bench-null-device: points the player's settings at the ALSA "null" device, through
// the settings store of the environment it runs in (XDG_CONFIG_HOME), for benchmarks.
//
//   verdin-bench-null-device <the player's directory> [equalizer] [server] [analyzer]
//     equalizer: also switch the equalizer on with a curve on the bands
//     server:    play on the sound server's default sink instead (PulseAudio output)
//     analyzer:  show the window's frequency analyzer
// Prints the device number it stored; exits 1 when ALSA lists no "null" device or the
// settings cannot be written.
#include "engine/output/AlsaDeviceList.h"
#include "base/Locations.h"
#include "settings/store/SettingsStore.h"

#include <QStandardPaths>
#include <cstdio>
#include <cstring>
#include <optional>

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: verdin-bench-null-device <the player's directory> [equalizer] [server] [analyzer]\n");
        return 2;
    }
    const auto devices = verdin::ListAlsaDevices();
    std::optional<int> nullDevice;
    for (size_t i = 0; i < devices.size(); ++i)
        if (devices[i].name == "null") nullDevice = static_cast<int>(i) - 1;
    if (!nullDevice) {
        std::fprintf(stderr, "ALSA lists no \"null\" device\n");
        return 1;
    }
    // The player's own directory, not this program's: defaults such as the plug-in
    // search path are made from it.
    verdin::SettingsEnvironment environment{argv[1], verdin::UserDirectory(), verdin::CurrentDirectory(),
                                            QStandardPaths::writableLocation(QStandardPaths::MusicLocation).toStdString()};
    verdin::Settings settings;
    verdin::LoadUserSettings(settings, environment);
    settings.outputType = 0;
    settings.waveOutDevice = *nullDevice;
    for (int i = 2; i < argc; ++i) {
        if (std::strcmp(argv[i], "server") == 0) {
            settings.outputType = 2;
            settings.directSoundDevice = 0;
        } else if (std::strcmp(argv[i], "equalizer") == 0) {
            settings.equalize = 1;
            settings.equalizerValues = {6, 4, 2, 0, -2, -4, -3, 0, 1, 3, 5, 4, 2, 0, -1, -6};
        } else if (std::strcmp(argv[i], "analyzer") == 0) {
            settings.frequencyAnalyzer = 1;
        } else {
            std::fprintf(stderr, "unknown word: %s\n", argv[i]);
            return 2;
        }
    }
    if (!verdin::SaveUserSettings(settings, environment)) {
        std::fprintf(stderr, "the settings could not be written\n");
        return 1;
    }
    std::printf("%d\n", *nullDevice);
    return 0;
}
