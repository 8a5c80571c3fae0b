#include "PositionControl.h"

#include "shell/PlayerCore.h"
#include "shell/ui/controls/ScrollCodes.h"

#include <QHBoxLayout>
#include <algorithm>

namespace verdin {

namespace {

constexpr int kPageMs = 5000;

}  // namespace

PositionControl::PositionControl(PlayerCore& core, QWidget* parent)
    : QWidget(parent), core_(core), bar_(new ControlScrollBar(this)) {
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
    if (core_.PositionHold() || bar_->isSliderDown()) return;
    bar_->SetThumb(core_.Playing() ? static_cast<int>(core_.PositionMs() / 1000) : 0);
}

void PositionControl::OnScrolled(ScrollCode code, int thumb) {
    core_.ClearReplacedByShell();
    switch (code) {
        case ScrollCode::kPageUp:
        case ScrollCode::kPageDown: {
            if (!core_.Playing()) {
                bar_->SetThumb(bar_->value());
                return;
            }
            const int step = code == ScrollCode::kPageUp ? -kPageMs : kPageMs;
            const int64_t target = std::max<int64_t>(static_cast<int64_t>(core_.PositionMs()) + step, 0);
            core_.SeekBy(step);
            bar_->SetThumb(static_cast<int>(target / 1000));
            break;
        }
        case ScrollCode::kThumbTrack:
            core_.SetPositionHold(true);
            core_.SetPositionDrag({true, thumb});
            break;
        case ScrollCode::kEndScroll: {
            const PositionDrag drag = core_.Drag();
            if (core_.Playing() && drag.dragging) {
                core_.SeekTo(static_cast<uint32_t>(std::max<int64_t>(drag.targetSeconds, 0) * 1000));
                bar_->SetThumb(static_cast<int>(drag.targetSeconds));
            }
            core_.SetPositionDrag({});
            core_.SetPositionHold(false);
            break;
        }
        case ScrollCode::kOther: return;
    }
    emit StatusChanged();
}

}  // namespace verdin
