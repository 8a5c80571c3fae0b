#pragma once
// How one track of a cue sheet stands in the playlist: the sheet's path, "#" and the
// track's number, as in "/music/Album.cue#3". The name is an ordinary path to every
// playlist file (saved relative to the playlist like any other) and is told apart by its
// ending: ".cue#" and digits, the extension compared without regard to case.
//
// Resolving such a name reads the sheet again each time, so an edited sheet is seen at
// once; the image is found next to the sheet (a relative FILE, backslashes read as "/",
// letter case as the disk spells it).
#include "playlist/files/CueSheet.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace verdin {

struct CueTrackName {
    std::string sheet;
    int number = 0;
};

// Whether the path's extension is ".cue".
bool IsCueSheetName(std::string_view path);
std::string CueTrackPath(std::string_view sheet, int number);
// The sheet and track a name stands for, or nothing when it is no cue track's name.
std::optional<CueTrackName> SplitCueTrackPath(std::string_view path);

// Reads and parses a sheet file; a file that cannot be read is a failed parse too.
CueSheetParse ReadCueSheet(const std::string& sheetPath);

// The part of an image one cue track plays.
struct CueTrackSource {
    std::string image;       // the audio file, as found on disk
    int64_t begin = 0;       // CD frames from the image's start
    int64_t end = -1;        // -1: the image's end
    std::string title;
    std::string performer;
    std::string albumTitle;  // the sheet's TITLE
};

// Resolves a cue track's name; nothing, with error set ("<sheet>": why), when the sheet
// cannot be read or parsed, has no audio track of that number, or its image is missing.
std::optional<CueTrackSource> ResolveCueTrack(std::string_view path, std::string& error);

}  // namespace verdin
