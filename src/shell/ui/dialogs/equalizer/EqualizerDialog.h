#pragma once
// "Graphic Equalizer": 16 band sliders and the pre-amplification, "Enable equalizer",
// "Use preset links" and "Loudness", and the user's presets with their track links.
//
// Every change of a slider or a check box reaches the playing stream (and the one
// prepared to follow it) at once, the settings untouched: the values are band + pre-amp,
// plus the loudness curve when ticked. OK stores the check boxes, the gains and the
// pre-amp in the settings; Cancel gives the streams the stored values back. Preset
// changes (save, delete, default, links, import) go into the settings as they are made,
// whichever way the dialog closes.
//
// Presets: selecting one moves the sliders to its gains and lists its links ("Tracks
// linked to %s"; "Select preset" without a selection); "Save" replaces a preset of the
// typed name by a new one with the sliders' gains and no links, appended at the end;
// "Delete" removes the selected preset; "Default" marks it as the one chosen when no link
// matches; the link button ("Add link for %s" with the current track's path, or "No
// tracks playing") adds the playing track's path to the selected preset once;
// "Import..." appends the presets of a file; "Export..." writes the selected preset into
// a file whose name gets ".eq" unless it already ends so.
#include <QDialog>
#include <array>
#include <cstdint>
#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTimer;

namespace verdin {

class BandSlider;
class Player;
struct EqualizerPreset;

inline constexpr int kEqualizerBands = 16;
// The band labels, 50 Hz first.
extern const std::array<const char*, kEqualizerBands> kBandLabels;
inline constexpr const char* kPresetFileFilter = "Equalizer preset|*.eq|All files|*.*|";

class EqualizerDialog : public QDialog {
    Q_OBJECT
public:
    EqualizerDialog(QWidget* parent, Player& player);
    ~EqualizerDialog() override;

    BandSlider* Band(int index) const { return bands_[static_cast<size_t>(index)]; }
    BandSlider* PreAmp() const { return preAmp_; }
    QCheckBox* EnableBox() const { return enable_; }
    QCheckBox* PresetLinksBox() const { return presetLinks_; }
    QCheckBox* LoudnessBox() const { return loudness_; }
    QListWidget* PresetList() const { return presetList_; }
    QLineEdit* PresetName() const { return presetName_; }
    QListWidget* LinkedTracks() const { return linkedList_; }
    QString LinkedTracksCaption() const;
    QPushButton* LinkButton() const { return linkButton_; }

    std::array<int32_t, 16> Gains() const;

    // The buttons' actions.
    void SavePreset();
    void DeletePreset();
    void SetDefaultPreset();
    void LinkCurrentTrack();
    void DeleteLink();
    void ImportPresets();
    void ExportPreset();
    // Re-reads the playing track for the link button (a timer does it while open).
    void UpdateLinkButton();

    void accept() override;
    void reject() override;

private:
    int SelectedPreset() const;
    const EqualizerPreset* Selected() const;
    // Changes the selected preset in the settings.
    void ChangeSelected(const std::function<void(EqualizerPreset&)>& change);
    void FillPresets(int select);
    void PresetSelected(int row);
    void FillLinks();
    void SetSliders(const std::array<int32_t, 16>& bands, int32_t preAmp);
    // The dialog's state to the playing streams.
    void SendToStreams();
    // The stored settings to the playing streams (Cancel).
    void SendStoredToStreams();

    Player& player_;
    std::array<BandSlider*, kEqualizerBands> bands_{};
    BandSlider* preAmp_ = nullptr;
    QCheckBox* enable_ = nullptr;
    QCheckBox* presetLinks_ = nullptr;
    QCheckBox* loudness_ = nullptr;
    QListWidget* presetList_ = nullptr;
    QLineEdit* presetName_ = nullptr;
    QPushButton* deletePreset_ = nullptr;
    QPushButton* defaultPreset_ = nullptr;
    QPushButton* exportPreset_ = nullptr;
    QLabel* linkedCaption_ = nullptr;
    QListWidget* linkedList_ = nullptr;
    QPushButton* linkButton_ = nullptr;
    QPushButton* deleteLink_ = nullptr;
    QTimer* trackTimer_ = nullptr;
    bool moving_ = false;  // sliders set together: one message to the streams at the end
};

}  // namespace verdin
