#pragma once
// "Verdin - Volume Container" with the volume scroll bar, whose position is the volume
// halved (0..32767).
//   page left / right   volume 2048 down / up (within 0..65535), the bar back to half of it
//   thumb track         volume = thumb x 2 + the thumb's lowest bit (32767 gives 65535),
//                       the bar left where the user holds it
//   end scroll          the bar back to half the volume
// The core hands the volume to the playing track.
#include <QWidget>

namespace verdin {

class ControlScrollBar;
class Player;
enum class ScrollCode;

class VolumeControl final : public QWidget {
    Q_OBJECT
public:
    VolumeControl(Player& player, QWidget* parent = nullptr);

    // The bar to half the volume, unless the user holds the thumb.
    void Refresh();
    ControlScrollBar& Bar() { return *bar_; }

private:
    void OnScrolled(ScrollCode code, int thumb);
    void ShowVolume();

    Player& player_;
    ControlScrollBar* bar_;
};

}  // namespace verdin
