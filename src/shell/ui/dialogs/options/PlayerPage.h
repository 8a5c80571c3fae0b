#pragma once
// "Player": the decoder's buffer ("bufferSize" in bytes, shown in kilobytes of 1024 as
// "KB (min 100, max 2000)"; "bufferPrefill", "Buffer pre-fill: 10%" .. "100 %"), the
// priorities ("playerThreadPriority", "processPriorityClass"), and what happens between
// tracks: a silent pause ("pauseBetweenTracks", milliseconds, shown in seconds), the
// crossfade ("crossfade", "crossfadeLength"), and silence skipping
// ("skipSilenceInTheBeginning", "skipSilenceInTheEnd", "silenceLevel" -100..-20 dB).
//
// And the ReplayGain box (ReplayGainBox.h).
//
// Streams take all of these when they are set up, so a change reaches the next track;
// the process priority is set when the player starts.
#include "shell/ui/dialogs/options/OptionWidgets.h"
#include "shell/ui/dialogs/options/OptionsPage.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QSpinBox;

namespace verdin {

class ReplayGainBox;

// Thread priority steps and process priority classes, by the names users know them by.
std::span<const NamedValue> ThreadPriorityChoices();
std::span<const NamedValue> ProcessPriorityChoices();

inline constexpr int kMinimumBufferKilobytes = 100;
inline constexpr int kMaximumBufferKilobytes = 2000;

class PlayerPage : public OptionsPage {
    Q_OBJECT
public:
    explicit PlayerPage(Player& player, QWidget* parent = nullptr);
    void Load() override;
    void Apply(Settings& s) override;
    bool ApplyApart() override;

    QSpinBox* BufferKilobytes() const { return bufferSize_; }
    LabelledSlider* Prefill() const { return prefill_; }
    QComboBox* ThreadPriority() const { return threadPriority_; }
    QComboBox* ProcessPriority() const { return processPriority_; }
    QCheckBox* PauseBox() const { return pause_; }
    QDoubleSpinBox* PauseSeconds() const { return pauseSeconds_; }
    QDoubleSpinBox* CrossfadeSeconds() const { return crossfadeSeconds_; }
    LabelledSlider* SilenceLevel() const { return silenceLevel_; }
    ReplayGainBox* ReplayGain() const { return replayGain_; }

private:
    QSpinBox* bufferSize_ = nullptr;
    LabelledSlider* prefill_ = nullptr;
    QComboBox* threadPriority_ = nullptr;
    QComboBox* processPriority_ = nullptr;
    QCheckBox* pause_ = nullptr;
    QDoubleSpinBox* pauseSeconds_ = nullptr;
    QDoubleSpinBox* crossfadeSeconds_ = nullptr;
    LabelledSlider* silenceLevel_ = nullptr;
    ReplayGainBox* replayGain_ = nullptr;

    KeptNumber<int> bufferKept_;
    KeptNumber<int> prefillKept_;
    KeptNumber<double> pauseKept_;
    KeptNumber<double> crossfadeKept_;
    KeptNumber<int> silenceKept_;
};

}  // namespace verdin
