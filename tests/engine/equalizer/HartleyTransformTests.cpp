#include "engine/equalizer/HartleyTransform.h"

#include "DirectHartley.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <numbers>
#include <random>
#include <string>

namespace verdin {
namespace {

using Block = std::array<double, kHartleySize>;
using test::DirectHartley;

struct NamedSignal {
    std::string name;
    std::function<double(int n, std::mt19937&)> sample;
};

const std::vector<NamedSignal>& Signals() {
    static const std::vector<NamedSignal> signals = {
        {"impulse at 0", [](int n, std::mt19937&) { return n == 0 ? 1.0 : 0.0; }},
        {"impulse at 37", [](int n, std::mt19937&) { return n == 37 ? 1.0 : 0.0; }},
        {"constant", [](int, std::mt19937&) { return 3.0; }},
        {"alternating", [](int n, std::mt19937&) { return n % 2 ? -1.0 : 1.0; }},
        {"cosine at bin 5", [](int n, std::mt19937&) { return std::cos(2 * std::numbers::pi * 5 * n / 512); }},
        {"random", [](int, std::mt19937& rng) { return std::uniform_real_distribution<double>(-1, 1)(rng); }},
        {"random, 24-bit scale",
         [](int, std::mt19937& rng) { return std::uniform_real_distribution<double>(-8388608, 8388607)(rng); }},
    };
    return signals;
}

Block Make(const NamedSignal& signal) {
    std::mt19937 rng(1234);
    Block x{};
    for (int n = 0; n < kHartleySize; ++n) x[n] = signal.sample(n, rng);
    return x;
}

double Scale(const Block& x) {
    double s = 0;
    for (double v : x) s += std::fabs(v);
    return s;
}

TEST(FastHartleyTransform, MatchesTheDirectSum) {
    for (const NamedSignal& signal : Signals()) {
        SCOPED_TRACE(signal.name);
        const Block x = Make(signal);
        const Block expected = DirectHartley(x);
        Block h = x;
        FastHartleyTransform(h);
        const double tolerance = 1e-13 * Scale(x);
        for (int k = 0; k < kHartleySize; ++k) ASSERT_NEAR(h[k], expected[k], tolerance) << "bin " << k;
    }
}

TEST(FastHartleyTransform, AppliedTwiceGivesTheInputTimes512) {
    for (const NamedSignal& signal : Signals()) {
        SCOPED_TRACE(signal.name);
        const Block x = Make(signal);
        Block y = x;
        FastHartleyTransform(y);
        FastHartleyTransform(y);
        const double tolerance = 1e-12 * Scale(x);
        for (int n = 0; n < kHartleySize; ++n) ASSERT_NEAR(y[n], 512 * x[n], tolerance) << "sample " << n;
    }
}

TEST(FastHartleyTransform, EveryLaneWidthGivesTheSameBits) {
    for (const NamedSignal& signal : Signals()) {
        SCOPED_TRACE(signal.name);
        const Block x = Make(signal);
        const Block expected = DirectHartley(x);
        Block two = x;
        ASSERT_TRUE(FastHartleyTransformWithLanes(two, 2));
        for (int k = 0; k < kHartleySize; ++k) ASSERT_NEAR(two[k], expected[k], 1e-13 * Scale(x)) << "bin " << k;

        Block four = x;
        if (!FastHartleyTransformWithLanes(four, 4)) continue;  // no AVX2 here: only the two-wide form runs
        EXPECT_EQ(std::memcmp(two.data(), four.data(), sizeof two), 0);
        Block chosen = x;
        FastHartleyTransform(chosen);
        EXPECT_EQ(std::memcmp(two.data(), chosen.data(), sizeof two), 0);
    }
}

TEST(FastHartleyTransform, RefusesLaneWidthsItDoesNotHave) {
    Block x{};
    x[3] = 1.0;
    const Block before = x;
    EXPECT_FALSE(FastHartleyTransformWithLanes(x, 3));
    EXPECT_FALSE(FastHartleyTransformWithLanes(x, 8));
    EXPECT_EQ(x, before);
}

}  // namespace
}  // namespace verdin
