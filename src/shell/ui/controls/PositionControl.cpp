#include "PositionControl.h"

#include "settings/Settings.h"
#include "shell/Player.h"
#include "shell/ui/controls/ScrollCodes.h"

#include <QHBoxLayout>
#include <algorithm>

namespace verdin {

namespace {

constexpr int kPageMs = 5000;

}  // namespace

PositionControl::PositionControl(Player& player, QWidget* parent)
    : QWidget(parent), player_(player), bar_(new ControlScrollBar(this)) {
    setObjectName(QStringLiteral("Verdin - Position Container"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->addWidget(bar_);
    SetRange(0, 1);
    connect(bar_, &ControlScrollBar::Scrolled, this, &PositionControl::OnScrolled);
}

void PositionControl::SetRange(int maximum, int page) {
    page = std::max(page, 1);
    bar_->setRange(0, std::max(maximum - page + 1, 0));
    bar_->setPageStep(page);
    bar_->SetThumb(0);
}

void PositionControl::Refresh() {
    if (player_.PositionHold() || bar_->isSliderDown()) return;
    bar_->SetThumb(player_.Playing() ? static_cast<int>(player_.PositionMs() / 1000) : 0);
}

void PositionControl::OnScrolled(ScrollCode code, int thumb) {
    player_.ClearReplacedByShell();
    switch (code) {
        case ScrollCode::kPageUp:
        case ScrollCode::kPageDown: {
            if (!player_.Playing()) {
                bar_->SetThumb(bar_->value());
                return;
            }
            const int step = code == ScrollCode::kPageUp ? -kPageMs : kPageMs;
            const int64_t target = std::max<int64_t>(static_cast<int64_t>(player_.PositionMs()) + step, 0);
            player_.SeekBy(step);
            bar_->SetThumb(static_cast<int>(target / 1000));
            break;
        }
        case ScrollCode::kThumbTrack:
            player_.SetPositionHold(true);
            player_.SetPositionDrag({true, thumb});
            break;
        case ScrollCode::kEndScroll: {
            const PositionDrag drag = player_.Drag();
            if (player_.Playing() && drag.dragging) {
                player_.SeekTo(static_cast<uint32_t>(std::max<int64_t>(drag.targetSeconds, 0) * 1000));
                bar_->SetThumb(static_cast<int>(drag.targetSeconds));
            }
            player_.SetPositionDrag({});
            player_.SetPositionHold(false);
            break;
        }
        case ScrollCode::kOther: return;
    }
    emit StatusChanged();
}

}  // namespace verdin
