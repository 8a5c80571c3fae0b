#pragma once
// The value of a frame in a track's tag as title templates and random-entry expressions
// see it. A tag may hold several frames of one kind; the value is that of the frame
// TrackTag::Find picks (the first without a description, else the first).
//
// One string per frame:
// - text frames, comments, lyrics, URLs, user-defined texts: their text;
// - CONTENTTYPE: its text with genre references resolved through the genre table, the
//   genre names keeping their trailing blank ("(125)" reads "Dance Hall ");
// - PICTURE: its description; GENERALOBJECT: its description, else its file name;
// - PLAYCOUNTER and POPULARIMETER: the count and the rating in decimal;
// - a missing frame: the empty text.
// Values are cut to 255 bytes (the expressions' limit), at a character boundary.
#include "tags/FrameId.h"
#include "tags/TrackTag.h"

#include <string>

namespace verdin {

inline constexpr std::size_t kFrameValueLimit = 255;

// Writes the value into `out` (replacing its contents), so a caller that evaluates many
// tracks can reuse one buffer.
void FrameStringValue(const TrackTag& tag, FrameId id, std::string& out);
std::string FrameStringValue(const TrackTag& tag, FrameId id);

// The decimal conversion of the value ("3/12" gives 3, "2004-05-06" gives 2004); 0 for a
// missing frame or a value without leading digits.
int FrameIntegerValue(const TrackTag& tag, FrameId id);

}  // namespace verdin
