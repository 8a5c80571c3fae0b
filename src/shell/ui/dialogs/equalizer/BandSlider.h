#pragma once
// One gain slider of the equalizer: -10..+10 dB in steps of 1 dB, +10 dB at the top;
// below it the gain as "%ddB", above it the band's name. Its position counts 0..20 from
// the top, so position = 10 - gain.
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
    // 0 at the top (+10 dB) .. 20 at the bottom (-10 dB).
    int Position() const;
    void SetPosition(int position);
    QSlider* Slider() const { return slider_; }
    QString Label() const;

signals:
    void GainChanged(int gain);

private:
    QSlider* slider_ = nullptr;
    QLabel* gainLabel_ = nullptr;
};

}  // namespace verdin
