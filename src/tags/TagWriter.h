#pragma once
// Writing the common frames of a track's tag back into its file, through TagLib.
//
// Safe by construction: the file is copied to a temporary file in its own directory, the
// tag is written into the copy, the copy is flushed to disk and only then renamed over
// the original. A write that fails at any step leaves the original exactly as it was and
// removes the copy; a crash in between leaves at most a stray hidden copy beside the
// track, never a half-written track. (A rename gives the track a new inode, so other
// hard links to it keep the old tag.)
//
// A file whose permission bits allow no writing at all is refused even for a user the
// system would let write it (root): its owner marked it read-only.
//
// What is written where: MPEG files get an ID3v2 tag (its version kept, 2.3 for a new
// one) and their ID3v1 and APE tags updated when they have them; FLAC files and Ogg
// streams their Vorbis comment; WAV files their ID3v2 chunk and, when present, their
// RIFF INFO chunk; AIFF files their ID3v2 chunk.
#include "tags/FrameId.h"

#include <span>
#include <string>

namespace verdin {

// One change of the tag: the frame's new text; an empty text removes the frame.
struct FrameEdit {
    FrameId id = FrameId::NoFrame;
    std::string text;
};

// The frames the tag page edits, in the order it shows them: TITLE, LEADARTIST, ALBUM,
// BAND, YEAR, TRACKNUM, CONTENTTYPE, COMPOSER, COMMENT.
std::span<const FrameId> WritableFrames();
bool IsWritableFrame(FrameId id);

// Whether tags of the file's layout (by its name) can be written at all.
bool CanWriteTags(const std::string& path);

// Writes the edits into the tag of the file at path (a symbolic link is followed).
// Returns an error text, empty on success; on an error nothing on disk has changed.
// Edits of frames that are not writable are refused as a whole.
std::string WriteTagFrames(const std::string& path, std::span<const FrameEdit> edits);

}  // namespace verdin
