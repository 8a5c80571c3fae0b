// verdin-make-demo DIR: writes the demo pieces and "Verdin Demo.vdp" into DIR.
#include "DemoSynth.h"

#include <sndfile.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

using namespace verdin::demo;

struct Piece {
    const char* file;
    const char* title;
    int format;  // libsndfile major format and subtype
};

bool Write(const std::filesystem::path& path, const Stereo& piece, int format, const char* title) {
    SF_INFO info{};
    info.samplerate = kRate;
    info.channels = 2;
    info.format = format;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (!file) {
        std::fprintf(stderr, "verdin-make-demo: %s: %s\n", path.c_str(), sf_strerror(nullptr));
        return false;
    }
    sf_set_string(file, SF_STR_TITLE, title);
    sf_set_string(file, SF_STR_ARTIST, "Verdin Demo");
    sf_set_string(file, SF_STR_ALBUM, "Synthesised Sketches");
    sf_set_string(file, SF_STR_COMMENT, "Made by verdin-make-demo at build time");
    double quality = 0.5;
    if ((format & SF_FORMAT_SUBMASK) == SF_FORMAT_VORBIS)
        sf_command(file, SFC_SET_VBR_ENCODING_QUALITY, &quality, sizeof quality);
    const sf_count_t frames = static_cast<sf_count_t>(piece.Frames());
    const bool ok = sf_writef_float(file, piece.samples.data(), frames) == frames;
    sf_close(file);
    return ok;
}

// C - Am - F - G, four bars each, a plucked arpeggio going up and down.
Stereo MorningArpeggio() {
    Stereo piece(32);
    const int chords[4][4] = {{60, 64, 67, 72}, {57, 60, 64, 69}, {53, 57, 60, 65}, {55, 59, 62, 67}};
    const int order[8] = {0, 1, 2, 3, 2, 1, 0, 1};
    const double step = 0.25;
    for (int bar = 0; bar < 16; ++bar) {
        const int (&chord)[4] = chords[bar / 4 % 4];
        for (int n = 0; n < 8; ++n) {
            const double start = (bar * 8 + n) * step;
            piece.Add(Pluck(NoteFrequency(chord[order[n]]), 1.5, 17u * bar + n), start, n % 2 ? 0.4 : -0.4, 0.5);
        }
        piece.Add(Pluck(NoteFrequency(chord[0] - 24), 2.0, 991u + bar), bar * 2.0, 0, 0.7);
    }
    piece.Normalise(0.8);
    return piece;
}

Stereo SlowPads() {
    Stereo piece(30);
    const int chords[5][3] = {{57, 60, 64}, {53, 57, 60}, {48, 52, 55}, {55, 59, 62}, {57, 60, 64}};
    for (int c = 0; c < 5; ++c)
        for (int n = 0; n < 3; ++n) piece.Add(Pad(NoteFrequency(chords[c][n]), 7.5), c * 6.0, (n - 1) * 0.6, 0.3);
    piece.Normalise(0.7);
    return piece;
}

Stereo BellSteps() {
    Stereo piece(26);
    const int melody[] = {72, 76, 79, 76, 74, 77, 81, 77, 72, 79, 76, 72, 74, 71, 67, 72};
    for (int i = 0; i < 16; ++i) {
        piece.Add(Bell(NoteFrequency(melody[i]), 3.0), i * 1.5, (i % 3 - 1) * 0.5, 0.45);
        if (i % 4 == 0) piece.Add(Bell(NoteFrequency(melody[i] - 12), 4.0), i * 1.5, 0, 0.3);
    }
    piece.Normalise(0.8);
    return piece;
}

Stereo PulseAndSweep() {
    Stereo piece(28);
    const int bass[] = {36, 36, 43, 41, 36, 36, 39, 41};
    for (int beat = 0; beat < 56; ++beat)
        piece.Add(PulseBass(NoteFrequency(bass[beat % 8]), 0.45), beat * 0.5, 0, 0.8);
    piece.Add(Sweep(26, 200, 3200), 1.0, -0.3, 0.25);
    piece.Add(Sweep(26, 3000, 250), 1.0, 0.3, 0.2);
    piece.Normalise(0.8);
    return piece;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s DIR\n", argv[0]);
        return 2;
    }
    const std::filesystem::path dir(argv[1]);
    std::error_code error;
    std::filesystem::create_directories(dir, error);
    const Piece pieces[] = {
        {"01 Morning Arpeggio.flac", "Morning Arpeggio", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
        {"02 Slow Pads.ogg", "Slow Pads", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
        {"03 Bell Steps.wav", "Bell Steps", SF_FORMAT_WAV | SF_FORMAT_PCM_16},
        {"04 Pulse and Sweep.flac", "Pulse and Sweep", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
    };
    Stereo (*makers[])() = {MorningArpeggio, SlowPads, BellSteps, PulseAndSweep};
    for (size_t i = 0; i < 4; ++i)
        if (!Write(dir / pieces[i].file, makers[i](), pieces[i].format, pieces[i].title)) return 1;

    // The player's own playlist format, entries relative to the playlist.
    std::ofstream playlist(dir / "Verdin Demo.vdp", std::ios::binary);
    playlist << "[Verdin Advanced Playlist]\r\nVersion=1.00\r\n[Entries]\r\n";
    for (size_t i = 0; i < 4; ++i) playlist << "Entry" << i + 1 << "=" << pieces[i].file << "\r\n";
    playlist << "NumberOfEntries=4\r\n";
    return playlist ? 0 : 1;
}
