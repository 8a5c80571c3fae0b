#pragma once
// Turns the frames of an ID3v2 tag (2.2, 2.3 or 2.4, as TagLib parsed it) into frames of
// the player's vocabulary. Frames outside the vocabulary are left out.
//
// How fields land in a frame: text frames keep their text, several values joined with
// "/" (the ID3v2.3 way of writing several artists); involved-people lists read
// "role: name, role: name"; comments and lyrics keep language and description; URL
// frames keep the address as text; pictures and objects keep MIME type, description,
// picture type, file name and the payload; a unique file identifier keeps its owner as
// description and its identifier as payload (and as text when it is printable); a play
// counter and a popularimeter's rating become decimal texts.
//
// TagLib reads ID3v2.3 tags as 2.4 ones: the year then arrives as a recording time
// merged with the date ("1999-05-06"), which is cut back to the year for tags older
// than 2.4; date, time and recording dates stay in their own frames.
#include "tags/TagBuilder.h"

#include <taglib/id3v2tag.h>

#include <optional>

namespace verdin {

// The vocabulary frame for an ID3v2 frame identifier ("TPE1"), if any.
std::optional<FrameId> FrameForId3v2(std::string_view frameId);

void ImportId3v2(const TagLib::ID3v2::Tag& tag, TagBuilder& builder);

}  // namespace verdin
