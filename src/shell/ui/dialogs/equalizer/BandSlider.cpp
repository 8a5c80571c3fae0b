#include "shell/ui/dialogs/equalizer/BandSlider.h"

#include <QLabel>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>

namespace verdin {
namespace {

constexpr int kCentre = 10;  // the position of 0 dB

// The slider itself counts upwards, as Qt draws its filled part from the bottom.
int SliderValueOf(int gain) { return gain - kMinimumGain; }
int GainAt(int sliderValue) { return sliderValue + kMinimumGain; }

}  // namespace

QString GainLabel(int gain) { return QStringLiteral("%1dB").arg(gain); }

BandSlider::BandSlider(const QString& name, QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 0, 2, 0);
    auto* nameLabel = new QLabel(name, this);
    nameLabel->setAlignment(Qt::AlignHCenter);
    layout->addWidget(nameLabel);
    slider_ = new QSlider(Qt::Vertical, this);
    slider_->setRange(SliderValueOf(kMinimumGain), SliderValueOf(kMaximumGain));
    slider_->setTickPosition(QSlider::TicksBothSides);
    slider_->setTickInterval(5);
    slider_->setPageStep(2);
    slider_->setValue(SliderValueOf(0));
    slider_->setMinimumHeight(120);
    layout->addWidget(slider_, 1, Qt::AlignHCenter);
    gainLabel_ = new QLabel(GainLabel(0), this);
    gainLabel_->setAlignment(Qt::AlignHCenter);
    gainLabel_->setMinimumWidth(gainLabel_->fontMetrics().horizontalAdvance(GainLabel(-10)) + 4);
    layout->addWidget(gainLabel_);
    connect(slider_, &QSlider::valueChanged, this, [this](int value) {
        gainLabel_->setText(GainLabel(GainAt(value)));
        emit GainChanged(GainAt(value));
    });
}

int BandSlider::Gain() const { return GainAt(slider_->value()); }

void BandSlider::SetGain(int gain) { slider_->setValue(SliderValueOf(std::clamp(gain, kMinimumGain, kMaximumGain))); }

int BandSlider::Position() const { return kCentre - Gain(); }

void BandSlider::SetPosition(int position) { SetGain(kCentre - position); }

QString BandSlider::Label() const { return gainLabel_->text(); }

}  // namespace verdin
