#pragma once
// MP3 files made once for all MPEG module tests: encoded with lame from synthesised
// sines, with the PCM that "mpg123 -w" writes for each as the reference.
#include "PluginUnderTest.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace verdin::test {

struct Mp3Fixture {
    std::string label;
    std::string path;
    int sourceFrames;  // frames of the PCM lame encoded
    int sampleRate;
    int channels;
    bool carriesLength;  // lame wrote its Info/Xing frame (not with -t)
    std::vector<uint8_t> reference;  // what mpg123 -w decodes

    uint32_t frameBytes() const { return static_cast<uint32_t>(2 * channels); }
};

class MpegModuleTest : public ::testing::Test {
protected:
    static void SetUpTestSuite();
    static void TearDownTestSuite();
    void SetUp() override { ASSERT_TRUE(fixtures_ && fixtures_->size() == 4) << "the MP3 fixtures were not made"; }

    static const Mp3Fixture& Cbr() { return fixtures_->at(0); }
    static const Mp3Fixture& Vbr() { return fixtures_->at(1); }
    static const Mp3Fixture& CbrWithoutInfoFrame() { return fixtures_->at(2); }
    static const Mp3Fixture& Mono() { return fixtures_->at(3); }
    static const std::vector<Mp3Fixture>& All() { return *fixtures_; }
    static const TempDir& Dir() { return *dir_; }

    PluginUnderTest plugin_{"MPEG_Verdin.so"};

private:
    static std::unique_ptr<TempDir> dir_;
    static std::unique_ptr<std::vector<Mp3Fixture>> fixtures_;
};

}  // namespace verdin::test
