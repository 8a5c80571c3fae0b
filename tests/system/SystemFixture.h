#pragma once
// The common ground of the whole-program tests: a private bus and home, settings written
// into the home's settings file before the player starts, and audio fixtures.
#include "PlayerProcess.h"

#include "settings/Settings.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace verdin::test {

class SystemTest : public ::testing::Test {
protected:
    void SetUp() override;

    // Writes the settings file: the defaults, then whatever change makes.
    void SeedSettings(const std::function<void(Settings&)>& change);
    // The sound card output on ALSA's null device: plays in real time, keeps nothing.
    static void UseNullSoundCard(Settings& settings);
    // Decoding to WAV files in the home's "out" directory.
    void DecodeToFiles(Settings& settings) const;
    std::string OutDirectory() const { return home_.dir.file("out"); }
    // A WAV tone of the given length in the home's "music" directory.
    std::string Tone(const std::string& name, double seconds, double frequency);
    // A ".vdp" playlist's text holding the entries.
    static std::string PlaylistText(const std::vector<std::string>& entries);
    std::unique_ptr<PlayerProcess> Start(const std::vector<std::string>& arguments);
    Settings LoadSavedSettings() const;

    PrivateBus bus_;
    PlayerHome home_;
};

}  // namespace verdin::test
