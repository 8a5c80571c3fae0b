#pragma once
// Playing a section of a file rather than all of it: a disc image's track, whose bounds
// are given in CD frames (75 to a second), the unit of cue sheets.
//
// An input module seeks in whole milliseconds, and not every millisecond falls on a
// sample frame (at 44.1 kHz only every tenth does). So the decoder is sent to the last
// millisecond at or before the section's first frame that does fall on one, and the
// frames between are decoded and dropped; a decoder that cannot seek is read from the
// start and everything before the section dropped. The section ends exactly at its end
// frame. Seeks within the section work the same way.
//
// Threads: SectionCursor belongs to its stream; the user-interface thread sets it up
// before the stream thread starts, or while that thread is paused for a seek.
#include <cstdint>
#include <string>

namespace verdin {

struct FileSection {
    std::string file;   // the file to decode
    int64_t begin = 0;  // CD frames from the file's start
    int64_t end = -1;   // CD frames; -1: the file's end
    // Why the section could not be found (file is empty then): the stream fails with it.
    std::string error;
};

class SectionCursor {
public:
    // Idle: every frame passes, the track is the whole file.
    SectionCursor() = default;
    SectionCursor(const FileSection& section, uint32_t sampleRate);

    bool Active() const { return active_; }
    // The section's length in milliseconds, given the whole file's.
    uint32_t LengthMs(uint32_t fileDurationMs) const;

    // The millisecond to ask the decoder for, to play from offsetMs into the section: at
    // or before that point, on a whole frame. Call Landed with the decoder's answer.
    uint32_t SeekTarget(uint32_t offsetMs) const;
    // The decoder is now at landedMs of the file; decoding is to resume offsetMs into the
    // section. Returns the section offset in milliseconds that the next frame kept has.
    uint32_t Landed(uint32_t offsetMs, uint32_t landedMs);
    // Decoding from the file's start (the decoder was not sent anywhere).
    void FromFileStart() { Landed(0, 0); }

    // Of a decoded block of frames: how many to drop at its start, then how many of the
    // rest to keep (the remainder lies beyond the section's end).
    uint32_t Drop(uint32_t frames);
    uint32_t Keep(uint32_t frames);
    // The end frame has been reached.
    bool Ended() const { return active_ && left_ == 0; }

private:
    int64_t FrameOfMs(int64_t ms) const { return ms * rate_ / 1000; }

    bool active_ = false;
    int64_t rate_ = 1;
    int64_t first_ = 0;   // the section's first and end frames; end -1: the file's end
    int64_t end_ = -1;
    int64_t skip_ = 0;    // frames still to drop
    int64_t left_ = -1;   // frames still to keep; -1: up to the file's end
};

}  // namespace verdin
