#pragma once
// What the engine learns about a track before it plays it: whether an input module takes
// it, where its audio starts and the module's information record.
#include <verdin/input.h>

#include <cstdint>
#include <string>

namespace verdin {

class InputModuleList;

struct TrackProbe {
    bool exists = true;       // false: a local file that could not be opened
    bool recognized = false;  // an input module took the file and understood it
    uint32_t dataOffset = 0;  // bytes of leading tag before the audio (0 for a URL)
    TrackInfo info{};         // the module's record, or the defaults
};

// The information record before a module has answered: sizes 0, rate, channels and bit
// rate 1, 8 bits (one byte per frame).
TrackInfo DefaultTrackInfo();

// Whether a name is a URL rather than a local file: it contains "://".
bool IsUrl(const std::string& path);

// Reads the track's leading tag size (local files; not for URLs), then asks the modules
// for the one that plays the file (InputModuleList::FindModuleToPlay) and its
// information. The tag's frames are not read here; the audio start is measured whether
// or not tags are otherwise ignored.
TrackProbe ProbeTrack(const std::string& path, const InputModuleList& modules);

// The audio start of a local file: the size of its leading ID3v2 tag (at most the file's
// size), 0 without one. False when the file cannot be opened or is not a regular file.
bool MeasureAudioStart(const std::string& path, uint32_t& dataOffset);

}  // namespace verdin
