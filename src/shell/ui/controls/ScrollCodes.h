#pragma once
// The position and volume controls are scroll bars whose rules are written in scroll
// codes; ControlScrollBar turns a Qt scroll bar's actions into those codes.
//   page up / page down   a click on the track left / right of the thumb
//   thumb track           the thumb is being dragged (only while the mouse holds it)
//   end scroll            the mouse let go of the thumb
// Arrow clicks, the wheel and keys are none of these: they are ignored and leave the bar
// where it was.
#include <QScrollBar>

namespace verdin {

enum class ScrollCode { kPageUp, kPageDown, kThumbTrack, kEndScroll, kOther };

ScrollCode ScrollCodeOf(QAbstractSlider::SliderAction action, bool thumbHeld);

class ControlScrollBar final : public QScrollBar {
    Q_OBJECT
public:
    explicit ControlScrollBar(QWidget* parent = nullptr);
    // Moves the thumb without reporting anything; within a Scrolled handler this also
    // decides where a page click leaves the thumb.
    void SetThumb(int position);

signals:
    // thumb: the thumb's position for kThumbTrack, else the bar's position.
    void Scrolled(ScrollCode code, int thumb);

protected:
    void wheelEvent(QWheelEvent* event) override;
};

}  // namespace verdin
