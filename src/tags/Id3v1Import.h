#pragma once
// Turns an ID3v1 trailer into frames: title TITLE, artist LEADARTIST, album ALBUM, year
// YEAR, genre CONTENTTYPE as "(n)" (255, "no genre", adds nothing), track number
// TRACKNUM (ID3v1.1), and the comment as a COMMENT frame in language "eng" with the
// description "ID3v1 comment field". Empty fields add nothing.
#include "tags/TagBuilder.h"
#include "tags/TagVersion.h"

#include <taglib/id3v1tag.h>

namespace verdin {

inline constexpr std::string_view kId3v1CommentDescription = "ID3v1 comment field";

// Returns the trailer's version: 1.1.0 when it holds a track number, else 1.0.0.
TagVersion ImportId3v1(const TagLib::ID3v1::Tag& tag, TagBuilder& builder);

}  // namespace verdin
