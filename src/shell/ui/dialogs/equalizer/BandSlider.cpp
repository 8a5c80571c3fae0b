#include "shell/ui/dialogs/equalizer/BandSlider.h"

#include <QLabel>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>

namespace verdin {
namespace {

constexpr int kCentre = 10;  // the slider position of 0 dB

int PositionOf(int gain) { return kCentre - gain; }
int GainAt(int position) { return kCentre - position; }

}  // namespace

QString GainLabel(int gain) { return QStringLiteral("%1dB").arg(gain); }

BandSlider::BandSlider(const QString& name, QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 0, 2, 0);
    auto* nameLabel = new QLabel(name, this);
    nameLabel->setAlignment(Qt::AlignHCenter);
    layout->addWidget(nameLabel);
    slider_ = new QSlider(Qt::Vertical, this);
    slider_->setRange(PositionOf(kMaximumGain), PositionOf(kMinimumGain));
    // Position 0 at the top, like the sliders of the player's first design.
    slider_->setInvertedAppearance(true);
    slider_->setInvertedControls(true);
    slider_->setTickPosition(QSlider::TicksBothSides);
    slider_->setTickInterval(5);
    slider_->setPageStep(2);
    slider_->setValue(PositionOf(0));
    slider_->setMinimumHeight(120);
    layout->addWidget(slider_, 1, Qt::AlignHCenter);
    gainLabel_ = new QLabel(GainLabel(0), this);
    gainLabel_->setAlignment(Qt::AlignHCenter);
    gainLabel_->setMinimumWidth(gainLabel_->fontMetrics().horizontalAdvance(GainLabel(-10)) + 4);
    layout->addWidget(gainLabel_);
    connect(slider_, &QSlider::valueChanged, this, [this](int position) {
        gainLabel_->setText(GainLabel(GainAt(position)));
        emit GainChanged(GainAt(position));
    });
}

int BandSlider::Gain() const { return GainAt(slider_->value()); }

void BandSlider::SetGain(int gain) { slider_->setValue(PositionOf(std::clamp(gain, kMinimumGain, kMaximumGain))); }

QString BandSlider::Label() const { return gainLabel_->text(); }

}  // namespace verdin
