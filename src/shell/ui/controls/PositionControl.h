#pragma once
// "Verdin - Position Container" with the position scroll bar. Its unit is the second.
//   page left / right   seek 5 s back (not below 0) / forward, only with a current track
//   thumb track         the status line says "Move to ..." and the tick leaves the bar alone
//   end scroll          seek to the thumb, when a track is current and the thumb was dragged
// Every scroll also ends the "/PLAY" replacement rule of the command server.
#include <QWidget>

namespace verdin {

class ControlScrollBar;
class Player;
enum class ScrollCode;

class PositionControl final : public QWidget {
    Q_OBJECT
public:
    PositionControl(Player& player, QWidget* parent = nullptr);

    // The range as the core gives it (a scroll bar whose last page starts at the track's
    // end: maximum - page + 1 is the last position), the thumb at 0.
    void SetRange(int maximum, int page);
    // The thumb to the played time, unless the user holds it.
    void Refresh();
    ControlScrollBar& Bar() { return *bar_; }

signals:
    // The status line should be composed again (drag started or ended, a seek).
    void StatusChanged();

private:
    void OnScrolled(ScrollCode code, int thumb);

    Player& player_;
    ControlScrollBar* bar_;
};

}  // namespace verdin
