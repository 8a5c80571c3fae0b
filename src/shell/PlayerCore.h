#pragma once
// The player without windows: it owns the two owners of the player's state, the main
// list (the tree, its play order and current row, the sample space) and playback (the
// streams, the equalizer, volume, the progress tick), with the input modules, the DSP
// host they use, the visualization host and the general-purpose plug-ins, and runs start-up and teardown. The windowed and the headless player
// both run exactly this; only PlayerHost differs.
//
// Faces never see this class: they get its facade, Player.
//
// User-interface thread only.
#include "engine/input/InputModuleList.h"
#include "playlist/mainlist/MainList.h"
#include "plugins/dsp/DspForward.h"
#include "plugins/general/GeneralPluginHost.h"
#include "plugins/vis/VisHost.h"
#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/PlayerHost.h"
#include "shell/playback/Playback.h"

#include <memory>
#include <string_view>
#include <vector>

namespace verdin {

class DspHost;

class PlayerCore {
public:
    PlayerCore(Settings& settings, SettingsEnvironment environment, PlayerHost& host);
    ~PlayerCore();
    PlayerCore(const PlayerCore&) = delete;
    PlayerCore& operator=(const PlayerCore&) = delete;

    Player& Face() { return face_; }

    // Start-up: the input modules and plug-in hosts (mainWindow is the record plug-ins get
    // as their parent window), then the default playlist (or the command text when there
    // is one), the saved current row, automatic play.
    void LoadPlugins(void* mainWindow);
    void StartUp(std::string_view commandText);
    bool StartupDone() const { return startupDone_; }
    // Teardown: stop playing, save the main playlist to "default.vdp" and the settings,
    // then the general-purpose plug-ins' quit. Returns false when something could not be saved (the reason went to the host).
    bool TearDown();
    // The 100 ms progress tick.
    void ProgressTick() { playback_.ProgressTick(); }
    // The visualization modules' part of the 10 ms tick: only while a track is current.
    void VisualizationTick();

private:
    friend class Player;

    void Announce(unsigned changes);
    // What follows a change of the settings at once, given what they were before.
    void SettingsChanged(const Settings& before);
    void LoadDspModules();
    // A new spectrum at most every 30 ms, the interval the analyzer display keeps too; the
    // waveform is taken on every tick.
    void TakeAnalyzerSnapshot(bool spectrumDue);

    Settings& settings_;
    const SettingsEnvironment environment_;
    PlayerHost& host_;
    InputModuleList modules_;
    std::unique_ptr<DspLibraryList> dspLibraries_;
    std::unique_ptr<DspHost> dsp_;
    std::string dspSearchPath_;  // the path dspLibraries_ was enumerated on
    GeneralPluginHost general_;
    // Switched on and off through "enableVisualizationPlugins" (ChangeSettings).
    VisHost vis_{settings_.enableVisualizationPlugins};
    void* mainWindow_ = nullptr;
    // Milliseconds since the spectrum was last computed, for either the window or the
    // visualization modules.
    int32_t sinceSpectrumMs_ = kSpectrumIntervalMs;
    static constexpr int32_t kSpectrumIntervalMs = 30;
    MainList list_;
    Playback playback_;
    Player face_{*this};
    std::vector<std::pair<int, Player::Listener>> listeners_;
    int nextListener_ = 1;
    bool startupDone_ = false;
    bool replacedByShell_ = false;
};

}  // namespace verdin
