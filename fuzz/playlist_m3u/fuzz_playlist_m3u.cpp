// Arbitrary bytes as an M3U playlist: loaded, saved as M3U, loaded again unchanged.
#include "PlaylistRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return verdin::fuzz::RoundTrip(data, size, ".m3u", verdin::PlaylistFormat::kM3u);
}
