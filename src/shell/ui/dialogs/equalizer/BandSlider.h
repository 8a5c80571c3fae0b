#pragma once
// One gain slider of the equalizer: -10..+10 dB in steps of 1 dB. The slider runs 0..20
// with position = 10 - gain, so its top is +10 dB; below it the gain as "%ddB", above it
// the band's name.
#include <QWidget>

class QLabel;
class QSlider;

namespace verdin {

inline constexpr int kMinimumGain = -10;
inline constexpr int kMaximumGain = 10;

// "%ddB".
QString GainLabel(int gain);

class BandSlider : public QWidget {
    Q_OBJECT
public:
    BandSlider(const QString& name, QWidget* parent = nullptr);

    int Gain() const;
    // Clamped to -10..+10; emits GainChanged when the gain changes.
    void SetGain(int gain);
    QSlider* Slider() const { return slider_; }
    QString Label() const;

signals:
    void GainChanged(int gain);

private:
    QSlider* slider_ = nullptr;
    QLabel* gainLabel_ = nullptr;
};

}  // namespace verdin
