#pragma once
// The icons of the toolbar buttons and of the playlist rows. The desktop's icon theme
// and style come first, so the window looks native; where they have none, a simple glyph
// is drawn in the palette's text colour, sharp at any scale.
#include <QIcon>
#include <cstdint>

class QWidget;

namespace verdin {

// The icon of a toolbar button, by the button's identifier.
QIcon ButtonIcon(uint32_t buttonId, const QWidget& owner);
// Icon 0 of the playlist view (a nested playlist's row) and icon 1 (a track or random entry).
QIcon PlaylistRowIcon(const QWidget& owner);
QIcon TrackRowIcon(const QWidget& owner);

}  // namespace verdin
