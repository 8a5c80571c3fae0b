// The plug-ins shipped with the player, loaded from the build's plug-in directory the way
// the player loads them.
#include "engine/input/InputModuleList.h"

#include "PcmFixtures.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <cstring>

namespace verdin {
namespace {

std::string DescriptionOf(InputModule* module) {
    return module ? module->ops->GetDescription(module) : "(none)";
}

class BundledModules : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_GE(modules_.LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr), 2u); }
    InputModuleList modules_;
};

TEST_F(BundledModules, EachFormatFindsItsModule) {
    const struct {
        const char* path;
        const char* describedAs;
    } cases[] = {
        {"/music/a.mp3", "MPEG"}, {"/music/b.MP2", "MPEG"},      {"/music/c.wav", "sound file"},
        {"d.flac", "sound file"}, {"e.ogg", "sound file"},       {"f.opus", "sound file"},
        {"g.aiff", "sound file"}, {"h.au", "sound file"},
    };
    for (const auto& c : cases) {
        const std::string description = DescriptionOf(modules_.FindModuleFor(c.path, 0));
        EXPECT_NE(description.find(c.describedAs), std::string::npos) << c.path << ": " << description;
    }
    EXPECT_EQ(modules_.FindModuleFor("/music/readme.txt", 0), nullptr);
}

TEST_F(BundledModules, ExtensionListCoversBothModules) {
    const std::string extensions = ";" + modules_.SupportedExtensions() + ";";
    for (const char* e : {".mp3", ".mp2", ".mp1", ".wav", ".aif", ".aiff", ".au", ".flac", ".ogg", ".opus"})
        EXPECT_NE(extensions.find(std::string(";") + e + ";"), std::string::npos) << e << " in " << extensions;
}

TEST_F(BundledModules, ChosenModuleReadsAndDecodesAWavFile) {
    const test::TempDir dir;
    const std::string path = dir.file("tone.wav");
    const std::vector<uint8_t> data = test::Bytes16(test::Sine16(4410, 2, 44100, {440.0, 880.0}));
    test::WriteWav(path, 2, 44100, 16, data);

    InputModule* module = modules_.FindModuleFor(path, 0);
    ASSERT_NE(module, nullptr);
    TrackInfo info{};
    ASSERT_NE(module->ops->GetFileInfo(module, path.c_str(), 0, &info), 0);
    EXPECT_EQ(info.duration, 100u);
    EXPECT_EQ(info.sampleRate, 44100);

    InputDecoder* decoder = module->ops->OpenDecoder(module, path.c_str(), 0);
    ASSERT_NE(decoder, nullptr);
    std::vector<uint8_t> pcm;
    const void* block = nullptr;
    while (uint32_t bytes = decoder->ops->Decode(decoder, &block)) {
        const auto* first = static_cast<const uint8_t*>(block);
        pcm.insert(pcm.end(), first, first + bytes);
    }
    decoder->ops->Destroy(decoder);
    EXPECT_TRUE(pcm == data);
}

}  // namespace
}  // namespace verdin
