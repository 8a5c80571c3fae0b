#include "VolumeControl.h"

#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/controls/ScrollCodes.h"

#include <QHBoxLayout>

namespace verdin {

namespace {

constexpr int kVolumeStep = 2048;

}  // namespace

VolumeControl::VolumeControl(Player& player, QWidget* parent)
    : QWidget(parent), player_(player), bar_(new ControlScrollBar(this)) {
    setObjectName(QStringLiteral("Verdin - Volume Container"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setMinimumWidth(80);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->addWidget(bar_);
    bar_->setRange(0, 32767);
    bar_->setPageStep(kVolumeStep / 2);
    ShowVolume();
    connect(bar_, &ControlScrollBar::Scrolled, this, &VolumeControl::OnScrolled);
}

void VolumeControl::Refresh() {
    if (!bar_->isSliderDown()) ShowVolume();
}

void VolumeControl::ShowVolume() { bar_->SetThumb(player_.GetSettings().Volume() / 2); }

void VolumeControl::OnScrolled(ScrollCode code, int thumb) {
    player_.ClearReplacedByShell();
    switch (code) {
        case ScrollCode::kPageUp:
            player_.ChangeVolume(-kVolumeStep);
            ShowVolume();
            break;
        case ScrollCode::kPageDown:
            player_.ChangeVolume(kVolumeStep);
            ShowVolume();
            break;
        case ScrollCode::kThumbTrack: player_.SetVolumeFromThumb(thumb); break;
        case ScrollCode::kEndScroll: ShowVolume(); break;
        case ScrollCode::kOther: break;
    }
}

}  // namespace verdin
