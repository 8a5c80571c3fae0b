#pragma once
// The one settings record of the process.
//
// Each field bears the name of its stored value ("bufferSize", "equalizerValues"...), and
// every part of the player reads its options from here by that name. The record is plain
// data: toolkit-free code reads it directly; SettingsStore loads and saves it.
#include "settings/EqualizerPresetList.h"

#include <array>
#include <cstdint>
#include <string>

namespace verdin {

// The layout version written with the settings; older stored versions are upgraded.
inline constexpr int32_t kSettingsVersion = 28;

// One tool band of the main window: its identifier, width and whether it starts a line.
struct RebarBand {
    int32_t id = 0;
    int32_t width = 0;
    int32_t lineBreak = 0;
    bool operator==(const RebarBand&) const = default;
};

// The main window's placement: the 44-byte record of the stored layout (length,
// flags, show command, minimized and maximized positions, normal rectangle). All zero
// means the window has never been placed. showCmd 3 is maximized.
struct WindowPlacement {
    int32_t length = 0;
    int32_t flags = 0;
    int32_t showCmd = 0;
    int32_t minX = 0, minY = 0;
    int32_t maxX = 0, maxY = 0;
    int32_t left = 0, top = 0, right = 0, bottom = 0;
    bool operator==(const WindowPlacement&) const = default;
};

struct Settings {
    int32_t version = kSettingsVersion;
    std::string trackTitleTemplate;
    std::string windowTitleTemplate;
    std::string statusStringTemplate;
    int32_t customizedCaption = 0;
    std::string initialDirectory;
    std::array<int32_t, 8> playlistHeaderOrder{};
    std::array<int32_t, 8> playlistHeaderWidth{};
    std::array<RebarBand, 7> rebarBandArray{};
    WindowPlacement mainWindowPlacement;
    int32_t loopMode = 0;
    int32_t frequencyAnalyzer = 0;
    int32_t oscilloscope = 0;
    int32_t shuffleMode = 0;
    int32_t showPlaylist = 0;
    int32_t bufferSize = 0;         // bytes; the options page shows kilobytes of 1024
    int32_t bufferPrefill = 0;      // percent
    int32_t playerThreadPriority = 0;
    int32_t processPriorityClass = 0;
    std::string decodeDirectory;
    int32_t savedCurrentIndex = 0;
    int32_t useProxy = 0;
    std::string proxyURL;
    std::string proxyByPass;
    int32_t useTrayIcon = 0;
    int32_t skipSilenceInTheBeginning = 0;
    int32_t skipSilenceInTheEnd = 0;
    int32_t silenceLevel = 0;       // dB, always within -100..-20
    int32_t miniWindowMode = 0;
    int32_t miniWindowX = 0;
    int32_t miniWindowY = 0;
    int32_t miniWindowWidth = 0;
    int32_t autoPlayAtStartup = 0;
    int32_t miniWindowShowPosition = 0;
    int32_t minimized = 0;
    int32_t pauseBetweenTracks = 0; // milliseconds of silence between tracks, 0: none
    int32_t useRebarBitmap = 0;
    std::string rebarBitmap;
    int32_t rebarBitmapIntensity = 0;
    // The volume is the low 16 bits. Only those two bytes are stored; the high bits keep
    // what they held (all set by default) and travel with the value to the output.
    int32_t mainVolume = -1;
    int32_t showVolumeControl = 0;
    int32_t waveOutDevice = 0;      // -1: the default device
    int32_t equalize = 0;
    int32_t loudness = 0;
    int32_t usePresetLinks = 0;
    std::array<int32_t, 16> equalizerValues{};
    int32_t preAmp = 0;
    int32_t ignoreID3Tags = 0;
    int32_t showSplash = 0;
    int32_t skipInfoForURL = 0;
    int32_t skipInfoForCDROM = 0;
    int32_t skipInfoForAnyFile = 0;
    std::string sampleSpaceSearchPath;
    int32_t recurseSampleSpaceSearchPath = 0;
    int32_t recursiveAddDirectory = 0;
    int32_t outputType = 0;         // 0 sound card (ALSA), 1 decode to WAV files, 2 PulseAudio
    int32_t directSoundDevice = 0;  // PulseAudio sink index, 0: the default sink
    int32_t directSoundCooperativeLevel = 0;
    std::string inputPluginsSearchPath;
    std::string visualizationPluginsSearchPath;
    std::string dspPluginsSearchPath;
    std::string generalPurposePluginsSearchPath;
    int32_t enableVisualizationPlugins = 0;
    int32_t normalWindowAlwaysOnTop = 0;
    std::string visualizationPlugins;
    std::string dspPlugins;
    int32_t crossfade = 0;
    int32_t crossfadeLength = 0;    // milliseconds
    int32_t deleteTracksAfterPlaying = 0;
    int32_t vdpHistory = 0;

    // Not a stored value: the equalizer presets, kept in "default.eq" in the user directory.
    EqualizerPresetList presets;

    uint16_t Volume() const { return static_cast<uint16_t>(mainVolume & 0xFFFF); }
    void SetVolume(uint16_t volume) {
        mainVolume = static_cast<int32_t>((static_cast<uint32_t>(mainVolume) & 0xFFFF0000u) | volume);
    }
};

// The directories that some defaults are made of.
struct SettingsEnvironment {
    std::string programDirectory;  // the executable's directory, no trailing "/"
    std::string userDirectory;     // where default.eq lives, no trailing "/"
    std::string currentDirectory;  // the working directory at start-up
    std::string musicDirectory;    // the user's music folder: the default sample space
};

// Fills every stored field with its default (the presets are left alone).
void SetDefaultValues(Settings& settings, const SettingsEnvironment& environment);

// The defaults, then the preset list from "default.eq" in the user directory; without any
// preset there, one preset "All zeroes" (all bands and the pre-amp 0) becomes the current
// one. This is also "Reset All Options" (which empties the preset list first).
void SetDefaults(Settings& settings, const SettingsEnvironment& environment);

// The path of the preset file in a user directory.
std::string PresetFilePath(const SettingsEnvironment& environment);

// The default input plug-in search path: the bundled plug-in directory followed by ";".
std::string DefaultPluginSearchPath(const std::string& programDirectory);

}  // namespace verdin
