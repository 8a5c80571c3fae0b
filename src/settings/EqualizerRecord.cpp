#include "EqualizerRecord.h"

#include "Settings.h"

namespace verdin {

EqualizerValues MakeEqualizerRecord(const std::array<int32_t, 16>& bands, int32_t preAmp, bool loudness) {
    EqualizerValues record{};
    for (size_t i = 0; i < 16; ++i) record.gain[i] = bands[i] + preAmp + (loudness ? kLoudnessCurve[i] : 0);
    return record;
}

EqualizerValues EqualizerRecordOf(const Settings& settings) {
    return MakeEqualizerRecord(settings.equalizerValues, settings.preAmp, settings.loudness != 0);
}

}  // namespace verdin
