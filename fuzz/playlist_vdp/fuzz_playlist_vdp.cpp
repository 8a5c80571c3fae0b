// Arbitrary bytes as a .vdp playlist: loaded, saved as .vdp, loaded again unchanged.
#include "PlaylistRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return verdin::fuzz::RoundTrip(data, size, ".vdp", verdin::PlaylistFormat::kVdp);
}
