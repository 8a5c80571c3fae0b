#include "Settings.h"

#include "base/Locations.h"

namespace verdin {

std::string DefaultPluginSearchPath(const std::string& programDirectory) {
    return PluginDirectoryFor(programDirectory) + ";";
}

std::string PresetFilePath(const SettingsEnvironment& environment) {
    return environment.userDirectory + "/default.eq";
}

void SetDefaultValues(Settings& s, const SettingsEnvironment& env) {
    EqualizerPresetList presets = std::move(s.presets);
    s = Settings{};
    s.presets = std::move(presets);

    s.version = kSettingsVersion;
    s.trackTitleTemplate = "%LEADARTIST% - %TITLE%";
    s.windowTitleTemplate = "%num% %title% <%status%>";
    s.statusStringTemplate = "%num% %title% %time% (%dur%)";
    s.customizedCaption = 1;
    s.initialDirectory = env.currentDirectory;
    s.playlistHeaderOrder = {1, 0, 2, 3, 4, 5, 6, 7};
    s.playlistHeaderWidth = {300, 30, 55, 60, 80, 75, 60, 60};
    s.rebarBandArray = {RebarBand{103, 999, 0}, RebarBand{125, 0, 0}, RebarBand{111, 999, 1},
                        RebarBand{116, 0, 0},   RebarBand{115, 0, 1}, RebarBand{114, 0, 1},
                        RebarBand{124, 0, 1}};
    s.mainWindowPlacement = WindowPlacement{};
    s.loopMode = 0;
    s.frequencyAnalyzer = 0;
    s.oscilloscope = 0;
    s.shuffleMode = 0;
    s.showPlaylist = 1;
    s.bufferSize = 512000;
    s.bufferPrefill = 100;
    s.playerThreadPriority = 2;
    s.processPriorityClass = 128;
    s.decodeDirectory = env.currentDirectory;
    s.savedCurrentIndex = 0;
    s.useProxy = 0;
    s.proxyURL.clear();
    s.proxyByPass.clear();
    s.useTrayIcon = 1;
    s.skipSilenceInTheBeginning = 0;
    s.skipSilenceInTheEnd = 0;
    s.silenceLevel = -100;
    s.miniWindowMode = 0;
    s.miniWindowX = 9999;
    s.miniWindowY = 9999;
    s.miniWindowWidth = 0;
    s.autoPlayAtStartup = 0;
    s.miniWindowShowPosition = 1;
    s.minimized = 0;
    s.pauseBetweenTracks = 0;
    s.useRebarBitmap = 1;
    s.rebarBitmap = DataDirectoryFor(env.programDirectory) + "/rebar_brimfell.bmp";
    s.rebarBitmapIntensity = 40;
    s.mainVolume = -1;
    s.showVolumeControl = 0;
    s.waveOutDevice = -1;
    s.equalize = 0;
    s.loudness = 0;
    s.usePresetLinks = 0;
    s.equalizerValues.fill(0);
    s.preAmp = 0;
    s.ignoreID3Tags = 0;
    s.showSplash = 1;
    s.skipInfoForURL = 0;
    s.skipInfoForCDROM = 0;
    s.skipInfoForAnyFile = 0;
    s.sampleSpaceSearchPath = env.musicDirectory + ";";
    s.recurseSampleSpaceSearchPath = 0;
    s.recursiveAddDirectory = 0;
    s.outputType = 0;
    s.directSoundDevice = 0;
    s.directSoundCooperativeLevel = 2;
    s.inputPluginsSearchPath = DefaultPluginSearchPath(env.programDirectory);
    s.visualizationPluginsSearchPath = s.inputPluginsSearchPath;
    s.dspPluginsSearchPath = s.inputPluginsSearchPath;
    s.generalPurposePluginsSearchPath = s.inputPluginsSearchPath;
    s.enableVisualizationPlugins = 0;
    s.normalWindowAlwaysOnTop = 0;
    s.visualizationPlugins.clear();
    s.dspPlugins.clear();
    s.crossfade = 0;
    s.crossfadeLength = 2000;
    s.deleteTracksAfterPlaying = 0;
    s.vdpHistory = 1;
}

void SetDefaults(Settings& settings, const SettingsEnvironment& environment) {
    SetDefaultValues(settings, environment);
    // Reset All Options reads the preset file again from scratch, so presets are not
    // doubled and a preset deleted from the file does not linger.
    settings.presets.Clear();
    settings.presets.LoadFile(PresetFilePath(environment));
    if (settings.presets.Count() == 0) {
        EqualizerPreset zeroes;
        zeroes.name = "All zeroes";
        settings.presets.Append(std::move(zeroes));
        settings.presets.SetCurrent(0);
    }
}

}  // namespace verdin
