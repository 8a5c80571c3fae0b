#include "ProcessRandom.h"

#include <chrono>
#include <cstdlib>
#include <ctime>

namespace verdin {

void SeedProcessRandom(unsigned seed) { std::srand(seed); }

unsigned TimeSeed() {
    const auto now = std::chrono::system_clock::now();
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    return static_cast<unsigned>(local.tm_sec % 60) * 1000u + static_cast<unsigned>(ms % 1000);
}

uint32_t NextProcessRandom() { return static_cast<uint32_t>(std::rand()); }

}  // namespace verdin
