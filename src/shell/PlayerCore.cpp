#include "PlayerCore.h"

#include "base/Locations.h"
#include "playlist/files/PlaylistFileTexts.h"
#include "playlist/files/PlaylistFormat.h"
#include "plugins/dsp/DspHost.h"
#include "plugins/dsp/DspLibraryList.h"
#include "plugins/dsp/DspPluginsText.h"
#include "plugins/library/PluginLibrary.h"
#include "settings/EqualizerRecord.h"
#include "settings/store/SettingsStore.h"
#include "shell/replaygain/ReplayGainFile.h"

namespace verdin {

namespace {

unsigned ChangesOf(const ListChange& change) {
    return (change.rows ? kRowsChanged : 0u) | (change.texts ? kTextsChanged : 0u) |
           (change.current ? kCurrentChanged : 0u) | (change.cleared ? kListReplaced : 0u) | kDisplayChanged;
}

}  // namespace

PlayerCore::PlayerCore(Settings& settings, SettingsEnvironment environment, PlayerHost& host)
    : settings_(settings),
      environment_(std::move(environment)),
      host_(host),
      list_(settings_, modules_),
      playback_(settings_, modules_, list_, host_, [this](unsigned changes) {
          Announce((changes & Playback::kDisplay ? kDisplayChanged : 0u) |
                   (changes & Playback::kTrack ? kTrackChanged : 0u) |
                   (changes & Playback::kJump ? kPositionJumped : 0u));
      }) {
    list_.Listen([this](const ListChange& change) { Announce(ChangesOf(change)); });
}

// Members go in reverse order: playback (the streams, whose options hold the DSP host's
// hook) before the DSP host. Nothing is announced or asked of the host meanwhile: whoever
// runs the player may be half gone.
PlayerCore::~PlayerCore() { listeners_.clear(); }

void PlayerCore::Announce(unsigned changes) {
    // By index: a listener may register another one or stop listening.
    for (size_t i = 0; i < listeners_.size(); ++i) listeners_[i].second(changes);
}

void PlayerCore::LoadPlugins(void* mainWindow) {
    mainWindow_ = mainWindow;
    const PluginLibrary::KeepOpenedWhileScanning scan;
    vis_.Load(static_cast<VerdinHostWindow*>(mainWindow_), settings_.visualizationPluginsSearchPath,
              settings_.visualizationPlugins);
    vis_.StartUp();
    LoadDspModules();
    general_.LoadAll(settings_.generalPurposePluginsSearchPath, mainWindow);
    modules_.LoadInputModules(settings_.inputPluginsSearchPath, mainWindow);
}

void PlayerCore::LoadDspModules() {
    if (!dspLibraries_ || dspSearchPath_ != settings_.dspPluginsSearchPath) {
        dspSearchPath_ = settings_.dspPluginsSearchPath;
        dspLibraries_ = std::make_unique<DspLibraryList>(static_cast<VerdinHostWindow*>(mainWindow_), dspSearchPath_);
    }
    if (!dsp_) dsp_ = std::make_unique<DspHost>();
    dsp_->SetActiveList(*dspLibraries_, ParseDspPlugins(settings_.dspPlugins));
    playback_.SetDsp(dsp_.get());
}

void PlayerCore::VisualizationTick() {
    const Stream* stream = playback_.CurrentStream();
    if (!stream || !vis_.On()) return;
    sinceSpectrumMs_ += VisHost::kTickMs;
    // The values are read before any module renders: a module may change the track.
    const VisFrame frame{static_cast<int32_t>(stream->Format().sampleRate),
                         static_cast<int32_t>(stream->Format().channels),
                         [this] { TakeAnalyzerSnapshot(sinceSpectrumMs_ >= kSpectrumIntervalMs); },
                         [stream](int channel, int index) { return stream->GetAnalyzerValue(channel, index); },
                         [stream](int channel, int index) { return stream->GetWaveformValue(channel, index); }};
    vis_.RenderTick(frame);
}

void PlayerCore::TakeAnalyzerSnapshot(bool spectrumDue) {
    if (spectrumDue) sinceSpectrumMs_ = 0;
    playback_.TakeAnalyzerSnapshot(spectrumDue);
}

void PlayerCore::StartUp(std::string_view commandText) {
    startupDone_ = true;
    const ReplayGainLoad replayGain = LoadReplayGainSettings(environment_.userDirectory);
    playback_.SetReplayGain(replayGain.settings);
    if (!replayGain.problem.empty()) host_.ShowMessage(replayGain.problem, MessageIcon::kWarning);
    if (!commandText.empty()) {
        face_.ExecuteCommandText(commandText);
    } else {
        list_.LoadFile(environment_.userDirectory + "/default.vdp", settings_.savedCurrentIndex);
        if (settings_.autoPlayAtStartup) playback_.Play();
    }
    // The caption stops saying that the player is starting.
    Announce(kDisplayChanged);
}

bool PlayerCore::TearDown() {
    playback_.Stop();
    bool saved = true;
    CreateUserDirectory();
    const std::string defaultPlaylist = environment_.userDirectory + "/default.vdp";
    if (!list_.Save(-1, defaultPlaylist, static_cast<int>(PlaylistFormat::kVdp))) {
        host_.ShowMessage(kUnableToSavePlaylist, MessageIcon::kError);
        saved = false;
    }
    settings_.savedCurrentIndex = list_.CurrentRow();
    if (!SaveUserSettings(settings_, environment_)) saved = false;
    if (dsp_) dsp_->ClearActiveList();
    // After the settings were written: modules that run now run again at the next start.
    vis_.SwitchOff();
    general_.QuitAll();
    return saved;
}

void PlayerCore::SettingsChanged(const Settings& before) {
    const Settings& now = settings_;
    if (now.shuffleMode != before.shuffleMode) list_.ShuffleChanged();
    if (now.shuffleMode != before.shuffleMode || now.loopMode != before.loopMode) playback_.FollowingChanged();
    if (now.mainVolume != before.mainVolume) playback_.ApplyVolume();
    if (now.equalize != before.equalize || now.loudness != before.loudness || now.preAmp != before.preAmp ||
        now.equalizerValues != before.equalizerValues)
        playback_.ApplyEqualizer(now.equalize != 0, EqualizerRecordOf(now));
    if (vis_.Libraries()) {
        // Switching writes the setting itself, once the modules have followed.
        if (now.enableVisualizationPlugins != before.enableVisualizationPlugins) {
            const bool on = now.enableVisualizationPlugins != 0;
            settings_.enableVisualizationPlugins = before.enableVisualizationPlugins;
            on ? vis_.SwitchOn() : vis_.SwitchOff();
        }
        if (now.visualizationPluginsSearchPath != before.visualizationPluginsSearchPath ||
            now.visualizationPlugins != before.visualizationPlugins)
            vis_.Load(static_cast<VerdinHostWindow*>(mainWindow_), now.visualizationPluginsSearchPath,
                      now.visualizationPlugins);
    }
    if (dsp_ && (now.dspPluginsSearchPath != before.dspPluginsSearchPath || now.dspPlugins != before.dspPlugins))
        LoadDspModules();
}

}  // namespace verdin
