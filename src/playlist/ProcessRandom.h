#pragma once
// The process-wide pseudo-random generator: the C library's srand/rand. Shuffled play
// orders and random picks draw from it; it is seeded from the local time when the main
// window is made and again when a sample space is built. User-interface thread only.
#include <cstdint>

namespace verdin {

void SeedProcessRandom(unsigned seed);
// The local time's milliseconds plus its seconds times 1000: 0..59,999.
unsigned TimeSeed();
// The next value, 0..RAND_MAX.
uint32_t NextProcessRandom();

}  // namespace verdin
