#include "shell/ui/dialogs/options/PlayerPage.h"

#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/dialogs/options/ReplayGainBox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>

namespace verdin {
namespace {

// The priority steps of stream threads (the player's first platform's thread priorities;
// the engine turns them into nice values).
constexpr std::array<NamedValue, 7> kThreadPriorities{{
    {"Idle", -15},         {"Lowest", -2},  {"Below normal", -1}, {"Normal", 0},
    {"Above normal", 1},   {"Highest", 2},  {"Time critical", 15},
}};

// The process priority classes, by their values on the player's first platform.
constexpr std::array<NamedValue, 6> kProcessPriorities{{
    {"Idle", 64},  {"Below normal", 16384}, {"Normal", 32}, {"Above normal", 32768}, {"High", 128}, {"Realtime", 256},
}};

constexpr int kBytesPerKilobyte = 1024;
constexpr int kMinimumPrefill = 10;
constexpr int kMaximumPrefill = 100;
constexpr int kLowestSilenceLevel = -100;
constexpr int kHighestSilenceLevel = -20;
constexpr double kMaximumPauseSeconds = 60.0;
constexpr double kMaximumCrossfadeSeconds = 30.0;

QDoubleSpinBox* SecondsBox(double maximum, QWidget* parent) {
    auto* box = new QDoubleSpinBox(parent);
    box->setRange(0.0, maximum);
    box->setDecimals(1);
    box->setSingleStep(0.5);
    return box;
}

double SecondsOf(int milliseconds, double maximum) { return std::clamp(std::round(milliseconds / 100.0) / 10.0, 0.0, maximum); }
int MillisecondsOf(double seconds) { return static_cast<int>(std::lround(seconds * 1000.0)); }

}  // namespace

std::span<const NamedValue> ThreadPriorityChoices() { return kThreadPriorities; }
std::span<const NamedValue> ProcessPriorityChoices() { return kProcessPriorities; }

PlayerPage::PlayerPage(Player& player, QWidget* parent) : OptionsPage(QStringLiteral("Player"), player, parent) {
    auto* layout = new QVBoxLayout(this);

    auto* decoder = new QGroupBox(QStringLiteral("Decoder"), this);
    auto* decoderForm = new QFormLayout(decoder);
    auto* bufferRow = new QHBoxLayout;
    bufferSize_ = new QSpinBox(decoder);
    bufferSize_->setObjectName(QStringLiteral("bufferSize"));
    bufferSize_->setRange(kMinimumBufferKilobytes, kMaximumBufferKilobytes);
    bufferRow->addWidget(bufferSize_);
    bufferRow->addWidget(new QLabel(QStringLiteral("KB (min 100, max 2000)"), decoder));
    bufferRow->addStretch();
    decoderForm->addRow(QStringLiteral("Buffer size:"), bufferRow);
    prefill_ = new LabelledSlider(QStringLiteral("Buffer pre-fill: %1%"), kMinimumPrefill, kMaximumPrefill,
                                  QStringLiteral("10%"), QStringLiteral("100 %"), decoder);
    prefill_->setObjectName(QStringLiteral("bufferPrefill"));
    decoderForm->addRow(prefill_);
    threadPriority_ = new QComboBox(decoder);
    threadPriority_->setObjectName(QStringLiteral("playerThreadPriority"));
    decoderForm->addRow(QStringLiteral("Player thread priority:"), threadPriority_);
    layout->addWidget(decoder);

    auto* process = new QGroupBox(QStringLiteral("Process"), this);
    auto* processForm = new QFormLayout(process);
    processPriority_ = new QComboBox(process);
    processPriority_->setObjectName(QStringLiteral("processPriorityClass"));
    processForm->addRow(QStringLiteral("Process priority class:"), processPriority_);
    processForm->addRow(new QLabel(QStringLiteral("The process priority is set when Verdin starts."), process));
    layout->addWidget(process);

    auto* between = new QGroupBox(QStringLiteral("Between tracks"), this);
    auto* betweenLayout = new QVBoxLayout(between);
    auto* pauseRow = new QHBoxLayout;
    pause_ = new QCheckBox(QStringLiteral("Silent pause of"), between);
    pauseSeconds_ = SecondsBox(kMaximumPauseSeconds, between);
    pauseSeconds_->setObjectName(QStringLiteral("pauseBetweenTracks"));
    pauseRow->addWidget(pause_);
    pauseRow->addWidget(pauseSeconds_);
    pauseRow->addWidget(new QLabel(QStringLiteral("seconds between tracks"), between));
    pauseRow->addStretch();
    betweenLayout->addLayout(pauseRow);
    auto* crossfadeRow = new QHBoxLayout;
    crossfadeRow->addWidget(AddFlag(QStringLiteral("Crossfade with maximum length of"), &Settings::crossfade, between));
    crossfadeSeconds_ = SecondsBox(kMaximumCrossfadeSeconds, between);
    crossfadeSeconds_->setObjectName(QStringLiteral("crossfadeLength"));
    crossfadeRow->addWidget(crossfadeSeconds_);
    crossfadeRow->addWidget(new QLabel(QStringLiteral("seconds"), between));
    crossfadeRow->addStretch();
    betweenLayout->addLayout(crossfadeRow);
    betweenLayout->addWidget(AddFlag(QStringLiteral("Skip silence in the beginning of a track"),
                                     &Settings::skipSilenceInTheBeginning, between));
    betweenLayout->addWidget(AddFlag(QStringLiteral("Skip silence in the end of a track (only within buffer)"),
                                     &Settings::skipSilenceInTheEnd, between));
    silenceLevel_ = new LabelledSlider(QStringLiteral("Intensity level for silence: %1 dB"), kLowestSilenceLevel,
                                       kHighestSilenceLevel, QStringLiteral("-100 dB"), QStringLiteral("-20 dB"), between);
    silenceLevel_->setObjectName(QStringLiteral("silenceLevel"));
    betweenLayout->addWidget(silenceLevel_);
    layout->addWidget(between);
    replayGain_ = new ReplayGainBox(this);
    layout->addWidget(replayGain_);
    layout->addStretch();

    connect(pause_, &QCheckBox::toggled, pauseSeconds_, &QWidget::setEnabled);
    Load();
}

void PlayerPage::Load() {
    LoadBindings();
    const Settings& s = CurrentSettings();
    const int kilobytes = std::clamp((s.bufferSize + kBytesPerKilobyte / 2) / kBytesPerKilobyte, kMinimumBufferKilobytes,
                                     kMaximumBufferKilobytes);
    bufferSize_->setValue(kilobytes);
    bufferKept_ = {s.bufferSize, kilobytes};
    prefill_->SetValue(std::clamp(s.bufferPrefill, kMinimumPrefill, kMaximumPrefill));
    prefillKept_ = {s.bufferPrefill, prefill_->Value()};
    FillChoices(threadPriority_, kThreadPriorities, s.playerThreadPriority);
    FillChoices(processPriority_, kProcessPriorities, s.processPriorityClass);

    pause_->setChecked(s.pauseBetweenTracks > 0);
    pauseSeconds_->setEnabled(s.pauseBetweenTracks > 0);
    pauseSeconds_->setValue(SecondsOf(std::max(s.pauseBetweenTracks, 0), kMaximumPauseSeconds));
    pauseKept_ = {s.pauseBetweenTracks, pauseSeconds_->value()};
    crossfadeSeconds_->setValue(SecondsOf(std::max(s.crossfadeLength, 0), kMaximumCrossfadeSeconds));
    crossfadeKept_ = {s.crossfadeLength, crossfadeSeconds_->value()};
    silenceLevel_->SetValue(std::clamp(s.silenceLevel, kLowestSilenceLevel, kHighestSilenceLevel));
    silenceKept_ = {s.silenceLevel, silenceLevel_->Value()};
    replayGain_->Load(player_.GetReplayGain());
}

void PlayerPage::Apply(Settings& s) {
    ApplyBindings(s);
    s.bufferSize = bufferKept_.Result(bufferSize_->value(), [](int kb) { return kb * kBytesPerKilobyte; });
    s.bufferPrefill = prefillKept_.Result(prefill_->Value(), [](int percent) { return percent; });
    s.playerThreadPriority = ChosenValue(threadPriority_);
    s.processPriorityClass = ChosenValue(processPriority_);
    if (!pause_->isChecked()) {
        s.pauseBetweenTracks = 0;
    } else {
        const int pause = pauseKept_.Result(pauseSeconds_->value(), MillisecondsOf);
        // Ticked with no length: a pause of the smallest step the field offers.
        s.pauseBetweenTracks = pause > 0 ? pause : 100;
    }
    s.crossfadeLength = crossfadeKept_.Result(crossfadeSeconds_->value(), MillisecondsOf);
    s.silenceLevel = silenceKept_.Result(silenceLevel_->Value(), [](int level) { return level; });
}

bool PlayerPage::ApplyApart() {
    const ReplayGainSettings values = replayGain_->Values();
    return values == player_.GetReplayGain() || player_.ChangeReplayGain(values);
}

}  // namespace verdin
