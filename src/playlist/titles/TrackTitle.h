#pragma once
// The track title: how a track is named wherever a title is shown, from the track title
// template ("%LEADARTIST% - %TITLE%" by default).
//
// Variables: "%sugtitle%" (the title the input module suggested), "%path%", "%body%",
// "%ext%" (the name's parts), and every frame name of the tag layer written exactly in
// upper case ("%LEADARTIST%"), which expands to that frame's text in the track's tag.
// The template applies only to a track with a tag: a track without one is titled with
// its suggested title.
#include <string>
#include <string_view>

namespace verdin {

class TrackRecord;

std::string ExpandTrackTitle(const TrackRecord& track, std::string_view trackTitleTemplate);

}  // namespace verdin
