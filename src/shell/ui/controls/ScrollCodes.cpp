#include "ScrollCodes.h"

#include <QWheelEvent>

namespace verdin {

ScrollCode ScrollCodeOf(QAbstractSlider::SliderAction action, bool thumbHeld) {
    switch (action) {
        case QAbstractSlider::SliderPageStepSub: return ScrollCode::kPageUp;
        case QAbstractSlider::SliderPageStepAdd: return ScrollCode::kPageDown;
        case QAbstractSlider::SliderMove: return thumbHeld ? ScrollCode::kThumbTrack : ScrollCode::kOther;
        default: return ScrollCode::kOther;
    }
}

ControlScrollBar::ControlScrollBar(QWidget* parent) : QScrollBar(Qt::Horizontal, parent) {
    setFocusPolicy(Qt::NoFocus);
    setContextMenuPolicy(Qt::PreventContextMenu);
    connect(this, &QAbstractSlider::actionTriggered, this, [this](int action) {
        const ScrollCode code = ScrollCodeOf(static_cast<SliderAction>(action), isSliderDown());
        if (code == ScrollCode::kOther) {
            // Qt has already moved the thumb for this action; put it back.
            setSliderPosition(value());
            return;
        }
        emit Scrolled(code, sliderPosition());
    });
    connect(this, &QAbstractSlider::sliderReleased, this, [this] { emit Scrolled(ScrollCode::kEndScroll, value()); });
}

void ControlScrollBar::SetThumb(int position) {
    const bool blocked = blockSignals(true);
    setSliderPosition(position);
    setValue(position);
    blockSignals(blocked);
}

void ControlScrollBar::wheelEvent(QWheelEvent* event) { event->ignore(); }

}  // namespace verdin
