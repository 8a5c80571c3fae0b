#include "StreamOptions.h"

#include "settings/EqualizerRecord.h"
#include "settings/Settings.h"

namespace verdin {

StreamOptions StreamOptionsFrom(const Settings& s) {
    StreamOptions o;
    o.bufferSize = s.bufferSize;
    o.bufferPrefill = s.bufferPrefill;
    o.crossfadeLength = s.crossfadeLength;
    o.pauseBetweenTracks = s.pauseBetweenTracks;
    o.skipSilenceInTheBeginning = s.skipSilenceInTheBeginning != 0;
    o.skipSilenceInTheEnd = s.skipSilenceInTheEnd != 0;
    o.silenceLevel = s.silenceLevel;
    o.playerThreadPriority = s.playerThreadPriority;
    o.ignoreTags = s.ignoreID3Tags != 0;
    o.equalizerEnabled = s.equalize != 0;
    o.equalizerValues = EqualizerRecordOf(s);
    return o;
}

OutputTarget OutputTargetFrom(const Settings& s) {
    OutputTarget t;
    t.kind = s.outputType;
    t.soundCardDevice = s.waveOutDevice;
    t.soundServerDevice = s.directSoundDevice;
    t.cooperativeLevel = s.directSoundCooperativeLevel;
    t.decodeDirectory = s.decodeDirectory;
    t.volume = static_cast<uint32_t>(s.mainVolume);
    return t;
}

}  // namespace verdin
