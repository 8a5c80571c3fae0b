#pragma once
// "Output": where the sound goes ("outputType"): the sound card through ALSA with its
// device ("waveOutDevice": -1 the default device, n the list's entry n + 1), WAV files
// ("Decode to .WAV file without playback" into "decodeDirectory"), or the PulseAudio
// server with its sink ("directSoundDevice", 0 the default sink) and the level
// "Normal", "Priority" or "Exclusive" ("directSoundCooperativeLevel" 1, 2, 3; stored and
// shown, it has no meaning to the server).
//
// The device lists are asked for when the page is first shown (asking a sound server
// that is not there can take a moment); until then, and for a stored device the lists
// do not hold, the stored number is kept.
#include "shell/ui/dialogs/options/OptionsPage.h"

#include "engine/output/OutputDeviceEntry.h"

#include <array>
#include <span>
#include <vector>

class QButtonGroup;
class QComboBox;
class QLineEdit;
class QRadioButton;

namespace verdin {

struct NamedValue;
std::span<const NamedValue> CooperativeLevelChoices();

// The note beside the PulseAudio choice.
inline constexpr const char* kPulseAudioPrefillNote =
    "Note: It is recommended to use 100% buffer pre-fill with the PulseAudio output. Buffer pre-fill may be "
    "adjusted from the Decoder section.";

class OutputPage : public OptionsPage {
    Q_OBJECT
public:
    explicit OutputPage(Player& player, QWidget* parent = nullptr);
    void Load() override;
    void Apply(Settings& s) override;

    // Fills the device lists from the given entries (the page's first showing passes
    // what ALSA and the server list).
    void FillDeviceLists(const std::vector<OutputDeviceEntry>& alsa, const std::vector<OutputDeviceEntry>& pulse);
    QRadioButton* KindButton(int outputType) const;
    QComboBox* AlsaDevices() const { return alsaDevices_; }
    QComboBox* PulseSinks() const { return pulseSinks_; }
    QComboBox* CooperativeLevel() const { return level_; }
    QLineEdit* DecodeDirectory() const { return decodeDirectory_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void SelectDevices();

    QButtonGroup* kindGroup_ = nullptr;
    std::array<QRadioButton*, 3> kinds_{};
    QComboBox* alsaDevices_ = nullptr;
    QComboBox* pulseSinks_ = nullptr;
    QComboBox* level_ = nullptr;
    QLineEdit* decodeDirectory_ = nullptr;
    bool listed_ = false;
};

}  // namespace verdin
