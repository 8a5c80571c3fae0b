// Arbitrary bytes as a PLS playlist: loaded, saved as PLS, loaded again unchanged.
#include "PlaylistRoundTrip.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return verdin::fuzz::RoundTrip(data, size, ".pls", verdin::PlaylistFormat::kPls);
}
