#pragma once
// The "ReplayGain" box of the "Player" page: the mode (off, track, album), the pre-amp
// for tagged tracks, the gain for untagged ones (both -20..20 dB) and clipping
// prevention. Its values live apart from the settings record (ReplayGainFile.h), so the
// page hands them to the player through their own call when the dialog applies.
#include "shell/replaygain/ReplayGainSettings.h"

#include <QGroupBox>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;

namespace verdin {

class ReplayGainBox : public QGroupBox {
    Q_OBJECT
public:
    explicit ReplayGainBox(QWidget* parent = nullptr);

    void Load(const ReplayGainSettings& settings);
    ReplayGainSettings Values() const;

    QComboBox* Mode() const { return mode_; }
    QDoubleSpinBox* PreAmp() const { return preAmp_; }
    QDoubleSpinBox* UntaggedGain() const { return untagged_; }
    QCheckBox* PreventClipping() const { return preventClipping_; }

private:
    QComboBox* mode_ = nullptr;
    QDoubleSpinBox* preAmp_ = nullptr;
    QDoubleSpinBox* untagged_ = nullptr;
    QCheckBox* preventClipping_ = nullptr;
};

}  // namespace verdin
