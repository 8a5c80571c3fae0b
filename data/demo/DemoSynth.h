#pragma once
// Small synthesisers for the demo pieces: plucked strings (Karplus-Strong), soft pads
// (detuned sines with slow envelopes), bells (two-operator FM) and a pulse bass with a
// sweeping band, mixed into interleaved stereo floats at 44.1 kHz.
#include <cstddef>
#include <cstdint>
#include <vector>

namespace verdin::demo {

inline constexpr int kRate = 44100;

struct Stereo {
    std::vector<float> samples;  // interleaved left, right
    explicit Stereo(double seconds) : samples(static_cast<size_t>(seconds * kRate) * 2, 0.0f) {}
    size_t Frames() const { return samples.size() / 2; }
    // Adds a mono voice at a start time, placed in the stereo field (-1 left .. 1 right).
    void Add(const std::vector<float>& voice, double start, double pan, double gain);
    // Scales the whole piece so its loudest sample sits at the given peak.
    void Normalise(double peak);
};

double NoteFrequency(int midiNote);
std::vector<float> Pluck(double frequency, double seconds, uint32_t seed);
std::vector<float> Pad(double frequency, double seconds);
std::vector<float> Bell(double frequency, double seconds);
std::vector<float> PulseBass(double frequency, double seconds);
std::vector<float> Sweep(double seconds, double fromHz, double toHz);

}  // namespace verdin::demo
