#pragma once
// Which speaker each channel of an open sound file is meant for.
#include "kit/StereoDownmix.h"

#include <vector>

#include <sndfile.h>

namespace verdin::sndfile {

// From the channel map libsndfile reads (a WAVE channel mask, an AIFF or CAF layout);
// when the file has none, or one naming something other than speakers (Ambisonics), the
// usual order of its format: Vorbis's for Ogg, WAVE's for the rest.
std::vector<Speaker> SpeakersOf(SNDFILE* handle, const SF_INFO& info);

}  // namespace verdin::sndfile
