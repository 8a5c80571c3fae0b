// The equalizer's throughput on 44.1 kHz stereo 16-bit audio, in times real time, and
// the 512-point fast Hartley transform against FFTW's discrete Hartley transform of the
// same size, measured in the same run and reported as a ratio.
#include "engine/equalizer/Equalizer.h"
#include "engine/equalizer/HartleyTransform.h"

#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using verdin::Equalizer;
using verdin::kHartleySize;

constexpr int kRate = 44100;
constexpr int kTrackSeconds = 10;
constexpr uint32_t kDecoderBlockFrames = 1152;  // what an MPEG layer III decoder hands over

std::vector<uint8_t> StereoMusicLikeNoise() {
    std::mt19937 rng(42);
    std::normal_distribution<double> noise(0, 3000);
    std::vector<uint8_t> bytes(size_t{kRate} * kTrackSeconds * 4);
    for (size_t frame = 0; frame < bytes.size() / 4; ++frame) {
        for (int c = 0; c < 2; ++c) {
            const double v = 8000 * std::sin(0.031 * frame * (c + 1)) + noise(rng);
            const auto s = static_cast<uint16_t>(static_cast<int16_t>(std::lround(v)));
            bytes[frame * 4 + c * 2] = static_cast<uint8_t>(s);
            bytes[frame * 4 + c * 2 + 1] = static_cast<uint8_t>(s >> 8);
        }
    }
    return bytes;
}

// A curve on the bands, or every band at 0 dB (the equalizer on but flat, where it hands
// the frames back without transforms).
void EqualizerStereo16(benchmark::State& state, const EqualizerValues& values) {
    const std::vector<uint8_t> track = StereoMusicLikeNoise();
    Equalizer eq(true);
    eq.SetEqualizerValues(values, kRate);
    const uint32_t blockBytes = kDecoderBlockFrames * 4;
    std::vector<uint8_t> pcm(blockBytes + Equalizer::kOutputHeadroom);
    for (auto _ : state) {
        for (size_t at = 0; at + blockBytes <= track.size(); at += blockBytes) {
            std::copy_n(track.begin() + at, blockBytes, pcm.begin());
            benchmark::DoNotOptimize(eq.Process(pcm.data(), blockBytes, 16, 2));
            benchmark::ClobberMemory();
        }
    }
    // Seconds of audio per second of processor time.
    state.counters["x_realtime"] =
        benchmark::Counter(double(kTrackSeconds) * double(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK_CAPTURE(EqualizerStereo16, Curve, EqualizerValues{{6, 4, 2, 0, -2, -4, -3, 0, 1, 3, 5, 4, 2, 0, -1, -6}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(EqualizerStereo16, Flat, EqualizerValues{})->Unit(benchmark::kMillisecond);

// In-place transforms grow the data by sqrt(512) each; every 16 transforms it is scaled
// back by 512^-8 so the numbers stay ordinary. That costs both contenders the same.
constexpr int kRescaleEvery = 16;

std::vector<double> RandomBlock() {
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> d(-1, 1);
    std::vector<double> x(kHartleySize);
    for (auto& v : x) v = d(rng);
    return x;
}

void Rescale(double* x) {
    for (int i = 0; i < kHartleySize; ++i) x[i] *= 0x1p-72;  // 512^-8
}

void TransformWithLanes(benchmark::State& state, int lanes) {
    alignas(64) std::array<double, kHartleySize> x;
    const std::vector<double> source = RandomBlock();
    std::copy(source.begin(), source.end(), x.begin());
    if (!verdin::FastHartleyTransformWithLanes(x, lanes)) {
        state.SkipWithError("lane width not available on this processor");
        return;
    }
    int count = 0;
    for (auto _ : state) {
        verdin::FastHartleyTransformWithLanes(x, lanes);
        if (++count % kRescaleEvery == 0) Rescale(x.data());
        benchmark::ClobberMemory();
    }
}

void FastHartley512(benchmark::State& state) {
    alignas(64) std::array<double, kHartleySize> x;
    const std::vector<double> source = RandomBlock();
    std::copy(source.begin(), source.end(), x.begin());
    int count = 0;
    for (auto _ : state) {
        verdin::FastHartleyTransform(x);
        if (++count % kRescaleEvery == 0) Rescale(x.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(FastHartley512);
BENCHMARK_CAPTURE(TransformWithLanes, FastHartley512_TwoWide, 2);
BENCHMARK_CAPTURE(TransformWithLanes, FastHartley512_FourWide, 4);

void FftwDht512(benchmark::State& state, bool inPlace) {
    double* in = fftw_alloc_real(kHartleySize);
    double* out = inPlace ? in : fftw_alloc_real(kHartleySize);
    // FFTW_MEASURE overwrites the arrays while planning; fill them afterwards.
    fftw_plan plan = fftw_plan_r2r_1d(kHartleySize, in, out, FFTW_DHT, FFTW_MEASURE);
    const std::vector<double> source = RandomBlock();
    std::copy(source.begin(), source.end(), in);
    int count = 0;
    for (auto _ : state) {
        fftw_execute(plan);
        if (inPlace && ++count % kRescaleEvery == 0) Rescale(in);
        benchmark::ClobberMemory();
    }
    fftw_destroy_plan(plan);
    if (!inPlace) fftw_free(out);
    fftw_free(in);
}
BENCHMARK_CAPTURE(FftwDht512, FftwDht512_InPlace, true);
BENCHMARK_CAPTURE(FftwDht512, FftwDht512_OutOfPlace, false);

// Keeps each run's time per iteration so that main can print the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    // Colours only on a terminal, as the library's own reporter does.
    RatioReporter() : ConsoleReporter(isatty(STDOUT_FILENO) ? OO_ColorTabular : OO_Tabular) {}
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (!run.error_occurred && run.run_type == Run::RT_Iteration) cpuTime_[run.benchmark_name()] = run.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }
    // Processor time per iteration (in the run's own unit); 0 when the run did not happen.
    double Time(const std::string& name) const {
        const auto found = cpuTime_.find(name);
        return found == cpuTime_.end() ? 0 : found->second;
    }

private:
    std::map<std::string, double> cpuTime_;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    const double ours = reporter.Time("FastHartley512");
    const double inPlace = reporter.Time("FftwDht512/FftwDht512_InPlace");
    const double outOfPlace = reporter.Time("FftwDht512/FftwDht512_OutOfPlace");
    double fftw = inPlace;
    if (outOfPlace > 0 && (fftw == 0 || outOfPlace < fftw)) fftw = outOfPlace;
    if (ours > 0 && fftw > 0)
        std::printf("FastHartleyTransform / FFTW DHT (faster of in place and out of place): %.2fx (goal: 1.5x or less)\n",
                    ours / fftw);
    const double twoWide = reporter.Time("TransformWithLanes/FastHartley512_TwoWide");
    if (twoWide > 0 && fftw > 0) std::printf("two-wide lanes alone / FFTW DHT: %.2fx\n", twoWide / fftw);
    fftw_cleanup();
    return 0;
}
