#pragma once
// The track record of a file the FFmpeg module opened.
//
// The suggested title is the file's name without its extension, as the other modules
// give it, except for containers whose tags the player's tag layer does not read (MP4,
// ASF, Matroska): there a title in the file's own metadata is shown, after its artist
// when there is one. The bit rate is the average over the file, negative (variable) as
// is for the compressed formats this module reads.
#include "FfmpegFile.h"

#include <verdin/input.h>

namespace verdin::ffmpeg {

void DescribeFfmpegFile(const FfmpegFile& file, const char* path, TrackInfo& info);

}  // namespace verdin::ffmpeg
