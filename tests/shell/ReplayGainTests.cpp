// The gain a track plays with, from tags written by flac and lame as taggers write them
// and the ReplayGain settings.
#include "shell/replaygain/ReplayGainFactor.h"

#include "PcmFixtures.h"
#include "Process.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <cmath>

namespace verdin::test {
namespace {

TEST(ReplayGain, TheFactorFollowsModeTagsPreAmpAndPeak) {
    const TempDir dir;
    WriteWav(dir.file("tone.wav"), 2, 44100, 16, Bytes16(Sine16(4410, 2, 44100, {440.0})));
    const std::pair<std::string, std::vector<std::string>> files[] = {
        {"track.flac", {"REPLAYGAIN_TRACK_GAIN=-6.00 dB", "REPLAYGAIN_TRACK_PEAK=0.5"}},
        {"album.flac", {"REPLAYGAIN_TRACK_GAIN=-6 dB", "REPLAYGAIN_ALBUM_GAIN=+2.5 dB", "REPLAYGAIN_ALBUM_PEAK=0.9"}},
        {"r128.flac", {"R128_TRACK_GAIN=-1536"}}, {"plain.flac", {}}};  // Q7.8: -6 dB to -23 LUFS
    for (const auto& [name, tags] : files) {
        std::vector<std::string> flac{"flac", "-s", "-o", dir.file(name), dir.file("tone.wav")};
        for (const std::string& tag : tags) flac.insert(flac.begin() + 2, {"-T", tag});
        ASSERT_EQ(RunCommand(flac).exitCode, 0) << name;
    }
    ASSERT_EQ(RunCommand({"lame", "--quiet", "--tv", "TXXX=REPLAYGAIN_TRACK_GAIN=-3.00 dB", dir.file("tone.wav"), dir.file("id3.mp3")}).exitCode, 0);
    using M = ReplayGainMode;
    const std::tuple<std::string, ReplayGainSettings, double> rows[] = {
        // file, settings (mode, pre-amp, untagged gain, clipping prevention), the gain in dB
        {"track.flac", {M::kOff, 5, 3, true}, 0}, {"track.flac", {M::kTrack, 0, 3, true}, -6}, {"track.flac", {M::kTrack, 3, 0, true}, -3},
        {"track.flac", {M::kTrack, 15, 0, true}, 20 * std::log10(2.0)}, {"track.flac", {M::kTrack, 15, 0, false}, 9},
        {"track.flac", {M::kAlbum, 0, 0, true}, -6}, {"album.flac", {M::kAlbum, 0, 0, false}, 2.5},
        {"album.flac", {M::kAlbum, 0, 0, true}, -20 * std::log10(0.9)}, {"album.flac", {M::kTrack, 0, 0, true}, -6},
        {"r128.flac", {M::kTrack, 0, 0, true}, -1}, {"id3.mp3", {M::kTrack, 1, 0, true}, -2},
        {"plain.flac", {M::kTrack, 3, -4, true}, -4}, {"http://host/track.flac", {M::kAlbum, 3, 2, true}, 2},
    };
    for (const auto& [name, settings, db] : rows) {
        const float factor = ReplayGainFactorFor(settings, name.find("://") == std::string::npos ? dir.file(name) : name);
        EXPECT_NEAR(20 * std::log10(factor), db, 0.001) << name << " in mode " << int(settings.mode) << " + " << settings.preAmpDb;
    }
}

}  // namespace
}  // namespace verdin::test
