#pragma once
// The text of the "General" page of a track's properties: one value per paragraph, each
// followed by a blank line, in this order:
//
//   file         path, body and extension
//   size         "%u bytes"
//   duration     "%d:%02d.%02d" under an hour (minutes, seconds, hundredths), else
//                "%d:%02d:%02d.%02d"; hundredths are milliseconds / 10 modulo 100
//   bit rate     "%d kb/s", or "%d kb/s (average)" for a variable rate (negative)
//   sample rate  "%d Hz"
//   resolution   "%d bit stereo" for two channels, else "%d bit mono"
//   compression  "1 : %.3f": rate x channels x bits over the bit rate's magnitude
//                ("1 : -" when the bit rate is 0, which would divide by zero)
#include <cstdint>
#include <string>

namespace verdin {

class TrackRecord;

std::string FormatPropertiesDuration(uint32_t milliseconds);
std::string FormatPropertiesBitrate(int32_t bitrate);
std::string FormatCompressionRatio(int32_t sampleRate, int32_t channels, int32_t bitsPerSample, int32_t bitrate);

std::string GeneralPageText(const TrackRecord& track);

}  // namespace verdin
