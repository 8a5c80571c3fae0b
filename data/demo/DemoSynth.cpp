#include "DemoSynth.h"

#include <algorithm>
#include <cmath>

namespace verdin::demo {

namespace {

constexpr double kPi = 3.14159265358979323846;

// Attack, then an exponential fall; a short release at the end so nothing clicks.
double Envelope(double t, double length, double attack, double decay) {
    const double rise = attack > 0 ? std::min(t / attack, 1.0) : 1.0;
    const double fall = std::exp(-t / decay);
    const double release = std::min((length - t) / 0.02, 1.0);
    return rise * fall * std::max(release, 0.0);
}

}  // namespace

void Stereo::Add(const std::vector<float>& voice, double start, double pan, double gain) {
    const size_t first = static_cast<size_t>(start * kRate);
    const double left = gain * std::cos((pan + 1) * kPi / 4);
    const double right = gain * std::sin((pan + 1) * kPi / 4);
    for (size_t i = 0; i < voice.size() && first + i < Frames(); ++i) {
        samples[2 * (first + i)] += static_cast<float>(voice[i] * left);
        samples[2 * (first + i) + 1] += static_cast<float>(voice[i] * right);
    }
}

void Stereo::Normalise(double peak) {
    float loudest = 0;
    for (float s : samples) loudest = std::max(loudest, std::fabs(s));
    if (loudest <= 0) return;
    const float scale = static_cast<float>(peak / loudest);
    for (float& s : samples) s *= scale;
}

double NoteFrequency(int midiNote) { return 440.0 * std::pow(2.0, (midiNote - 69) / 12.0); }

std::vector<float> Pluck(double frequency, double seconds, uint32_t seed) {
    // A delay line of one period filled with noise, averaged as it goes round: a string.
    const size_t period = std::max<size_t>(2, static_cast<size_t>(kRate / frequency));
    std::vector<float> line(period);
    for (float& s : line) {
        seed = seed * 1664525u + 1013904223u;
        s = static_cast<float>((seed >> 8) / double(1u << 24) * 2 - 1);
    }
    std::vector<float> out(static_cast<size_t>(seconds * kRate));
    for (size_t i = 0; i < out.size(); ++i) {
        const size_t at = i % period;
        const float next = line[(at + 1) % period];
        out[i] = line[at];
        line[at] = 0.498f * (line[at] + next);
    }
    for (size_t i = 0; i < out.size(); ++i) out[i] *= static_cast<float>(std::min((out.size() - i) / 2000.0, 1.0));
    return out;
}

std::vector<float> Pad(double frequency, double seconds) {
    std::vector<float> out(static_cast<size_t>(seconds * kRate));
    for (size_t i = 0; i < out.size(); ++i) {
        const double t = static_cast<double>(i) / kRate;
        double v = 0;
        for (double detune : {-0.004, 0.0, 0.005}) v += std::sin(2 * kPi * frequency * (1 + detune) * t);
        v += 0.3 * std::sin(2 * kPi * frequency * 2 * t);
        out[i] = static_cast<float>(v * Envelope(t, seconds, seconds * 0.35, seconds * 2));
    }
    return out;
}

std::vector<float> Bell(double frequency, double seconds) {
    std::vector<float> out(static_cast<size_t>(seconds * kRate));
    for (size_t i = 0; i < out.size(); ++i) {
        const double t = static_cast<double>(i) / kRate;
        const double index = 3.0 * std::exp(-t / 0.4);
        const double modulator = std::sin(2 * kPi * frequency * 3.5 * t);
        out[i] = static_cast<float>(std::sin(2 * kPi * frequency * t + index * modulator) *
                                    Envelope(t, seconds, 0.002, 0.9));
    }
    return out;
}

std::vector<float> PulseBass(double frequency, double seconds) {
    std::vector<float> out(static_cast<size_t>(seconds * kRate));
    double low = 0;
    for (size_t i = 0; i < out.size(); ++i) {
        const double t = static_cast<double>(i) / kRate;
        const double phase = std::fmod(frequency * t, 1.0);
        const double pulse = phase < 0.3 ? 1.0 : -0.45;
        low += 0.08 * (pulse - low);  // a gentle low-pass
        out[i] = static_cast<float>(low * Envelope(t, seconds, 0.005, 0.35));
    }
    return out;
}

std::vector<float> Sweep(double seconds, double fromHz, double toHz) {
    std::vector<float> out(static_cast<size_t>(seconds * kRate));
    double phase = 0;
    for (size_t i = 0; i < out.size(); ++i) {
        const double t = static_cast<double>(i) / kRate;
        const double f = fromHz * std::pow(toHz / fromHz, t / seconds);
        phase += 2 * kPi * f / kRate;
        const double shimmer = 0.5 + 0.5 * std::sin(2 * kPi * 0.5 * t);
        out[i] = static_cast<float>((std::sin(phase) + 0.4 * std::sin(3 * phase)) * shimmer *
                                    Envelope(t, seconds, 1.0, seconds * 3));
    }
    return out;
}

}  // namespace verdin::demo
