#pragma once
// A cue sheet: the table of contents of a disc image kept as one audio file (or a few).
//
// Read: FILE, TRACK nn <type>, TITLE, PERFORMER (before the first TRACK they are the
// sheet's, after it the track's) and INDEX nn mm:ss:ff. A track starts at its INDEX 01;
// INDEX 00 (the pre-gap) and the other indexes do not move a boundary. REM lines and
// commands not listed here are skipped. Values may be quoted ("A B") or not (the rest of
// the line; for FILE the last word, the file type, is left off). Lines may end in CRLF;
// the text is UTF-8, a leading byte-order mark is skipped.
//
// Times are in CD frames, 75 to a second, counted from the start of the track's file.
// A sheet that breaks these rules is refused as a whole with a message naming the line.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace verdin {

inline constexpr int64_t kCdFramesPerSecond = 75;

struct CueTrack {
    int number = 0;
    bool audio = true;      // TRACK nn AUDIO; data tracks only bound their neighbours
    std::string file;       // as the FILE line names it
    std::string title;
    std::string performer;  // the track's, else the sheet's
    int64_t start = -1;     // INDEX 01 in CD frames
};

struct CueSheet {
    std::string title;
    std::string performer;
    std::vector<CueTrack> tracks;  // in the sheet's order
};

struct CueSheetParse {
    bool ok = false;
    CueSheet sheet;
    std::string error;  // "line N: ..." when not ok
};

CueSheetParse ParseCueSheet(std::string_view text);

// Where track index i ends: the start of the next track of the same file, or -1 when it
// runs to the end of its file.
int64_t CueTrackEnd(const CueSheet& sheet, size_t index);

}  // namespace verdin
